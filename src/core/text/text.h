#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Corvetape {

/// Compares with the letters A to Z taken as a to z; everything else exactly.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// Position of `part` in `text` from `from` on, A to Z taken as a to z; npos if it is not there.
size_t FindIgnoringCase(std::string_view text, std::string_view part, size_t from = 0);

/// Replaces every occurrence, from left to right; what was put in is not searched again.
std::string ReplaceAll(std::string_view text, std::string_view part, std::string_view replacement);
std::string ReplaceAllIgnoringCase(std::string_view text, std::string_view part,
                                   std::string_view replacement);

/// Without blanks (the character 32 only) at both ends.
std::string_view TrimBlanks(std::string_view text);

/// A to Z as a to z, everything else as it is.
std::string LowerCase(std::string_view text);

/// The beginning of a UTF-8 text, at most `limit` bytes long and cut between two characters. A byte that is
/// no UTF-8 counts as a character.
std::string_view CutText(std::string_view text, size_t limit);

/// The first `limit` characters of a UTF-8 text. A byte that is no UTF-8 counts as a character.
std::string_view CutCharacters(std::string_view text, size_t limit);

/// Length in bytes of the UTF-8 character that a text begins with; 0 if it begins with none.
size_t CharacterLength(std::string_view text);

/// The pieces between the separators; an empty text gives one empty piece.
std::vector<std::string> Split(std::string_view text, char separator);

}  // namespace Corvetape
