#include "core/text/regex.h"

#include <gtest/gtest.h>

#include <string>

namespace Corvetape {
namespace {

using Groups = std::vector<std::string>;

std::optional<Groups> First(const std::string& pattern, const std::string& text) {
    const auto regex = Regex::Compile(pattern);
    if (!regex) return std::nullopt;
    const auto match = regex->First(text);
    if (!match || !match->Found) return std::nullopt;
    return match->Groups;
}

TEST(Regex, TheGroupsOfTheFirstMatchAreGiven) {
    EXPECT_EQ(First("(\\d+)-(\\d+)", "a 1-2 3-4"), (Groups{"1", "2"}));
}

TEST(Regex, APatternWithoutGroupsMatchesWithoutAny) {
    EXPECT_EQ(First("b+", "abbb"), Groups{});
}

TEST(Regex, AGroupThatTookNoPartIsEmpty) {
    EXPECT_EQ(First("(a)|(b)", "b"), (Groups{"", "b"}));
    EXPECT_EQ(First("(b)|(a)", "b"), (Groups{"b", ""}));
}

TEST(Regex, CaseCounts) {
    EXPECT_EQ(First("(song)", "Song"), std::nullopt);
}

TEST(Regex, ADotIsNoLineFeedAndTheDollarSignIsTheVeryEnd) {
    EXPECT_EQ(First("^(.*)", "a\nb"), Groups{"a"});
    EXPECT_EQ(First("^(.*)", "a\rb"), Groups{"a\rb"});
    EXPECT_EQ(First("(a)$", "a\n"), std::nullopt);
    EXPECT_EQ(First("(b)$", "a\nb"), Groups{"b"});
}

TEST(Regex, ClassesOfLettersAndDigitsAreAscii) {
    EXPECT_EQ(First("(\\w+)", "äab"), Groups{"ab"});
    EXPECT_EQ(First("(\\d)", "\u0664"), std::nullopt);
}

TEST(Regex, CharactersAreThoseOfUtf8) {
    EXPECT_EQ(First("^(.)$", "東"), Groups{"東"});
    EXPECT_EQ(First("([ä-ü]+)", "aöb"), Groups{"ö"});
}

TEST(Regex, CodesOfCharactersAreReadAsScriptsReadThem) {
    EXPECT_EQ(First("(\\u00e4\\x62)", "äb"), Groups{"äb"});
}

TEST(Regex, AnEmptyClassMatchesNothingAndItsOppositeAll) {
    EXPECT_EQ(First("([])", "]"), std::nullopt);
    EXPECT_EQ(First("([^])", "\n"), Groups{"\n"});
}

TEST(Regex, AReferenceToAGroupThatTookNoPartIsEmpty) {
    EXPECT_EQ(First("(?:(a)|b)\\1(c)", "bc"), (Groups{"", "c"}));
}

TEST(Regex, AnInvalidPatternIsNone) {
    for (const char* pattern : {"(", "[a", "a**", "*", "(?<", "\\", "(*UTF)a", "a(*ACCEPT)b"}) {
        EXPECT_FALSE(Regex::Compile(pattern)) << pattern;
    }
    EXPECT_TRUE(Regex::Compile("\\(*"));
    EXPECT_TRUE(Regex::Compile("[(*]"));
    EXPECT_FALSE(Regex::Compile(std::string(Regex::LongestPattern + 1, 'a')));
}

TEST(Regex, APatternThatTriesForTooLongFails) {
    const auto regex = Regex::Compile("^(a+)+$");
    ASSERT_TRUE(regex);
    EXPECT_FALSE(regex->First(std::string(40, 'a') + "b"));
    EXPECT_TRUE(regex->First("aaa"));
}

TEST(Regex, TextThatIsNotUtf8CanBeSearched) {
    EXPECT_EQ(First("(b+)", "\xC3 bb"), Groups{"bb"});
    EXPECT_FALSE(Regex::Compile("\xC3("));
}

}  // namespace
}  // namespace Corvetape
