// Patterns: the matcher against a slow one that is written down from the table of patterns alone.
// Fields: pattern, text.
#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/text/fold.h"
#include "core/text/like.h"
#include "core/text/text.h"
#include "fuzz/support/fuzz.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr size_t MostBytes = 256;          // the slow matcher needs the square of it
constexpr char32_t WidestRange = 0x1'000;  // and looks at each character of a range

/// One piece of a pattern, as it stands there.
struct Piece {
    char32_t Sign = 0;  ///< the character, or "*", "?", "#" or "[" with this meaning if Special
    bool Special = false;
    bool Negated = false;
    std::u32string List;  ///< of "[": all characters, ranges written out
};

bool ReadList(std::u32string_view pattern, size_t& at, Piece& piece) {
    size_t i = at + 1;
    piece = {U'[', true, i < pattern.size() && pattern[i] == U'!', {}};
    if (piece.Negated) ++i;
    bool first = true;
    for (; i < pattern.size() && (first || pattern[i] != U']'); ++i, first = false) {
        const bool range = i + 2 < pattern.size() && pattern[i + 1] == U'-' && pattern[i + 2] != U']';
        const char32_t last = range ? pattern[i + 2] : pattern[i];
        for (char32_t each = pattern[i]; each <= last; ++each) piece.List += each;
        if (range) i += 2;
    }
    if (i >= pattern.size()) return false;
    at = i + 1;
    return true;
}

std::vector<Piece> Pieces(std::u32string_view pattern) {
    std::vector<Piece> pieces;
    for (size_t i = 0; i < pattern.size();) {
        Piece piece;
        if (pattern[i] == U'[' && ReadList(pattern, i, piece)) {
            pieces.push_back(piece);
            continue;
        }
        const char32_t sign = pattern[i++];
        pieces.push_back({sign, sign == U'*' || sign == U'?' || sign == U'#', false, {}});
    }
    return pieces;
}

bool Fits(const Piece& piece, char32_t character, LikeCase how) {
    const auto same = [&](char32_t each) {
        return each == character ||
               (how == LikeCase::Ignored && FoldCharacter(each) == FoldCharacter(character));
    };
    if (!piece.Special) return same(piece.Sign);
    if (piece.Sign == U'?') return true;
    if (piece.Sign == U'#') return character >= U'0' && character <= U'9';
    return std::ranges::any_of(piece.List, same) != piece.Negated;
}

bool SlowLike(std::u32string_view text, const std::vector<Piece>& pieces, LikeCase how) {
    std::vector<char> reached(text.size() + 1);  // whether the pieces so far take so much of the text
    reached[0] = 1;
    for (const Piece& piece : pieces) {
        std::vector<char> next(text.size() + 1);
        const bool many = piece.Special && piece.Sign == U'*';
        for (size_t i = 0; i <= text.size(); ++i) {
            if (many) next[i] = reached[i] || (i > 0 && next[i - 1]);
            if (!many && i > 0) next[i] = reached[i - 1] && Fits(piece, text[i - 1], how);
        }
        reached = std::move(next);
    }
    return reached.back() != 0;
}

bool HasWideRange(std::u32string_view pattern) {
    for (size_t i = 1; i + 1 < pattern.size(); ++i) {
        if (pattern[i] == U'-' && pattern[i + 1] > pattern[i - 1] + WidestRange) return true;
    }
    return false;
}

/// A pattern that stands for the text alone.
std::string Escaped(std::string_view text) {
    std::string pattern;
    for (const char each : text) {
        const bool special = std::string_view("*?#[").find(each) != std::string_view::npos;
        pattern += special ? "[" + std::string(1, each) + "]" : std::string(1, each);
    }
    return pattern;
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const std::string pattern(input.Field().substr(0, MostBytes));
    const std::string text(input.Rest().substr(0, MostBytes));
    const std::u32string characters = CharactersOf(pattern);
    if (HasWideRange(characters)) return;
    const std::vector<Piece> pieces = Pieces(characters);
    for (const LikeCase how : {LikeCase::Exact, LikeCase::Ignored}) {
        const LikePattern compiled(pattern, how);
        Require(compiled.Matches(text) == SlowLike(CharactersOf(text), pieces, how),
                "the matcher says what the table says");
        Require(!compiled.IsPlain() || compiled.Matches(pattern), "a plain pattern matches itself");
        Require(Like(text, Escaped(text), how), "a text matches itself with its signs in brackets");
        Require(Like(text + "." + text, Escaped(text) + "*", how), "a star takes any rest");
    }
    Require(!Like(text, pattern) || Like(text, pattern, LikeCase::Ignored) ||
                pattern.find("[!") != std::string::npos,
            "what matches exactly matches without case");
    Require(Like(LowerCase(text), Escaped(text), LikeCase::Ignored), "case does not count");
}

}  // namespace Corvetape
