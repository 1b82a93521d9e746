#include "core/text/like.h"

#include <algorithm>

#include "core/text/fold.h"

namespace Corvetape {

LikePattern::LikePattern(std::string_view pattern, LikeCase how) : Case(how) {
    const std::u32string characters = CharactersOf(pattern);
    Tokens.reserve(characters.size());
    size_t position = 0;
    while (position < characters.size()) {
        const char32_t character = characters[position];
        if (character == U'[') {
            if (AddList(characters, position)) continue;
            OpenBracket = true;
        }
        ++position;
        Token token;
        if (character == U'*') {
            token.What = Kind::AnyMany;
        } else if (character == U'?') {
            token.What = Kind::AnyOne;
        } else if (character == U'#') {
            token.What = Kind::Digit;
        } else {
            token.Value = Case == LikeCase::Ignored ? FoldCharacter(character) : character;
        }
        Tokens.push_back(token);
    }
}

bool LikePattern::AddList(std::u32string_view pattern, size_t& position) {
    size_t begin = position + 1;
    const bool negated = begin < pattern.size() && pattern[begin] == U'!';
    if (negated) ++begin;
    const size_t end = pattern.find(U']', begin + 1);
    if (end == std::u32string_view::npos) return false;

    Tokens.push_back({negated ? Kind::NoneOf : Kind::OneOf, static_cast<uint32_t>(Ranges.size())});
    for (size_t i = begin; i < end; ++i) {
        const bool isRange = i + 2 < end && pattern[i + 1] == U'-';
        const Range range{pattern[i], isRange ? pattern[i + 2] : pattern[i]};
        if (range.First <= range.Last) Ranges.push_back(range);
        if (isRange) i += 2;
    }
    Ranges.push_back(EndOfList);
    position = end + 1;
    return true;
}

bool LikePattern::IsPlain() const {
    return std::ranges::all_of(Tokens, [](const Token& token) { return token.What == Kind::Character; });
}

bool LikePattern::TokenMatches(const Token& token, char32_t character) const {
    switch (token.What) {
        case Kind::Character:
            return token.Value == character;
        case Kind::Digit:
            return character >= U'0' && character <= U'9';
        case Kind::OneOf:
        case Kind::NoneOf:
            break;
        default:
            return true;
    }
    const auto inList = [&](char32_t each) {
        auto range = Ranges.begin() + token.Value;
        while (range->First <= range->Last && (each < range->First || each > range->Last)) ++range;
        return range->First <= range->Last;
    };
    bool found = inList(character);
    // The text is folded to small letters, but the ranges stand as they were written.
    if (!found && Case == LikeCase::Ignored) found = std::ranges::any_of(UnfoldedForms(character), inList);
    return found == (token.What == Kind::OneOf);
}

bool LikePattern::MatchesCharacters(std::u32string_view text) const {
    size_t at = 0;
    size_t token = 0;
    size_t afterStar = Tokens.size() + 1;  // the token after the last "*" and where it was tried
    size_t tried = 0;
    // What follows a "*" is tried only where it can begin.
    const auto tryFrom = [&](size_t from) {
        token = afterStar;
        const bool isCharacter = token < Tokens.size() && Tokens[token].What == Kind::Character;
        tried = isCharacter ? text.find(Tokens[token].Value, from) : from;
        at = tried;
        return tried != std::u32string_view::npos;
    };
    while (at < text.size()) {
        if (token < Tokens.size() && Tokens[token].What == Kind::AnyMany) {
            afterStar = token + 1;
            if (afterStar == Tokens.size()) return true;
            if (!tryFrom(at)) return false;
        } else if (token < Tokens.size() && TokenMatches(Tokens[token], text[at])) {
            ++token;
            ++at;
        } else if (afterStar > Tokens.size() || !tryFrom(tried + 1)) {
            return false;
        }
    }
    return std::all_of(Tokens.begin() + static_cast<std::ptrdiff_t>(token), Tokens.end(),
                       [](const Token& each) { return each.What == Kind::AnyMany; });
}

bool LikePattern::Matches(std::string_view text) const {
    return MatchesCharacters(Case == LikeCase::Ignored ? FoldText(text) : CharactersOf(text));
}

bool Like(std::string_view text, std::string_view pattern, LikeCase how) {
    return LikePattern(pattern, how).Matches(text);
}

}  // namespace Corvetape
