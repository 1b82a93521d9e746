// Dates by a format.
// Fields: number of minutes since the year 1900 in steps of 997, format.
#include <chrono>
#include <string>

#include "core/text/date_format.h"
#include "core/text/text.h"
#include "fuzz/support/fuzz.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

DateTime TimeOf(uint32_t number) {
    using namespace std::chrono;
    const auto point = sys_days(year(1900) / 1 / 1) + minutes(int64_t{number} * 997) + seconds(number % 60);
    const auto day = floor<days>(point);
    const year_month_day date(day);
    const hh_mm_ss clock(point - day);
    return {int{date.year()},
            static_cast<int32_t>(unsigned{date.month()}),
            static_cast<int32_t>(unsigned{date.day()}),
            static_cast<int32_t>(clock.hours().count()),
            static_cast<int32_t>(clock.minutes().count()),
            static_cast<int32_t>(clock.seconds().count()),
            0};
}

std::string Escaped(std::string_view text) {
    std::string format;
    for (const char each : text) format += std::string("\\") + each;
    return format;
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const DateTime time = TimeOf(input.Number());
    const std::string format(input.Rest());
    const std::string text = FormatDate(format, time);
    Require(text.size() <= 20 * format.size() + 20, "a date is no longer than its format asks for");
    Require(!Fuzz::IsUtf8(format) || Fuzz::IsUtf8(text), "a date is UTF-8 if its format is");

    Require(format.empty() || FormatDate(Escaped(format), time) == format,
            "characters after backslashes stand for themselves");
    if (format.find('"') == std::string::npos) {
        Require(FormatDate("\"" + format + "\"", time) == format, "a quoted text stands for itself");
    }
    if (format.find_first_of("\"\\aApP") == std::string::npos) {
        const bool letters = format.find_first_not_of("dmyhnswqcDMYHNSWQC/:-. ") == std::string::npos;
        Require(!letters || FormatDate(LowerCase(format), time) == text, "the case of letters plays no part");
    }
    const std::string whole = FormatDate("yyyy-mm-dd hh:nn:ss", time);
    Require(whole.size() == 19, "a whole date has its fixed length");
    Require(FormatDate("c", time).find(FormatDate("ddddd", time)) != std::string::npos ||
                FormatDate("c", time) == FormatDate("ttttt", time),
            "a date and time holds the date or is the time alone");
    Require(DayOfYear(time) >= 1 && DayOfYear(time) <= 366 && Weekday(time) >= 1 && Weekday(time) <= 7,
            "days are counted from 1");
}

}  // namespace Corvetape
