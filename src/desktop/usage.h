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

/// What to print where help or the version is asked for, or a word in two dashes is not known. Nothing for a
/// start of the program. `words` are without the program's name.
std::optional<DesktopAnswer> AnswerTo(const QStringList& words);

}  // namespace Corvetape
