#pragma once

#include <string>

namespace Corvetape {

/// A line at the bottom of the terminal of the error output that is shown again and again in the same
/// place. Shows nothing where that is no terminal.
class TerminalLine {
 public:
    TerminalLine();

    /// False where nothing would be seen: the text need not be made.
    bool Visible() const { return Terminal; }

    /// At most 79 characters are meant to be shown.
    void Show(const std::string& text);

    /// Takes the line away, so that something else can be printed.
    void Clear();

 private:
    bool Terminal;
    bool Shown = false;
};

}  // namespace Corvetape
