#include "core/text/shell_error.h"

#include <array>
#include <string_view>

namespace Corvetape {

namespace {

struct Row {
    int32_t Code;
    std::string_view Text;
};

// The spelling of two of them is what users search for.
constexpr std::array<Row, 13> Table = {{
    {0, "Out of memory or not enough resources"},
    {2, "File not found"},
    {3, "Path not found"},
    {5, "Access to this file denied"},
    {8, "Not enough memory"},
    {11, "Invalid .exe file"},
    {26, "Sharing violation occured"},
    {27, "File name association incomplete or invalid"},
    {28, "DDE timeout"},
    {29, "DDE transaction failed"},
    {30, "Other DDE transaction busy"},
    {31, "No application associated with this file extension"},
    {32, "DDL not found"},
}};

}  // namespace

std::string ShellErrorText(int32_t code) {
    std::string_view text;
    for (const Row& row : Table) {
        if (row.Code == code) text = row.Text;
    }
    return std::to_string(code).append(" (").append(text).append(")");
}

}  // namespace Corvetape
