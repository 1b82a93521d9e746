#pragma once

#include <string>
#include <vector>

#include "platform/files.h"

namespace Corvetape {

/// The key of a language file under which it has the name of its language, in that language.
inline constexpr const char* LanguageNameKey = "language";

/// A language that the user can choose.
struct LanguageFile {
    std::string File;  ///< without its ending: what the setting holds
    std::string Name;  ///< its own name, "Deutsch"; that of the file where it says none
};

/// The files "*.lang" of a folder, in the order of their names.
std::vector<LanguageFile> ListLanguages(Files& files, const std::string& folder);

}  // namespace Corvetape
