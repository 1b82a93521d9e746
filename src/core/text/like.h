#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Corvetape {

enum class LikeCase { Exact, Ignored };

/// A pattern that a whole text is held against:
///
/// | pattern | stands for |
/// |---|---|
/// | `*` | any characters, also none |
/// | `?` | one character |
/// | `#` | one of the digits 0 to 9 |
/// | `[abx-z]` | one character of the list and the ranges |
/// | `[!abx-z]` | one character that is not of them |
/// | anything else | itself |
///
/// A "]" that comes first in brackets, or after the "!", is one of the list; so is a "-" that comes first or
/// last. A range whose end is before its begin holds nothing. A "[" that is never closed stands for itself.
/// Characters are those of UTF-8; a byte that is none counts as one of its own.
///
/// Matching takes time in proportion to the length of the text times that of the pattern at worst, and no
/// memory.
class LikePattern {
 public:
    explicit LikePattern(std::string_view pattern, LikeCase how = LikeCase::Exact);

    /// True if the whole text matches.
    bool Matches(std::string_view text) const;

    /// The same for a text that was taken apart (CharactersOf), or taken apart and folded (FoldText) if case
    /// is ignored.
    bool MatchesCharacters(std::u32string_view text) const;

    /// True if there is a "[" that is never closed.
    bool HasOpenBracket() const { return OpenBracket; }

    /// True if there is nothing in it but characters that stand for themselves.
    bool IsPlain() const;

 private:
    enum class Kind : uint8_t { Character, AnyOne, AnyMany, Digit, OneOf, NoneOf };
    struct Token {  // small, because a watch list walks through millions of them for a song
        Kind What = Kind::Character;
        uint32_t Value = 0;  ///< the character, or where the list begins in Ranges
    };
    struct Range {
        char32_t First = 0;
        char32_t Last = 0;
    };
    static constexpr Range EndOfList{1, 0};

    bool AddList(std::u32string_view pattern, size_t& position);
    bool TokenMatches(const Token& token, char32_t character) const;

    LikeCase Case;
    bool OpenBracket = false;
    std::vector<Token> Tokens;
    std::vector<Range> Ranges;  ///< of all lists, each ended by one whose end is before its begin
};

/// Whether a text matches a pattern, for single questions.
bool Like(std::string_view text, std::string_view pattern, LikeCase how = LikeCase::Exact);

}  // namespace Corvetape
