#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/sound_source.h"

namespace Corvetape {

/// One line of a media table: from `Seconds` of the input on, `Media` plays.
struct MediaTableRow {
    double Seconds = 0;
    SourceMedia Media;
};

/// What plays when, read from a table `seconds,station,artist,title,album`.
class MediaTable {
 public:
    /// Reads the table: one row a line, fields separated by commas, a field may stand in quotation marks, in
    /// which a doubled one stands for itself. A first line that begins with "seconds" is a heading; empty
    /// lines are passed over; missing fields at the end are empty. Rows come in the order of their times.
    /// Otherwise one clear line that names the place.
    static std::variant<MediaTable, std::string> Parse(std::string_view text);

    /// What plays at a time; nothing is known before the first row.
    SourceMedia At(double seconds) const;

    const std::vector<MediaTableRow>& Rows() const { return OwnRows; }

 private:
    std::vector<MediaTableRow> OwnRows;
};

}  // namespace Corvetape
