#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace Corvetape {

/// What the command line asks for.
struct Switches {
    bool Update = false;      ///< a second instance is allowed, and the update check runs at the end of start
    bool RegClasses = false;  ///< a message, and the program ends
    bool Wizard = false;      ///< the assistant opens
    bool Hide = false;        ///< starts hidden
    bool DontAsk = false;     ///< no boxes that wait for an answer
    bool Auto = false;        ///< recording begins with the next song
    bool Quit = false;        ///< recording ends at the end of the song, and the program with it

    /// Recording begins with the next song. Above 0 it ends after so many minutes.
    std::optional<int32_t> TimeMinutes;

    bool operator==(const Switches&) const = default;
};

struct SwitchRow {
    std::string_view Text;
    bool Switches::*Member;  ///< null for the one with a number
};

/// The switches in the order of their effect.
std::span<const SwitchRow> SwitchTable();

/// Looks for each switch in the whole command line, ignoring case: they may stand anywhere and need not be
/// separated. All that follows the first "-time" is its number: blanks are skipped, reading stops at
/// the first character that cannot belong to a number, a fraction is rounded, one below a minute up, no
/// number counts as 0, and one beyond 32 bits as the nearest one within.
Switches ReadSwitches(std::string_view commandLine);

}  // namespace Corvetape
