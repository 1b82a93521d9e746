#include "core/text/text.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

using namespace std::string_view_literals;

using Names = std::vector<std::string>;

TEST(Text, CaseIsIgnoredForAToZOnly) {
    EXPECT_TRUE(EqualIgnoringCase("AbZ", "aBz"));
    EXPECT_FALSE(EqualIgnoringCase("ab", "abc"));
    EXPECT_FALSE(EqualIgnoringCase("[", "{"));
    EXPECT_FALSE(EqualIgnoringCase("\xC3\x84", "\xC3\xA4"));
    EXPECT_EQ(LowerCase("AbZ[\xC3\x84"), "abz[\xC3\x84");
}

TEST(Text, APartIsFoundIgnoringCase) {
    EXPECT_EQ(FindIgnoringCase("one TWO two", "two"), size_t{4});
    EXPECT_EQ(FindIgnoringCase("one TWO two", "two", 5), size_t{8});
    EXPECT_EQ(FindIgnoringCase("one", "four"), std::string::npos);
    EXPECT_EQ(FindIgnoringCase("one", "one", 1), std::string::npos);
    EXPECT_EQ(FindIgnoringCase("one", ""), size_t{0});
}

TEST(Text, WhatWasPutInIsNotSearchedAgain) {
    EXPECT_EQ(ReplaceAll("aa", "a", "aa"), "aaaa");
    EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
    EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
    EXPECT_EQ(ReplaceAll("Abab", "a", "x"), "Abxb");
    EXPECT_EQ(ReplaceAllIgnoringCase("Abab", "A", "x"), "xbxb");
}

TEST(Text, OnlyBlanksAreTrimmed) {
    EXPECT_EQ(TrimBlanks("  a b  "), "a b");
    EXPECT_EQ(TrimBlanks("\ta\n"), "\ta\n");
    EXPECT_EQ(TrimBlanks("   "), "");
    EXPECT_EQ(TrimBlanks(""), "");
}

TEST(Text, PiecesStandBetweenSeparators) {
    EXPECT_EQ(Split("a;b;;c", ';'), (Names{"a", "b", "", "c"}));
    EXPECT_EQ(Split("", ';'), Names{""});
    EXPECT_EQ(Split(";", ';'), (Names{"", ""}));
}

TEST(Text, ACharacterHasTheLengthOfItsBytes) {
    EXPECT_EQ(CharacterLength("a"), size_t{1});
    EXPECT_EQ(CharacterLength("\xC3\xA4x"), size_t{2});
    EXPECT_EQ(CharacterLength("\xE2\x82\xAC"), size_t{3});
    EXPECT_EQ(CharacterLength("\xF0\x9F\x8E\xB5"), size_t{4});
    EXPECT_EQ(CharacterLength("\0"sv), size_t{1});
}

TEST(Text, BytesThatAreNoCharacterHaveNoLength) {
    for (const char* bytes :
         {"", "\x80", "\xC3", "\xC3x", "\xC0\xAF", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80", "\xE2\x82",
          "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
        EXPECT_EQ(CharacterLength(bytes), size_t{0});
    }
}

TEST(Text, ACutNeverSplitsACharacter) {
    const std::string text = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8E\xB5";
    for (const auto& [limit, length] : std::vector<std::pair<size_t, size_t>>{
             {0, 0}, {1, 1}, {2, 1}, {3, 3}, {4, 3}, {5, 3}, {6, 6}, {7, 6}, {9, 6}, {10, 10}, {99, 10}}) {
        EXPECT_EQ(CutText(text, limit).size(), length) << limit;
    }
}

TEST(Text, ACutByCharactersCountsThemWhateverTheirLength) {
    const std::string text = "a\xC3\xA4\xFF\xE2\x82\xAC\xF0\x9F\x8E\xB5";
    for (const auto& [limit, length] :
         std::vector<std::pair<size_t, size_t>>{{0, 0}, {1, 1}, {2, 3}, {3, 4}, {4, 7}, {5, 11}, {99, 11}}) {
        EXPECT_EQ(CutCharacters(text, limit).size(), length) << limit;
    }
}

TEST(Text, BytesThatAreNoCharacterAreCutWhereTheLimitIs) {
    EXPECT_EQ(CutText("\xFF\xFF\xFF", 2).size(), size_t{2});
    EXPECT_EQ(CutText("\x80\x80\x80\x80\x80", 4).size(), size_t{4});
}

}  // namespace
}  // namespace Corvetape
