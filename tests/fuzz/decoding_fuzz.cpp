// Text of web pages made readable.
// Fields: text.
#include <algorithm>
#include <string>

#include "core/text/fold.h"
#include "core/text/text.h"
#include "fuzz/support/fuzz.h"
#include "media/text_decoding.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char each) { return static_cast<unsigned char>(each) < 0x80; });
}

/// The two readers of UTF-8 agree on what a character is.
void CheckCharacters(std::string_view text) {
    while (!text.empty()) {
        const size_t length = CharacterLength(text);
        std::string_view rest = text;
        const char32_t character = TakeCharacter(rest);
        Require(text.size() - rest.size() == std::max<size_t>(length, 1), "a character has one length");
        Require((character >= 0x110000) == (length == 0), "a byte is part of a character or is none");
        text = rest;
    }
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const std::string text(input.Rest());
    CheckCharacters(text);

    const std::string decoded = DecodeWebText(text);
    Require(decoded.size() <= text.size(), "decoding makes no text longer");
    Require(!Fuzz::IsUtf8(text) || Fuzz::IsUtf8(decoded), "UTF-8 stays UTF-8");
    const bool plain = IsAscii(text) && text.find_first_of("&%") == std::string::npos;
    Require(!plain || decoded == text, "a text without anything to decode stays");

    const std::string repaired = RepairUtf8(text);
    Require(!IsAscii(text) || repaired == text, "what is ASCII needs no repair");
    Require(!Fuzz::IsUtf8(text) || Fuzz::IsUtf8(repaired), "what is repaired is UTF-8");

    const std::string read = TextFromFile(text);
    Require(Fuzz::IsUtf8(read), "a text from a file is UTF-8");
    Require(!Fuzz::IsUtf8(text) || read == text, "what is UTF-8 in a file stays");
    Require(read.size() <= 3 * text.size(), "no byte becomes more than three");
    for (const char32_t character : CharactersOf(read)) {
        const bool ansi = CharacterOfAnsi(AnsiCode(character)) == character;
        Require(ansi || AnsiCode(character) == '?',
                "a character has its ANSI code or that of the question mark");
        Require(Fuzz::IsUtf8(text) || ansi, "what was read as ANSI has an ANSI code");
    }
}

}  // namespace Corvetape
