#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Corvetape {

/// The number that a text is: blanks around it, a sign, a decimal point and an exponent are allowed. Nothing
/// if it is no number or does not fit a double.
std::optional<double> NumberFromText(std::string_view text);

/// The same as a whole number, rounded to the nearest with halves to even; nothing beyond 32 bits.
std::optional<int32_t> WholeNumberFromText(std::string_view text);

/// The number that a text begins with, after blanks; 0 without one.
double LeadingNumber(std::string_view text);

/// Rounded to the nearest, halves to even, and brought into the range of 32 bits. Not a number gives 0.
int32_t RoundToInt32(double value);

}  // namespace Corvetape
