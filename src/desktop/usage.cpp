#include "desktop/usage.h"

#include <algorithm>
#include <string_view>

#include "core/settings/command_line.h"
#include "core/text/text.h"
#include "core/version.h"

namespace Corvetape {

namespace {

constexpr int WrongUse = 2;

constexpr const char* Usage = R"text(Records what the computer plays, song by song.
Usage: corvetape [OPTION]... [SWITCH]...

Options:
  --help                Print this text and exit
  --version             Print the version and exit
  --input demo          Record from the demo radio, which needs no sound server
  --home DIR            Keep settings, logs, temporary and music files below DIR
  --press BUTTON        Press a button of the program that runs: record or quit

Switches, which may stand anywhere:
  -auto                 Record from the next song on
  -time MINUTES         The same, and end the recording after so many minutes
  -quit                 End with the recording
  -hide                 Start hidden in the notification area
  -dontask              Show no boxes that wait for an answer
  -wizard               Open the assistant
  -update               Allow a second instance, and look for a newer version
  -regclasses           Show a message and exit
)text";

/// Why a word that takes a value cannot have this one; empty if it can.
std::string FaultOf(const QString& word, const QString& value) {
    if (value.isEmpty()) return word.toStdString() + " needs a value";
    if (word == "--input" && value != "demo")
        return "--input takes demo only; other inputs are chosen in the window";
    const bool button = value == "record" || value == "quit";
    if (word == "--press" && !button) return "--press takes record or quit, not " + value.toStdString();
    return {};
}

bool TakesValue(const QString& word) {
    return word == "--input" || word == "--home" || word == "--press";
}

/// Switches may stand anywhere, also within a word.
bool HoldsSwitch(const QString& word) {
    return std::ranges::any_of(SwitchTable(), [&word](const SwitchRow& row) {
        return FindIgnoringCase(word.toStdString(), row.Text) != std::string_view::npos;
    });
}

}  // namespace

std::optional<DesktopAnswer> AnswerToUnknown(const QStringList& words) {
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words[i];
        if (TakesValue(word)) {
            ++i;
        } else if (word.startsWith('-') && !HoldsSwitch(word)) {
            return DesktopAnswer{"corvetape: unknown option " + word.toStdString() +
                                     "\nTry 'corvetape --help' for a list of options.\n",
                                 WrongUse};
        }
    }
    return std::nullopt;
}

std::optional<DesktopAnswer> AnswerTo(const QStringList& words) {
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words[i];
        if (word == "--help" || word == "-h") return DesktopAnswer{Usage, 0};
        if (word == "--version") {
            return DesktopAnswer{std::string(ProgramTitle) + " " + ProgramVersion + "\n", 0};
        }
        if (!TakesValue(word)) continue;
        const std::string fault = FaultOf(word, words.value(++i));
        if (!fault.empty()) return DesktopAnswer{"corvetape: " + fault + "\n", WrongUse};
    }
    return std::nullopt;
}

}  // namespace Corvetape
