#include "core/text/like.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace Corvetape {
namespace {

bool LikeAnyCase(std::string_view text, std::string_view pattern) {
    return Like(text, pattern, LikeCase::Ignored);
}

TEST(Like, WithoutSpecialCharactersTheWholeTextMustBeTheSame) {
    EXPECT_TRUE(Like("Radio", "Radio"));
    EXPECT_FALSE(Like("Radio", "Radi"));
    EXPECT_FALSE(Like("Radi", "Radio"));
    EXPECT_FALSE(Like("radio", "Radio"));
    EXPECT_TRUE(Like("", ""));
    EXPECT_FALSE(Like("x", ""));
}

TEST(Like, AStarStandsForAnyCharactersAlsoNone) {
    EXPECT_TRUE(Like("", "*"));
    EXPECT_TRUE(Like("abc", "*"));
    EXPECT_TRUE(Like("abc", "a*c"));
    EXPECT_TRUE(Like("ac", "a*c"));
    EXPECT_TRUE(Like("a*c", "a*c"));
    EXPECT_TRUE(Like("aXbYc", "a*b*c"));
    EXPECT_TRUE(Like("abab", "*ab"));
    EXPECT_TRUE(Like("abc", "**c**"));
    EXPECT_FALSE(Like("abd", "a*c"));
}

TEST(Like, AQuestionMarkStandsForOneCharacter) {
    EXPECT_TRUE(Like("abc", "a?c"));
    EXPECT_FALSE(Like("ac", "a?c"));
    EXPECT_FALSE(Like("", "?"));
    EXPECT_TRUE(Like("Bj\xC3\xB6rk", "Bj?rk"));
    EXPECT_TRUE(Like("\xF0\x9F\x8E\xB5", "?"));
    EXPECT_TRUE(Like("a\xFFz", "a?z"));
}

TEST(Like, AHashStandsForOneDigit) {
    for (char digit = '0'; digit <= '9'; ++digit) EXPECT_TRUE(Like(std::string(1, digit), "#"));
    EXPECT_FALSE(Like("a", "#"));
    EXPECT_FALSE(Like("#", "#"));
    EXPECT_FALSE(Like("\xD9\xA1", "#"));  // a digit of another script
}

TEST(Like, BracketsStandForOneCharacterOfTheirList) {
    EXPECT_TRUE(Like("b", "[abc]"));
    EXPECT_FALSE(Like("d", "[abc]"));
    EXPECT_FALSE(Like("ab", "[abc]"));
    EXPECT_TRUE(Like("\xC3\xB6", "[\xC3\xA4\xC3\xB6\xC3\xBC]"));
    EXPECT_TRUE(Like("*", "[*]"));
    EXPECT_TRUE(Like("?", "[?]"));
    EXPECT_TRUE(Like("#", "[#]"));
    EXPECT_TRUE(Like("[", "[[]"));
}

TEST(Like, BracketsHoldRanges) {
    EXPECT_TRUE(Like("m", "[a-z]"));
    EXPECT_TRUE(Like("a", "[a-z]"));
    EXPECT_TRUE(Like("z", "[a-z]"));
    EXPECT_FALSE(Like("M", "[a-z]"));
    EXPECT_TRUE(Like("5", "[a-z0-9]"));
    EXPECT_TRUE(Like("x", "[0-9x]"));
}

TEST(Like, ARangeThatRunsBackwardHoldsNothing) {
    EXPECT_FALSE(Like("m", "[z-a]"));
    EXPECT_FALSE(Like("z", "[z-a]"));
    EXPECT_TRUE(Like("m", "[!z-a]"));
}

TEST(Like, AMinusAtAnEndOfTheListIsOneOfIt) {
    EXPECT_TRUE(Like("-", "[-a]"));
    EXPECT_TRUE(Like("a", "[-a]"));
    EXPECT_TRUE(Like("-", "[a-]"));
    EXPECT_TRUE(Like("-", "[a-c-]"));
    EXPECT_FALSE(Like("b", "[a-]"));
}

TEST(Like, AnExclamationMarkTurnsTheListRound) {
    EXPECT_TRUE(Like("d", "[!abc]"));
    EXPECT_FALSE(Like("a", "[!abc]"));
    EXPECT_FALSE(Like("", "[!abc]"));
    EXPECT_TRUE(Like("!", "[a!]"));
    EXPECT_TRUE(Like("!", "!"));
}

TEST(Like, AClosingBracketThatComesFirstIsOneOfTheList) {
    EXPECT_TRUE(Like("]", "[]]"));
    EXPECT_TRUE(Like("a", "[]a]"));
    EXPECT_FALSE(Like("]", "[!]]"));
    EXPECT_TRUE(Like("a", "[!]]"));
    EXPECT_TRUE(Like("]", "]"));
}

TEST(Like, ABracketThatIsNeverClosedStandsForItself) {
    EXPECT_TRUE(Like("[abc", "[abc"));
    EXPECT_TRUE(Like("[", "["));
    EXPECT_TRUE(Like("[]", "[]"));
    EXPECT_TRUE(Like("[!]", "[!]"));
    EXPECT_TRUE(Like("x[5", "x[#"));
}

TEST(Like, IgnoresCaseIfAskedTo) {
    EXPECT_TRUE(LikeAnyCase("BJ\xC3\x96RK", "bj\xC3\xB6rk"));
    EXPECT_TRUE(LikeAnyCase("\xCE\xA3\xCE\x91\xCF\x82", "\xCF\x83\xCE\xB1\xCF\x83"));  // Greek, final sigma
    EXPECT_TRUE(LikeAnyCase("m", "[A-Z]"));
    EXPECT_TRUE(LikeAnyCase("M", "[a-z]"));
    EXPECT_FALSE(LikeAnyCase("M", "[!a-z]"));
    EXPECT_TRUE(LikeAnyCase("\xC3\x96", "[\xC3\xB6]"));
    EXPECT_TRUE(
        LikeAnyCase("Stra\xC3\x9F"
                    "e",
                    "stra?e"));
}

TEST(Like, WithoutCaseAListHoldsEveryFormOfItsCharactersAndNoOther) {
    EXPECT_TRUE(Like("\u03c2", "[\u03c2]", LikeCase::Ignored));         // a sigma at the end of a word
    EXPECT_TRUE(Like("\u03a3", "[\u03c2]", LikeCase::Ignored));         // and the capital one
    EXPECT_TRUE(Like("\u00b5", "[\u00a1-\u00ff]", LikeCase::Ignored));  // folds to a letter outside
    EXPECT_TRUE(Like("k", "[\u212a]", LikeCase::Ignored));              // the sign of the kelvin
    EXPECT_FALSE(Like("\u0131", "[A-Z]", LikeCase::Ignored));  // an i without dot is a letter of its own
}

TEST(Like, ManyStarsDoNotTakeForEver) {
    const std::string text(5000, 'a');
    std::string pattern;
    for (int i = 0; i < 50; ++i) pattern += "a*";
    EXPECT_FALSE(Like(text, pattern + "b"));
    EXPECT_TRUE(Like(text + "b", pattern + "b"));
}

TEST(Like, APatternWithoutSpecialCharactersIsPlain) {
    EXPECT_TRUE(LikePattern("Ann - One").IsPlain());
    EXPECT_TRUE(LikePattern("[open").IsPlain());
    for (const char* pattern : {"a*", "a?", "#", "[ab]"}) EXPECT_FALSE(LikePattern(pattern).IsPlain());
}

struct LikeRow {
    const char* Text;
    const char* Pattern;
    bool Matches;
};

TEST(Like, FoldsLettersOfAllScriptsInAndOutOfBrackets) {
    for (const LikeRow& row : std::to_array<LikeRow>({
             {"ΣΟΦΟΣ", "σοφος", true},
             {"σοφος", "*[ς]", true},  // folds to another letter than the one in the brackets
             {"ΣΟΦΟΣ", "*[!ς]", false},
             {"ſ", "[ſ]", true},
             {"S", "[ſ]", true},
             {"\u212A", "[k]", true},
             {"k", "[\u212A]", true},
             {"STRAẞE", "straße", true},
             {"ß", "[ẞ]", true},
             {"Ж", "[а-я]", true},
             {"ж", "[А-Я]", true},
             {"é", "[À-Ý]", true},
             {"é", "[!À-Ý]", false},
             {"5", "[А-Я]", false},
         })) {
        EXPECT_EQ(LikeAnyCase(row.Text, row.Pattern), row.Matches) << row.Text << " " << row.Pattern;
    }
}

TEST(Like, ComparesBracketsExactlyIfNotAskedOtherwise) {
    EXPECT_FALSE(Like("S", "[s]"));
    EXPECT_FALSE(Like("Σ", "[σς]"));
    EXPECT_TRUE(Like("Σ", "[!σς]"));
}

TEST(LikePattern, KnowsABracketThatIsNeverClosed) {
    for (const char* open : {"[", "[[[", "Song [live", "[]", "[!]", "[a] ["}) {
        EXPECT_TRUE(LikePattern(open).HasOpenBracket()) << open;
    }
    for (const char* closed : {"", "Song]", "[a]", "[[]", "[]]", "*"}) {
        EXPECT_FALSE(LikePattern(closed).HasOpenBracket()) << closed;
    }
}

TEST(LikePattern, BracketsThatAreNeverClosedMatchThemselves) {
    EXPECT_TRUE(Like("[[[", "[[["));
    EXPECT_FALSE(Like("[[", "[[["));
}

}  // namespace
}  // namespace Corvetape
