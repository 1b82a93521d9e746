#include "cli/json_text.h"

#include <fmt/format.h>

#include <cstdint>

#include "core/text/text.h"

namespace Corvetape {

namespace {

void AppendOneByte(std::string& result, char character) {
    switch (character) {
        case '"':
            result += "\\\"";
            break;
        case '\\':
            result += "\\\\";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\r':
            result += "\\r";
            break;
        case '\t':
            result += "\\t";
            break;
        default:
            if (static_cast<uint8_t>(character) < 0x20 || character == 0x7F) {
                result += fmt::format("\\u{:04x}", static_cast<uint32_t>(static_cast<uint8_t>(character)));
            } else {
                result += character;
            }
    }
}

}  // namespace

std::string JsonText(std::string_view text) {
    std::string result = "\"";
    while (!text.empty()) {
        const size_t length = CharacterLength(text);
        if (length == 0) {
            result += "\xEF\xBF\xBD";
        } else if (length == 1) {
            AppendOneByte(result, text[0]);
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result + '"';
}

}  // namespace Corvetape
