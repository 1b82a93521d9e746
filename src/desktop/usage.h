#pragma once

#include <QStringList>
#include <optional>
#include <string>

namespace Corvetape {

/// A start that only prints something.
struct DesktopAnswer {
    std::string Text;
    int ExitCode = 0;
};

/// What to print where help or the version is asked for, or an option has a value that it cannot have.
/// Nothing for a start of the program; a word that nobody knows is passed over, as the toolkit and sessions
/// add some. `words` are without the program's name.
std::optional<DesktopAnswer> AnswerTo(const QStringList& words);

/// What to print where there is an option that nobody knows. `words` are what the toolkit has left of them.
std::optional<DesktopAnswer> AnswerToUnknown(const QStringList& words);

}  // namespace Corvetape
