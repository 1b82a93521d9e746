#pragma once

#include <string>
#include <string_view>
#include <variant>

namespace Corvetape {

/// A setting that holds for one run: `SECTION.KEY=VALUE` of a command line.
struct SettingArgument {
    std::string Section;
    std::string Key;
    std::string Value;
    bool InDataFile = false;  ///< a key of the file that comes with the program

    bool operator==(const SettingArgument&) const = default;
};

/// Reads such an argument: the section ends at the last point before the first "=". "Source" stands for every
/// source of media data, see AnySourceSection. Only keys that the
/// program knows are taken, and numbers only where it reads numbers; otherwise one clear line. A folder may
/// be given from the present folder or, after "~/", from the user's on.
std::variant<SettingArgument, std::string> ReadSettingArgument(std::string_view text);

}  // namespace Corvetape
