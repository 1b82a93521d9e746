#include "platform/linux/processes/program_search.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace Corvetape {
namespace {

bool IsProgram(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::optional<std::string> SearchProgram(const std::string& name) {
    if (name.empty()) return std::nullopt;
    if (name.find('/') != std::string::npos) {
        return IsProgram(name) ? std::optional(name) : std::nullopt;
    }
    const char* const variable = std::getenv("PATH");
    std::string_view rest = variable != nullptr ? variable : UsualSearchPath;
    while (!rest.empty()) {
        const size_t colon = rest.find(':');
        const std::string folder(rest.substr(0, colon));
        rest = colon == std::string_view::npos ? std::string_view() : rest.substr(colon + 1);
        if (!folder.starts_with('/')) continue;
        std::string path = folder + (folder.ends_with('/') ? "" : "/") + name;
        if (IsProgram(path)) return path;
    }
    return std::nullopt;
}

}  // namespace Corvetape
