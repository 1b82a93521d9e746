#include "core/text/date_format.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <span>

#include "core/text/text.h"

#include <fmt/format.h>

namespace Corvetape {

namespace {

using namespace std::chrono;

constexpr std::array<std::string_view, 12> MonthNames = {"January",   "February", "March",    "April",
                                                         "May",       "June",     "July",     "August",
                                                         "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> DayNames = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                      "Thursday", "Friday", "Saturday"};
constexpr size_t ShortNameLength = 3;
constexpr DateTime CountingBegins = {1899, 12, 30, 0, 0, 0, 0};

sys_days Day(const DateTime& date) {
    return year(date.Year) / month(static_cast<unsigned>(date.Month)) / day(static_cast<unsigned>(date.Day));
}

std::string_view MonthName(const DateTime& date) {
    return MonthNames[static_cast<size_t>(date.Month - 1) % MonthNames.size()];
}

std::string_view DayName(const DateTime& date) {
    return DayNames[static_cast<size_t>(Weekday(date) - 1)];
}

std::string Two(int32_t number) {
    return fmt::format("{:02}", number);
}

std::string ShortDate(const DateTime& time) {
    return fmt::format("{:04}-{:02}-{:02}", time.Year, time.Month, time.Day);
}

std::string LongDate(const DateTime& time) {
    return fmt::format("{}, {} {} {:04}", DayName(time), time.Day, MonthName(time), time.Year);
}

std::string WholeTime(const DateTime& time) {
    return fmt::format("{:02}:{:02}:{:02}", time.Hour, time.Minute, time.Second);
}

bool HasDate(const DateTime& time) {
    return Day(time) != Day(CountingBegins);
}

bool HasTime(const DateTime& time) {
    return time.Hour != 0 || time.Minute != 0 || time.Second != 0;
}

std::string General(const DateTime& time) {
    if (!HasTime(time) && HasDate(time)) return ShortDate(time);
    return HasDate(time) ? ShortDate(time) + " " + WholeTime(time) : WholeTime(time);
}

int32_t Week(const DateTime& date) {
    const DateTime firstDay = {date.Year, 1, 1, 0, 0, 0, 0};
    return (DayOfYear(date) - 1 + Weekday(firstDay) - 1) / 7 + 1;
}

/// What a run of letters is to be read with.
struct Context {
    const DateTime& Time;
    bool HalfDays = false;    ///< hours from 1 to 12
    bool BehindHour = false;  ///< the last field was an hour
};

int32_t Hour(const Context& context) {
    if (!context.HalfDays) return context.Time.Hour;
    return context.Time.Hour % 12 == 0 ? 12 : context.Time.Hour % 12;
}

std::string DayField(size_t length, const Context& context) {
    switch (length) {
        case 1:
            return std::to_string(context.Time.Day);
        case 2:
            return Two(context.Time.Day);
        case 3:
            return std::string(DayName(context.Time).substr(0, ShortNameLength));
        case 4:
            return std::string(DayName(context.Time));
        case 5:
            return ShortDate(context.Time);
        default:
            return LongDate(context.Time);
    }
}

std::string MonthField(size_t length, const Context& context) {
    const int32_t number = context.BehindHour ? context.Time.Minute : context.Time.Month;
    switch (length) {
        case 1:
            return std::to_string(number);
        case 2:
            return Two(number);
        case 3:
            return std::string(MonthName(context.Time).substr(0, ShortNameLength));
        default:
            return std::string(MonthName(context.Time));
    }
}

std::string YearField(size_t length, const Context& context) {
    if (length == 1) return std::to_string(DayOfYear(context.Time));
    return length == 2 ? Two(context.Time.Year % 100) : fmt::format("{:04}", context.Time.Year);
}

std::string NumberField(size_t length, int32_t number) {
    return length == 1 ? std::to_string(number) : Two(number);
}

std::string Field(char letter, size_t length, const Context& context) {
    switch (letter) {
        case 'd':
            return DayField(length, context);
        case 'm':
            return MonthField(length, context);
        case 'y':
            return YearField(length, context);
        case 'h':
            return NumberField(length, Hour(context));
        case 'n':
            return NumberField(length, context.Time.Minute);
        case 's':
            return NumberField(length, context.Time.Second);
        case 'w':
            return std::to_string(length == 1 ? Weekday(context.Time) : Week(context.Time));
        case 'q':
            return std::to_string((context.Time.Month - 1) / 3 + 1);
        case 'c':
            return General(context.Time);
        default:
            return WholeTime(context.Time);
    }
}

/// The lengths that a letter can be repeated to. A longer run is read as several.
struct LetterRow {
    char Letter;
    std::array<size_t, 6> Lengths;  ///< falling, then 0
};

constexpr std::array<LetterRow, 10> Letters = {{{'d', {6, 5, 4, 3, 2, 1}},
                                                {'m', {4, 3, 2, 1}},
                                                {'y', {4, 2, 1}},
                                                {'h', {2, 1}},
                                                {'n', {2, 1}},
                                                {'s', {2, 1}},
                                                {'w', {2, 1}},
                                                {'q', {1}},
                                                {'c', {1}},
                                                {'t', {5}}}};

char LowerLetter(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// Length of the field that the text begins with, 0 if it begins with none.
size_t FieldLength(std::string_view text) {
    const char letter = LowerLetter(text[0]);
    size_t run = 0;
    while (run < text.size() && LowerLetter(text[run]) == letter) ++run;
    for (const LetterRow& row : Letters) {
        if (row.Letter != letter) continue;
        for (const size_t length : row.Lengths) {
            if (length != 0 && length <= run) return length;
        }
    }
    return 0;
}

struct HalfDayRow {
    std::string_view Text;
    std::string_view Before;
    std::string_view After;
};

/// The half of the day, whose case follows the format, except for the system's own mark.
constexpr std::array<HalfDayRow, 5> HalfDays = {{{"AM/PM", "AM", "PM"},
                                                 {"am/pm", "am", "pm"},
                                                 {"A/P", "A", "P"},
                                                 {"a/p", "a", "p"},
                                                 {"AMPM", "AM", "PM"}}};

const HalfDayRow* FindHalfDay(std::string_view text) {
    const HalfDayRow* found = nullptr;
    for (const HalfDayRow& row : HalfDays) {
        const std::string_view begin = text.substr(0, row.Text.size());
        if (begin == row.Text) return &row;
        if (found == nullptr && EqualIgnoringCase(begin, row.Text)) found = &row;
    }
    return found;
}

/// Length of the quoted text or escaped character that the text begins with, 0 if it begins with neither.
size_t LiteralLength(std::string_view text) {
    if (text[0] == '\\') return text.size() < 2 ? 1 : 2;
    if (text[0] != '"') return 0;
    const size_t close = text.find('"', 1);
    return close == std::string_view::npos ? text.size() : close + 1;
}

std::string_view Literal(std::string_view token) {
    if (token[0] == '\\') return token.size() < 2 ? token : token.substr(1);
    token.remove_prefix(1);
    if (token.ends_with('"')) token.remove_suffix(1);
    return token;
}

bool CountsHalfDays(std::string_view format) {
    while (!format.empty()) {
        if (FindHalfDay(format) != nullptr) return true;
        const size_t literal = LiteralLength(format);
        format.remove_prefix(literal == 0 ? 1 : literal);
    }
    return false;
}

}  // namespace

std::string FormatDate(std::string_view format, const DateTime& time) {
    if (format.empty()) return General(time);
    Context context{time, CountsHalfDays(format)};
    std::string result;
    while (!format.empty()) {
        size_t length = LiteralLength(format);
        if (length > 0) {
            result += Literal(format.substr(0, length));
        } else if (const HalfDayRow* halfDay = FindHalfDay(format)) {
            length = halfDay->Text.size();
            result += time.Hour < 12 ? halfDay->Before : halfDay->After;
        } else if ((length = FieldLength(format)) > 0) {
            const char letter = LowerLetter(format[0]);
            result += Field(letter, length, context);
            context.BehindHour = letter == 'h';
        } else {
            length = 1;
            result += format[0];
        }
        format.remove_prefix(length);
    }
    return result;
}

DateTime TimeAlone(const DateTime& time) {
    DateTime alone = time;
    alone.Year = CountingBegins.Year;
    alone.Month = CountingBegins.Month;
    alone.Day = CountingBegins.Day;
    return alone;
}

int32_t Weekday(const DateTime& date) {
    return static_cast<int32_t>(weekday(Day(date)).c_encoding()) + 1;
}

int32_t DayOfYear(const DateTime& date) {
    const sys_days first = Day({date.Year, 1, 1, 0, 0, 0, 0});
    return static_cast<int32_t>((Day(date) - first).count()) + 1;
}

double DateNumber(const DateTime& time) {
    const double days = static_cast<double>((Day(time) - Day(CountingBegins)).count());
    const double seconds = (time.Hour * 60 + time.Minute) * 60 + time.Second + time.Millisecond / 1000.0;
    return days + seconds / 86400.0;
}

}  // namespace Corvetape
