#include "core/settings/command_line.h"

#include <array>

#include "core/text/numbers.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

constexpr std::array<SwitchRow, 8> Table = {{
    {"-update", &Switches::Update},
    {"-regclasses", &Switches::RegClasses},
    {"-wizard", &Switches::Wizard},
    {"-hide", &Switches::Hide},
    {"-dontask", &Switches::DontAsk},
    {"-auto", &Switches::Auto},
    {"-quit", &Switches::Quit},
    {"-time", nullptr},
}};

}  // namespace

std::span<const SwitchRow> SwitchTable() {
    return Table;
}

Switches ReadSwitches(std::string_view commandLine) {
    Switches switches;
    for (const SwitchRow& row : Table) {
        const size_t found = FindIgnoringCase(commandLine, row.Text);
        if (found == std::string_view::npos) continue;
        if (row.Member != nullptr) {
            switches.*row.Member = true;
        } else {
            const double minutes = LeadingNumber(commandLine.substr(found + row.Text.size()));
            // Rounded to 0, a part of a minute would mean a recording without end.
            switches.TimeMinutes = minutes > 0 && minutes < 1 ? 1 : RoundToInt32(minutes);
        }
    }
    return switches;
}

}  // namespace Corvetape
