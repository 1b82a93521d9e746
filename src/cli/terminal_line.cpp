#include "cli/terminal_line.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

namespace Corvetape {

TerminalLine::TerminalLine() : Terminal(isatty(STDERR_FILENO) != 0) {}

void TerminalLine::Show(const std::string& text) {
    if (!Terminal) return;
    fmt::print(stderr, "\r{:<79}", text);
    std::fflush(stderr);
    Shown = true;
}

void TerminalLine::Clear() {
    if (!Shown) return;
    fmt::print(stderr, "\r{:<79}\r", "");
    std::fflush(stderr);
    Shown = false;
}

}  // namespace Corvetape
