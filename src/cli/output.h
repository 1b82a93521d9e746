#pragma once

#include <cstdio>
#include <string_view>

namespace Corvetape {

/// Prints a text on a stream at once. Whoever reads it may be gone, or its disk full: a recording goes on all
/// the same. Only a standard output that nobody reads any more is a wish to end, like Ctrl-C.
void Print(std::FILE* stream, std::string_view text);

/// True if something that was meant for the standard output has not got there.
bool OutputLost();

/// Opens those of the three standard files that the process was started without: a song would get their
/// number otherwise, and what is printed would go into it.
void OpenStandardFiles();

}  // namespace Corvetape
