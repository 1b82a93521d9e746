#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"

namespace Corvetape {

/// A date and time by a format of letters, whose case plays no part:
///
/// | letters | stand for |
/// |---|---|
/// | d dd ddd dddd | day of the month, with two digits; name of the weekday, short and long |
/// | ddddd dddddd | whole date, short and long |
/// | m mm mmm mmmm | month, with two digits; its name, short and long. m and mm after h or hh: minutes |
/// | y yy yyyy | day of the year; year with two and with four digits |
/// | h hh n nn s ss | hour, minute, second, plain and with two digits |
/// | w ww q | weekday (Sunday is 1), week of the year (the first one holds January 1), quarter |
/// | c ttttt | date and time, without a part that is empty; time |
/// | AM/PM am/pm A/P a/p AMPM | half of the day; hours then count from 1 to 12 |
///
/// A text in double quotes and a character after a backslash stand for themselves, and so does everything
/// else. "/" and ":" separate as they are. An empty format is "c".
std::string FormatDate(std::string_view format, const DateTime& time);

/// A time of day alone. Its date is the day that counting begins with, December 30, 1899, so that "mm" by
/// itself is always "12".
DateTime TimeAlone(const DateTime& time);

/// 1 Sunday to 7 Saturday.
int32_t Weekday(const DateTime& date);

/// 1 to 366.
int32_t DayOfYear(const DateTime& date);

/// Days since December 30, 1899, with the time of day as their fraction: a date as a number.
double DateNumber(const DateTime& time);

}  // namespace Corvetape
