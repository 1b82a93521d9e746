#include "post/options/languages.h"

#include <string_view>
#include <utility>

#include "core/settings/profile.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

constexpr std::string_view Ending = ".lang";

}  // namespace

std::vector<LanguageFile> ListLanguages(Files& files, const std::string& folder) {
    std::vector<LanguageFile> languages;
    for (const FileEntry& entry : files.List(folder)) {
        if (entry.IsFolder || !entry.Name.ends_with(Ending)) continue;
        const std::string file = entry.Name.substr(0, entry.Name.size() - Ending.size());
        const std::string line = Profile(files, folder + "/" + entry.Name).ReadText("", LanguageNameKey, "");
        std::string name(TrimBlanks(Split(line, '|')[0]));
        languages.push_back({file, name.empty() ? file : std::move(name)});
    }
    return languages;
}

}  // namespace Corvetape
