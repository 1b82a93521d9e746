#include "core/text/date_format.h"

#include <gtest/gtest.h>

#include <ostream>

namespace Corvetape {
namespace {

// A Thursday.
constexpr DateTime Afternoon = {2009, 12, 31, 14, 5, 9, 700};
// A Sunday.
constexpr DateTime Morning = {2012, 3, 4, 0, 30, 2, 0};

struct Row {
    const char* Format;
    const char* Afternoon;
    const char* Morning;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.Format;
}

class FormatDateTable : public testing::TestWithParam<Row> {};

TEST_P(FormatDateTable, EachRunOfLettersHasItsMeaning) {
    EXPECT_EQ(FormatDate(GetParam().Format, Afternoon), GetParam().Afternoon) << GetParam().Format;
    EXPECT_EQ(FormatDate(GetParam().Format, Morning), GetParam().Morning) << GetParam().Format;
}

INSTANTIATE_TEST_SUITE_P(
    Letters, FormatDateTable,
    testing::Values(Row{"d", "31", "4"}, Row{"dd", "31", "04"}, Row{"ddd", "Thu", "Sun"},
                    Row{"dddd", "Thursday", "Sunday"}, Row{"ddddd", "2009-12-31", "2012-03-04"},
                    Row{"dddddd", "Thursday, 31 December 2009", "Sunday, 4 March 2012"}, Row{"m", "12", "3"},
                    Row{"mm", "12", "03"}, Row{"mmm", "Dec", "Mar"}, Row{"mmmm", "December", "March"},
                    Row{"y", "365", "64"}, Row{"yy", "09", "12"}, Row{"yyyy", "2009", "2012"},
                    Row{"h", "14", "0"}, Row{"hh", "14", "00"}, Row{"n", "5", "30"}, Row{"nn", "05", "30"},
                    Row{"s", "9", "2"}, Row{"ss", "09", "02"}, Row{"w", "5", "1"}, Row{"ww", "53", "10"},
                    Row{"q", "4", "1"}, Row{"c", "2009-12-31 14:05:09", "2012-03-04 00:30:02"},
                    Row{"ttttt", "14:05:09", "00:30:02"}));

INSTANTIATE_TEST_SUITE_P(HalfDays, FormatDateTable,
                         testing::Values(Row{"AM/PM", "PM", "AM"}, Row{"am/pm", "pm", "am"},
                                         Row{"A/P", "P", "A"}, Row{"a/p", "p", "a"}, Row{"AMPM", "PM", "AM"},
                                         Row{"ampm", "PM", "AM"}, Row{"h:nn AM/PM", "2:05 PM", "12:30 AM"},
                                         Row{"hh a/p", "02 p", "12 a"}, Row{"AMPM hh", "PM 02", "AM 12"}));

INSTANTIATE_TEST_SUITE_P(Texts, FormatDateTable,
                         testing::Values(Row{"yymmddhhnnss", "091231140509", "120304003002"},
                                         Row{"yyyymmdd", "20091231", "20120304"},
                                         Row{"YYYY-MM-DD", "2009-12-31", "2012-03-04"},
                                         Row{"dd/mm/yy", "31/12/09", "04/03/12"},
                                         Row{"hh:nn:ss", "14:05:09", "00:30:02"},
                                         Row{"", "2009-12-31 14:05:09", "2012-03-04 00:30:02"}));

INSTANTIATE_TEST_SUITE_P(Literals, FormatDateTable,
                         testing::Values(Row{"\"day\" d", "day 31", "day 4"}, Row{"\\d\\dd", "dd31", "dd4"},
                                         Row{"\"open d", "open d", "open d"}, Row{"d\\", "31\\", "4\\"},
                                         Row{"\"\"d", "31", "4"}, Row{"\\\"d", "\"31", "\"4"},
                                         Row{"\\\\d", "\\31", "\\4"},
                                         Row{"hh \"AM/PM\"", "14 AM/PM", "00 AM/PM"},
                                         Row{"x1_(\xC3\xA4)%", "x1_(\xC3\xA4)%", "x1_(\xC3\xA4)%"},
                                         Row{"t tttt", "t tttt", "t tttt"}));

INSTANTIATE_TEST_SUITE_P(MinutesAfterHours, FormatDateTable,
                         testing::Values(Row{"hhmm", "1405", "0030"}, Row{"hh:mm", "14:05", "00:30"},
                                         Row{"h:m", "14:5", "0:30"}, Row{"hh\"h\"mm", "14h05", "00h30"},
                                         Row{"hh mmm", "14 Dec", "00 Mar"},
                                         Row{"hh:mm:ss mm", "14:05:09 12", "00:30:02 03"},
                                         Row{"mm:ss", "12:09", "03:02"},
                                         Row{"hh dd mm", "14 31 12", "00 04 03"},
                                         Row{"yymmddhhmmss", "091231140509", "120304003002"}));

INSTANTIATE_TEST_SUITE_P(LongRunsAreReadAsSeveral, FormatDateTable,
                         testing::Values(Row{"ddddddd", "Thursday, 31 December 200931",
                                             "Sunday, 4 March 20124"},
                                         Row{"mmmmm", "December12", "March3"}, Row{"yyy", "09365", "1264"},
                                         Row{"hhh", "1414", "000"}, Row{"qq", "44", "11"},
                                         Row{"www", "535", "101"}, Row{"sss", "099", "022"}));

TEST(FormatDate, TheMonthOfATimeAloneIsTwelve) {
    EXPECT_EQ(FormatDate("mm", TimeAlone(Morning)), "12");
    EXPECT_EQ(FormatDate("hh:nn:ss", TimeAlone(Morning)), "00:30:02");
}

TEST(FormatDate, TheGeneralFormLeavesAnEmptyPartOut) {
    EXPECT_EQ(FormatDate("c", {2009, 12, 31, 0, 0, 0, 0}), "2009-12-31");
    EXPECT_EQ(FormatDate("c", TimeAlone(Afternoon)), "14:05:09");
    EXPECT_EQ(FormatDate("c", {1899, 12, 30, 0, 0, 0, 0}), "00:00:00");
}

TEST(FormatDate, NoonIsTwelveInTheAfternoon) {
    EXPECT_EQ(FormatDate("h am/pm", {2009, 1, 1, 12, 0, 0, 0}), "12 pm");
    EXPECT_EQ(FormatDate("h am/pm", {2009, 1, 1, 11, 59, 59, 0}), "11 am");
}

TEST(FormatDate, TheFirstWeekHoldsTheFirstOfJanuary) {
    EXPECT_EQ(FormatDate("ww", {2011, 1, 1, 0, 0, 0, 0}), "1");  // a Saturday
    EXPECT_EQ(FormatDate("ww", {2011, 1, 2, 0, 0, 0, 0}), "2");
    EXPECT_EQ(FormatDate("ww", {2012, 12, 31, 0, 0, 0, 0}), "53");
    EXPECT_EQ(FormatDate("ww", {2028, 12, 31, 0, 0, 0, 0}), "54");
}

TEST(FormatDate, TheDayOfTheYearCountsLeapDays) {
    EXPECT_EQ(DayOfYear({2012, 12, 31, 0, 0, 0, 0}), 366);
    EXPECT_EQ(DayOfYear({2013, 1, 1, 0, 0, 0, 0}), 1);
}

TEST(FormatDate, ADateIsANumberOfDays) {
    EXPECT_EQ(DateNumber({1899, 12, 30, 0, 0, 0, 0}), 0.0);
    EXPECT_EQ(DateNumber({1900, 1, 1, 12, 0, 0, 0}), 2.5);
    EXPECT_EQ(DateNumber({2009, 12, 31, 18, 0, 0, 0}), 40178.75);
}

}  // namespace
}  // namespace Corvetape
