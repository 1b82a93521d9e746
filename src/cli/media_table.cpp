#include "cli/media_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "core/text/text.h"

namespace Corvetape {

namespace {

/// The next record, which may span lines inside quotation marks. Nothing if a quotation mark stays open.
std::optional<std::vector<std::string>> NextRecord(std::string_view text, size_t& position) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (; position < text.size(); ++position) {
        const char character = text[position];
        if (character == '"') {
            const bool doubled = quoted && position + 1 < text.size() && text[position + 1] == '"';
            if (doubled) {
                fields.back() += '"';
                ++position;
            } else {
                quoted = !quoted;
            }
        } else if (character == ',' && !quoted) {
            fields.emplace_back();
        } else if (character == '\n' && !quoted) {
            ++position;
            return fields;
        } else if (character != '\r' || quoted) {
            fields.back() += character;
        }
    }
    if (quoted) return std::nullopt;
    return fields;
}

std::optional<double> ReadSeconds(std::string_view text) {
    double value = 0;
    const std::string_view trimmed = TrimBlanks(text);
    const auto [end, error] = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), value);
    const bool whole = error == std::errc() && end == trimmed.data() + trimmed.size();
    if (!whole || !std::isfinite(value) || value < 0) return std::nullopt;
    return value;
}

}  // namespace

std::variant<MediaTable, std::string> MediaTable::Parse(std::string_view text) {
    MediaTable table;
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    size_t position = 0;
    for (size_t record = 1; position < text.size(); ++record) {
        auto fields = NextRecord(text, position);
        const std::string place = "row " + std::to_string(record) + " of the media table";
        if (!fields) return place + " has a quotation mark that is not closed";
        if (fields->size() == 1 && TrimBlanks(fields->front()).empty()) continue;
        if (record == 1 && EqualIgnoringCase(TrimBlanks(fields->front()), "seconds")) continue;
        if (fields->size() > 5)
            return place + " has more than the five fields seconds,station,artist,title,album";
        const std::optional<double> seconds = ReadSeconds(fields->front());
        if (!seconds) return place + " does not begin with a number of seconds";
        if (!table.OwnRows.empty() && *seconds < table.OwnRows.back().Seconds) {
            return place + " is before the row above it";
        }
        fields->resize(5);
        MediaTableRow row;
        row.Seconds = *seconds;
        row.Media.StationName = (*fields)[1];
        row.Media.Artist = (*fields)[2];
        row.Media.Song = (*fields)[3];
        row.Media.Album = (*fields)[4];
        table.OwnRows.push_back(std::move(row));
    }
    if (table.OwnRows.empty()) return std::string("the media table has no rows");
    return table;
}

SourceMedia MediaTable::At(double seconds) const {
    const auto next = std::ranges::upper_bound(OwnRows, seconds, {}, &MediaTableRow::Seconds);
    return next == OwnRows.begin() ? SourceMedia{} : std::prev(next)->Media;
}

}  // namespace Corvetape
