#include "cli/terminal_line.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

#include "cli/output.h"

namespace Corvetape {

TerminalLine::TerminalLine() : Terminal(isatty(STDERR_FILENO) != 0) {}

void TerminalLine::Show(const std::string& text) {
    if (!Terminal) return;
    Print(stderr, fmt::format("\r{:<79}", text));
    Shown = true;
}

void TerminalLine::Clear() {
    if (!Shown) return;
    Print(stderr, fmt::format("\r{:<79}\r", ""));
    Shown = false;
}

}  // namespace Corvetape
