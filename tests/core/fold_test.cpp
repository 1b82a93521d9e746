#include "core/text/fold.h"

#include <gtest/gtest.h>

#include <array>

namespace Corvetape {
namespace {

struct Row {
    const char* Text;
    const char* Folded;
};

constexpr auto Rows = std::to_array<Row>({
    {"ABC xyz 09", "abc xyz 09"},
    {"ÄÖÜ ÀÉÎÕ Ø Æ Þ", "äöü àéîõ ø æ þ"},
    {"ΣΑΣ σας", "σασ σασ"},  // the final sigma is no letter of its own
    {"ЖУК", "жук"},
    {"ſK\u212A\u212B", "skkå"},  // long s, sign of Kelvin, sign of Ångström
    {"STRAẞE Straße", "straße straße"},
    {"ᾈ", "ᾀ"},
    {"Ǆǅǆ", "ǆǆǆ"},
    {"東京 123", "東京 123"},
});

TEST(FoldText, LeavesTheCaseOut) {
    for (const Row& row : Rows) EXPECT_EQ(FoldText(row.Text), CharactersOf(row.Folded)) << row.Text;
}

TEST(FoldText, KeepsTheNumberOfCharacters) {
    for (const char* text : {"ß", "ẞ", "ŉ", "ﬁ", "İ", "ΐ"}) EXPECT_EQ(FoldText(text).size(), 1u) << text;
}

TEST(FoldText, KeepsBytesThatAreNoCharactersApartFromAllCharacters) {
    EXPECT_EQ(FoldText("a\xC4z"), (std::u32string{U'a', 0x110000 + 0xC4, U'z'}));
    EXPECT_NE(FoldText("\xC4"), FoldText("Ä"));
}

}  // namespace
}  // namespace Corvetape
