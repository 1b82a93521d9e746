#include "cli/json_text.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

TEST(JsonText, EscapesWhatMustNotStandInAString) {
    EXPECT_EQ(JsonText("a\"b\\c\n\r\t\x01\x7F"), "\"a\\\"b\\\\c\\n\\r\\t\\u0001\\u007f\"");
}

TEST(JsonText, LeavesOtherCharactersAsTheyAre) {
    EXPECT_EQ(JsonText("Bj\xC3\xB6rk \xE2\x80\xA2 \xF0\x9F\x8E\xB5"),
              "\"Bj\xC3\xB6rk \xE2\x80\xA2 \xF0\x9F\x8E\xB5\"");
}

TEST(JsonText, ReplacesBytesThatAreNoText) {
    EXPECT_EQ(JsonText("a\xFF"), "\"a\xEF\xBF\xBD\"");
    EXPECT_EQ(JsonText("\xC3"), "\"\xEF\xBF\xBD\"");
    EXPECT_EQ(JsonText("\xC0\x80"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\"");
    EXPECT_EQ(JsonText("\xED\xA0\x80"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\"");
}

}  // namespace
}  // namespace Corvetape
