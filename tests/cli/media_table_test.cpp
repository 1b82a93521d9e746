#include "cli/media_table.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

MediaTable Good(std::string_view text) {
    auto result = MediaTable::Parse(text);
    if (const auto* error = std::get_if<std::string>(&result)) {
        ADD_FAILURE() << *error;
        return {};
    }
    return std::get<MediaTable>(result);
}

std::string Error(std::string_view text) {
    const auto result = MediaTable::Parse(text);
    const auto* error = std::get_if<std::string>(&result);
    return error ? *error : "";
}

TEST(MediaTable, TheRowThatBeganLastPlays) {
    const MediaTable table = Good("1.5,FM,Ann,One,First\n60,FM,Bob,Two,\n");
    EXPECT_EQ(table.At(1.4), SourceMedia{});
    EXPECT_EQ(table.At(1.5).Song, "One");
    EXPECT_EQ(table.At(59.99).Album, "First");
    EXPECT_EQ(table.At(60).Artist, "Bob");
    EXPECT_EQ(table.At(1e9).Song, "Two");
}

TEST(MediaTable, AHeadingAndEmptyLinesArePassedOver) {
    const MediaTable table = Good("\xEF\xBB\xBFSeconds,station,artist,title,album\r\n\r\n0,FM,Ann,One\r\n");
    ASSERT_EQ(table.Rows().size(), 1u);
    EXPECT_EQ(table.At(0).Song, "One");
    EXPECT_EQ(table.At(0).Album, "");
}

TEST(MediaTable, AQuotedFieldHoldsCommasQuotesAndLineEnds) {
    const MediaTable table = Good("0,FM,\"Ann, Bob\",\"say \"\"hi\"\"\",\"a\nb\"");
    EXPECT_EQ(table.At(0).Artist, "Ann, Bob");
    EXPECT_EQ(table.At(0).Song, "say \"hi\"");
    EXPECT_EQ(table.At(0).Album, "a\nb");
}

TEST(MediaTable, AnUnreadableRowIsNamed) {
    EXPECT_EQ(Error("0,FM,A,B,C\nx,FM,A,B,C"),
              "row 2 of the media table does not begin with a number of seconds");
    EXPECT_EQ(Error("-1,FM"), "row 1 of the media table does not begin with a number of seconds");
    EXPECT_EQ(Error("nan,FM"), "row 1 of the media table does not begin with a number of seconds");
    EXPECT_EQ(Error("0,a,b,c,d,e"),
              "row 1 of the media table has more than the five fields seconds,station,artist,title,album");
    EXPECT_EQ(Error("0,\"FM"), "row 1 of the media table has a quotation mark that is not closed");
    EXPECT_EQ(Error("5,FM\n4,FM"), "row 2 of the media table is before the row above it");
    EXPECT_EQ(Error("\n\n"), "the media table has no rows");
    EXPECT_EQ(Error(""), "the media table has no rows");
}

}  // namespace
}  // namespace Corvetape
