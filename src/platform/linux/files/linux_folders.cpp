#include "platform/linux/files/linux_folders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string_view>

#include "platform/linux/processes/program_search.h"

namespace Corvetape {
namespace {

struct UserFolderName {
    ShellFolder Folder;
    const char* Key;   // in user-dirs.dirs
    const char* Name;  // where nothing else is said
};
constexpr UserFolderName UserFolderNames[] = {
    {ShellFolder::MyDocuments, "XDG_DOCUMENTS_DIR", "Documents"},
    {ShellFolder::MyMusic, "XDG_MUSIC_DIR", "Music"},
    {ShellFolder::MyVideo, "XDG_VIDEOS_DIR", "Videos"},
    {ShellFolder::MyPictures, "XDG_PICTURES_DIR", "Pictures"},
};

std::string Lower(std::string text) {
    for (char& letter : text) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return text;
}

std::string WithoutTrailingSlash(std::string path) {
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return path;
}

/// An absolute folder from a variable; the conventions say to ignore relative ones.
std::string FolderVariable(const char* name, const std::string& otherwise) {
    const char* const value = std::getenv(name);
    if (value == nullptr || value[0] != '/') return otherwise;
    return WithoutTrailingSlash(value);
}

std::string UserHome() {
    std::string fromVariable = FolderVariable("HOME", "");
    if (!fromVariable.empty()) return fromVariable;
    const passwd* const user = getpwuid(getuid());
    return user != nullptr && user->pw_dir != nullptr ? WithoutTrailingSlash(user->pw_dir) : "/";
}

/// Creates all missing levels. A new folder is for its user only, as the conventions ask for.
void MakeFolders(const std::string& path) {
    for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
        mkdir(path.substr(0, slash).c_str(), 0700);  // usually there; the last level says
    }
    mkdir(path.c_str(), 0700);
}

/// The value of a line such as XDG_MUSIC_DIR="$HOME/Music". Only whole paths and paths in the user's home
/// are valid.
std::optional<std::string> UserDirsValue(std::string_view line, std::string_view key,
                                         const std::string& home) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (!line.starts_with(key)) return std::nullopt;
    line.remove_prefix(key.size());
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (!line.starts_with('=')) return std::nullopt;
    line.remove_prefix(1);
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (!line.starts_with('"')) return std::nullopt;
    std::string value;
    for (size_t i = 1; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) ++i;
        value += line[i];
    }
    if (value == "$HOME" || value.starts_with("$HOME/")) value = home + value.substr(5);
    if (!value.starts_with('/')) return std::nullopt;
    return WithoutTrailingSlash(value);
}

}  // namespace

LinuxFolders::LinuxFolders() : Home(UserHome()), OwnHome(false) {}

LinuxFolders::LinuxFolders(const std::string& givenHome) : Home(givenHome), OwnHome(true) {
    if (!Home.starts_with('/')) {
        char* const here = getcwd(nullptr, 0);
        if (here != nullptr) Home = std::string(here) + "/" + Home;
        std::free(here);
    }
    Home = WithoutTrailingSlash(Home);
    MakeFolders(CacheFolder());
    Fixed["userprofile"] = Home;
    Fixed["temp"] = CacheFolder();
    Fixed["tmp"] = CacheFolder();
}

std::string LinuxFolders::CacheFolder() const {
    return OwnHome ? Home + "/cache" : FolderVariable("XDG_CACHE_HOME", Home + "/.cache");
}

std::string LinuxFolders::UserFolder(ShellFolder folder) const {
    const auto* const known = std::ranges::find(UserFolderNames, folder, &UserFolderName::Folder);
    if (known == std::end(UserFolderNames)) return "";
    std::string usual = Home + "/" + known->Name;
    if (OwnHome) return usual;
    std::ifstream file(FolderVariable("XDG_CONFIG_HOME", Home + "/.config") + "/user-dirs.dirs");
    std::optional<std::string> found;
    for (std::string line; std::getline(file, line);) {
        const std::optional<std::string> value = UserDirsValue(line, known->Key, Home);
        if (value) found = value;  // as when a shell reads the file: the last one counts
    }
    return found.value_or(usual);
}

std::string LinuxFolders::ShellFolderPath(ShellFolder folder) {
    std::string path;
    switch (folder) {
        case ShellFolder::AppData:
            path = OwnHome ? Home + "/config" : FolderVariable("XDG_CONFIG_HOME", Home + "/.config");
            break;
        case ShellFolder::CommonAppData:
            path = OwnHome ? Home + "/share" : "/usr/local/share";
            break;
        default:
            path = UserFolder(folder);
    }
    if (!path.empty()) MakeFolders(path);
    return path;
}

std::string LinuxFolders::ProgramFolder() {
    std::string path(4096, '\0');
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length <= 0) return "";
    path.resize(static_cast<size_t>(length));
    const size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::optional<std::string> LinuxFolders::Environment(const std::string& name) {
    if (const auto decided = Fixed.find(Lower(name)); decided != Fixed.end()) return decided->second;
    if (const char* const value = std::getenv(name.c_str())) return value;
    const std::string wanted = Lower(name) + "=";
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        const std::string text = *variable;
        if (Lower(text.substr(0, wanted.size())) == wanted) return text.substr(wanted.size());
    }
    if (wanted == "temp=" || wanted == "tmp=") {
        const std::string cache = CacheFolder();
        MakeFolders(cache);
        return cache;
    }
    if (wanted == "userprofile=") return Home;
    if (wanted == "path=") return UsualSearchPath;  // or it would be gone as soon as a folder is added to it
    return std::nullopt;
}

bool LinuxFolders::SetEnvironment(const std::string& name, const std::string& value) {
    if (const auto decided = Fixed.find(Lower(name)); decided != Fixed.end()) decided->second = value;
    std::string existing = name;
    if (std::getenv(name.c_str()) == nullptr) {
        const std::string wanted = Lower(name) + "=";
        for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
            const std::string text = *variable;
            if (Lower(text.substr(0, wanted.size())) != wanted) continue;
            existing = text.substr(0, name.size());
            break;
        }
    }
    return setenv(existing.c_str(), value.c_str(), 1) == 0;
}

std::optional<std::string> LinuxFolders::FindProgram(const std::string& name) {
    return SearchProgram(name);
}

}  // namespace Corvetape
