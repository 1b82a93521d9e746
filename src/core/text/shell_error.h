#pragma once

#include <cstdint>
#include <string>

namespace Corvetape {

/// The reason why a program or document could not be opened, as "code (text)"; the text is English in every
/// language and empty for an unknown code. Results above 32 are no errors.
std::string ShellErrorText(int32_t code);

}  // namespace Corvetape
