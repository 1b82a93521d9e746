#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Corvetape {

/// Makes text of a web page readable: puts misread UTF-8 right, then replaces the named entities of HTML 4,
/// then percent codes, then puts misread UTF-8 right again.
///
/// Three effects are odd and wanted. Entities are compared ignoring case and those of capital letters come
/// first, so that "&auml;" gives the capital letter, too. A percent sign that a code gives may begin the next
/// code. A "%0" that stood in the text is lost.
std::string DecodeWebText(std::string_view text);

/// Puts right what was UTF-8 and was read as ANSI. Only lead bytes 195 to 198, with one byte after them, and
/// 225, with two, are recognised, and the first byte after them only has to be 128 or above. All else stays
/// as it is.
std::string RepairUtf8(std::string_view text);

/// The code of the character that one to three bytes of UTF-8 stand for, without a look at what kind of bytes
/// they are.
char32_t CodePointFromBytes(std::span<const uint8_t> bytes);

/// The ANSI (Windows-1252) code of a character; that of "?" if it has none.
uint8_t AnsiCode(char32_t character);

/// The character of an ANSI code.
char32_t CharacterOfAnsi(uint8_t code);

/// Most characters of a title, an artist, an album or a station.
inline constexpr size_t MostMediaCharacters = 1000;

/// A field of the media data as it may enter the program: bytes that are no UTF-8 and marks that turn the
/// direction of writing (U+202A to U+202E, U+2066 to U+2069) are left out, and so is what comes after
/// MostMediaCharacters. A mark would show names, of files too, in another order than they have.
std::string MediaText(std::string_view text);

/// A text from a file: as it is if it is UTF-8, otherwise read as ANSI.
std::string TextFromFile(std::string_view bytes);

}  // namespace Corvetape
