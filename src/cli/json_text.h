#pragma once

#include <string>
#include <string_view>

namespace Corvetape {

/// The text as a JSON string with its quotation marks. Bytes that are no UTF-8 become U+FFFD.
std::string JsonText(std::string_view text);

}  // namespace Corvetape
