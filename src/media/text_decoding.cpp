#include "media/text_decoding.h"

#include <algorithm>
#include <array>
#include <optional>

#include "core/text/fold.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

struct Entity {
    std::string_view Name;
    char32_t Character;
};

/// In the order of replacement. Since case is ignored, the first row of two that differ in case only takes
/// all, and the capital U with diaeresis is found by its odd spelling, too.
constexpr auto Entities = std::to_array<Entity>({
    {"&quot;", 0x22},    {"&amp;", 0x26},    {"&apos;", 0x27},   {"&lt;", 0x3C},     {"&gt;", 0x3E},
    {"&nbsp;", 0x20},    {"&iexcl;", 0xA1},  {"&curren;", 0xA4}, {"&cent;", 0xA2},   {"&pound;", 0xA3},
    {"&yen;", 0xA5},     {"&brvbar;", 0xA6}, {"&sect;", 0xA7},   {"&uml;", 0xA8},    {"&copy;", 0xA9},
    {"&ordf;", 0xAA},    {"&laquo;", 0xAB},  {"&not;", 0xAC},    {"&shy;", 0xAD},    {"&reg;", 0xAE},
    {"&trade;", 0x2122}, {"&macr;", 0xAF},   {"&deg;", 0xB0},    {"&plusmn;", 0xB1}, {"&sup2;", 0xB2},
    {"&sup3;", 0xB3},    {"&acute;", 0xB4},  {"&micro;", 0xB5},  {"&para;", 0xB6},   {"&middot;", 0xB7},
    {"&cedil;", 0xB8},   {"&sup1;", 0xB9},   {"&ordm;", 0xBA},   {"&raquo;", 0xBB},  {"&frac14;", 0xBC},
    {"&frac12;", 0xBD},  {"&frac34;", 0xBE}, {"&iquest;", 0xBF}, {"&times;", 0xD7},  {"&divide;", 0xF7},
    {"&Agrave;", 0xC0},  {"&Aacute;", 0xC1}, {"&Acirc;", 0xC2},  {"&Atilde;", 0xC3}, {"&Auml;", 0xC4},
    {"&Aring;", 0xC5},   {"&AElig;", 0xC6},  {"&Ccedil;", 0xC7}, {"&Egrave;", 0xC8}, {"&Eacute;", 0xC9},
    {"&Ecirc;", 0xCA},   {"&Euml;", 0xCB},   {"&Igrave;", 0xCC}, {"&Iacute;", 0xCD}, {"&Icirc;", 0xCE},
    {"&Iuml;", 0xCF},    {"&ETH;", 0xD0},    {"&Ntilde;", 0xD1}, {"&Ograve;", 0xD2}, {"&Oacute;", 0xD3},
    {"&Ocirc;", 0xD4},   {"&Otilde;", 0xD5}, {"&Ouml;", 0xD6},   {"&Oslash;", 0xD8}, {"&Ugrave;", 0xD9},
    {"&Uacute;", 0xDA},  {"&Ucirc;", 0xDB},  {"&UUml;", 0xDC},   {"&Yacute;", 0xDD}, {"&THORN;", 0xDE},
    {"&szlig;", 0xDF},   {"&agrave;", 0xE0}, {"&aacute;", 0xE1}, {"&acirc;", 0xE2},  {"&atilde;", 0xE3},
    {"&auml;", 0xE4},    {"&aring;", 0xE5},  {"&aelig;", 0xE6},  {"&ccedil;", 0xE7}, {"&egrave;", 0xE8},
    {"&eacute;", 0xE9},  {"&ecirc;", 0xEA},  {"&euml;", 0xEB},   {"&igrave;", 0xEC}, {"&iacute;", 0xED},
    {"&icirc;", 0xEE},   {"&iuml;", 0xEF},   {"&eth;", 0xF0},    {"&ntilde;", 0xF1}, {"&ograve;", 0xF2},
    {"&oacute;", 0xF3},  {"&ocirc;", 0xF4},  {"&otilde;", 0xF5}, {"&ouml;", 0xF6},   {"&oslash;", 0xF8},
    {"&ugrave;", 0xF9},  {"&uacute;", 0xFA}, {"&ucirc;", 0xFB},  {"&uuml;", 0xFC},   {"&yacute;", 0xFD},
    {"&thorn;", 0xFE},   {"&yuml;", 0xFF},
});

constexpr char32_t NoCharacter = 0xFFFD;

/// ANSI codes 128 to 159. Five of them stand for nothing and are control characters.
constexpr std::array<char32_t, 32> AnsiSpecials = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
constexpr uint8_t FirstSpecial = 0x80;

/// What TakeCharacter adds to a byte that is part of no character.
constexpr char32_t LoneByte = 0x110000;

void AddUtf8(std::string& to, char32_t character) {
    const auto add = [&](char32_t byte) { to += static_cast<char>(static_cast<uint8_t>(byte)); };
    if (character >= LoneByte) {
        add(character - LoneByte);
    } else if (character < 0x80) {
        add(character);
    } else if (character < 0x800) {
        add(0xC0 | character >> 6);
        add(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        add(0xE0 | character >> 12);
        add(0x80 | (character >> 6 & 0x3F));
        add(0x80 | (character & 0x3F));
    } else {
        add(0xF0 | character >> 18);
        add(0x80 | (character >> 12 & 0x3F));
        add(0x80 | (character >> 6 & 0x3F));
        add(0x80 | (character & 0x3F));
    }
}

std::string ToUtf8(std::u32string_view characters) {
    std::string text;
    text.reserve(characters.size());
    for (char32_t character : characters) AddUtf8(text, character);
    return text;
}

std::optional<uint8_t> HexDigit(char32_t character) {
    if (character >= '0' && character <= '9') return static_cast<uint8_t>(character - '0');
    if (character >= 'a' && character <= 'f') return static_cast<uint8_t>(character - 'a' + 10);
    if (character >= 'A' && character <= 'F') return static_cast<uint8_t>(character - 'A' + 10);
    return std::nullopt;
}

std::string ReplaceEntities(std::string text) {
    for (const Entity& entity : Entities) {
        std::string character;
        AddUtf8(character, entity.Character);
        text = ReplaceAllIgnoringCase(text, entity.Name, character);
    }
    return text;
}

std::string ReplacePercentCodes(std::string_view text) {
    std::u32string characters = CharactersOf(text);
    for (size_t i = 0; i + 2 < characters.size(); ++i) {
        if (characters[i] != '%') continue;
        const auto high = HexDigit(characters[i + 1]);
        const auto low = HexDigit(characters[i + 2]);
        if (!high || !low) continue;
        characters[i + 1] = '0';
        characters[i + 2] = CharacterOfAnsi(static_cast<uint8_t>(*high << 4 | *low));
    }
    return ReplaceAll(ReplaceAll(ToUtf8(characters), "%0", ""), "%%", "%");
}

}  // namespace

uint8_t AnsiCode(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<uint8_t>(character);
    const auto found = std::ranges::find(AnsiSpecials, character);
    if (found == AnsiSpecials.end()) return '?';
    return static_cast<uint8_t>(FirstSpecial + (found - AnsiSpecials.begin()));
}

char32_t CharacterOfAnsi(uint8_t code) {
    const bool special = code >= FirstSpecial && code < FirstSpecial + AnsiSpecials.size();
    return special ? AnsiSpecials[code - FirstSpecial] : code;
}

char32_t CodePointFromBytes(std::span<const uint8_t> bytes) {
    switch (bytes.size()) {
        case 1:
            return bytes[0];
        case 2:
            return (bytes[0] & 31U) << 6 | (bytes[1] & 63U);
        case 3:
            return (bytes[0] & 15U) << 12 | (bytes[1] & 63U) << 6 | (bytes[2] & 63U);
        default:
            return NoCharacter;
    }
}

std::string RepairUtf8(std::string_view text) {
    const std::u32string characters = CharactersOf(text);
    std::u32string repaired;
    repaired.reserve(characters.size());
    for (size_t i = 0; i < characters.size();) {
        std::array<uint8_t, 3> bytes{};
        const size_t known = std::min(bytes.size(), characters.size() - i);
        for (size_t k = 0; k < known; ++k) bytes[k] = AnsiCode(characters[i + k]);
        size_t length = 1;
        if (known >= 2 && bytes[1] >= 128) {
            if (bytes[0] == 225 && known == 3) length = 3;
            if (bytes[0] >= 195 && bytes[0] <= 198) length = 2;
        }
        repaired +=
            length == 1 ? characters[i] : CodePointFromBytes(std::span<const uint8_t>(bytes).first(length));
        i += length;
    }
    return ToUtf8(repaired);
}

std::string DecodeWebText(std::string_view text) {
    std::string decoded = RepairUtf8(text);
    if (decoded.find('&') != std::string::npos) decoded = ReplaceEntities(std::move(decoded));
    if (decoded.find('%') != std::string::npos) decoded = ReplacePercentCodes(decoded);
    return RepairUtf8(decoded);
}

std::string MediaText(std::string_view text) {
    const auto turns = [](std::string_view character) {
        return (character >= "\xE2\x80\xAA" && character <= "\xE2\x80\xAE") ||
               (character >= "\xE2\x81\xA6" && character <= "\xE2\x81\xA9");
    };
    std::string clean;
    size_t characters = 0;
    while (!text.empty() && characters < MostMediaCharacters) {
        const size_t length = CharacterLength(text);
        const std::string_view character = text.substr(0, length);
        if (length > 0 && !turns(character)) {
            clean += character;
            ++characters;
        }
        text.remove_prefix(length > 0 ? length : 1);
    }
    return clean;
}

std::string TextFromFile(std::string_view bytes) {
    const std::u32string characters = CharactersOf(bytes);
    if (std::ranges::none_of(characters, [](char32_t each) { return each >= LoneByte; })) {
        return std::string(bytes);
    }
    std::u32string read;
    for (char byte : bytes) read += CharacterOfAnsi(static_cast<uint8_t>(byte));
    return ToUtf8(read);
}

}  // namespace Corvetape
