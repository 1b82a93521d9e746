#include "platform/linux/desktop/one_line.h"

namespace Corvetape {

std::string OneLine(std::string_view text) {
    std::string line;
    for (const char letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        const bool control = code < 0x20 || code == 0x7f;
        // U+0080 to U+009F are control characters too; their second byte in UTF-8 follows 0xC2.
        const bool highControl = code >= 0x80 && code < 0xa0 && line.ends_with('\xc2');
        if (highControl) line.pop_back();
        if (!control && !highControl) {
            line += letter;
        } else if (!line.empty() && !line.ends_with(' ')) {
            line += ' ';
        }
    }
    while (line.ends_with(' ')) line.pop_back();
    return line;
}

}  // namespace Corvetape
