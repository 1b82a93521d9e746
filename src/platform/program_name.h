#pragma once

/// The program's names, here and nowhere else. The texts of the language files and the installed files write
/// them out.
namespace Corvetape {

/// What people read.
inline constexpr const char* ProgramTitle = "Corvetape";

/// What its files and folders are called.
inline constexpr const char* ProgramShortName = "Corvet";

/// What the desktop knows it by: the name of its icon and of its entry in the menus.
inline constexpr const char* ProgramEntryName = "corvetape";

}  // namespace Corvetape
