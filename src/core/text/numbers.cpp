#include "core/text/numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

#include "core/text/text.h"

namespace Corvetape {

namespace {

struct Reading {
    double Value = 0;
    size_t Length = 0;  ///< characters read, with the sign; 0 for no number
    bool InRange = true;
};

/// A value beyond the range of a double as the nearest one within: digits before the point or a positive
/// exponent make it large, everything else tiny.
double NearestInRange(std::string_view number) {
    const size_t exponent = number.find_first_of("eE");
    if (exponent != std::string_view::npos) {
        return number[exponent + 1] == '-' ? 0 : std::numeric_limits<double>::max();
    }
    const size_t digit = number.find_first_not_of('0');
    return digit != std::string_view::npos && number[digit] != '.' ? std::numeric_limits<double>::max() : 0;
}

Reading ReadNumber(std::string_view text) {
    Reading reading;
    std::string_view number = text;
    const bool negative = number.starts_with('-');
    if (negative || number.starts_with('+')) number.remove_prefix(1);
    // The library would also take a second sign and the names of infinity.
    const bool begins = !number.empty() && ((number[0] >= '0' && number[0] <= '9') || number[0] == '.');
    if (!begins) return reading;
    const char* const end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, reading.Value);
    if (error == std::errc::invalid_argument) return {};
    if (error == std::errc::result_out_of_range) {
        reading.InRange = false;
        reading.Value = NearestInRange(number.substr(0, static_cast<size_t>(stop - number.data())));
    }
    if (negative) reading.Value = -reading.Value;
    reading.Length = static_cast<size_t>(stop - text.data());
    return reading;
}

}  // namespace

std::optional<double> NumberFromText(std::string_view text) {
    const std::string_view trimmed = TrimBlanks(text);
    const Reading reading = ReadNumber(trimmed);
    if (reading.Length == 0 || reading.Length != trimmed.size() || !reading.InRange) return std::nullopt;
    return reading.Value;
}

std::optional<int32_t> WholeNumberFromText(std::string_view text) {
    const std::optional<double> number = NumberFromText(text);
    if (!number) return std::nullopt;
    const double rounded = std::nearbyint(*number);
    if (rounded < std::numeric_limits<int32_t>::min() || rounded > std::numeric_limits<int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<int32_t>(rounded);
}

double LeadingNumber(std::string_view text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return 0;
    return ReadNumber(text.substr(first)).Value;
}

int32_t RoundToInt32(double value) {
    if (std::isnan(value)) return 0;
    const double rounded = std::nearbyint(value);
    if (rounded <= std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
    if (rounded >= std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(rounded);
}

}  // namespace Corvetape
