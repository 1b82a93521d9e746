#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Corvetape {

/// The next character of a UTF-8 text that is not empty, which is taken off its beginning. A byte that
/// begins no character counts as one of its own, with 0x110000 added so that it equals no character.
char32_t TakeCharacter(std::string_view& text);

/// A character without its case, one for one: what Unicode would fold to several characters ("ẞ") becomes its
/// small letter ("ß").
char32_t FoldCharacter(char32_t character);

/// The other characters that FoldCharacter makes this one of: "K" and the sign of the kelvin for "k". Valid
/// for ever.
std::span<const char32_t> UnfoldedForms(char32_t folded);

/// A whole text without its case, by FoldCharacter, as a sequence of characters.
std::u32string FoldText(std::string_view text);

/// A whole text as a sequence of its characters.
std::u32string CharactersOf(std::string_view text);

}  // namespace Corvetape
