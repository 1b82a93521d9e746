// The table of media data that a recording is split by.
// Fields: table.
#include <cmath>
#include <string>
#include <variant>

#include "cli/media_table.h"
#include "core/text/text.h"
#include "fuzz/support/fuzz.h"

#include <fmt/format.h>

namespace Corvetape {

namespace {

using Fuzz::Require;

std::string Quoted(const std::string& text) {
    return "\"" + ReplaceAll(text, "\"", "\"\"") + "\"";
}

std::string Written(const MediaTable& table) {
    std::string text;
    for (const MediaTableRow& row : table.Rows()) {
        text += fmt::format("{},{},{},{},{}\n", row.Seconds, Quoted(row.Media.StationName),
                            Quoted(row.Media.Artist), Quoted(row.Media.Song), Quoted(row.Media.Album));
    }
    return text;
}

bool Same(const SourceMedia& a, const SourceMedia& b) {
    return a.StationName == b.StationName && a.Artist == b.Artist && a.Song == b.Song && a.Album == b.Album;
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const auto parsed = MediaTable::Parse(input.Rest());
    if (const auto* error = std::get_if<std::string>(&parsed)) {
        Require(!error->empty() && error->size() < 200 && error->find('\n') == std::string::npos,
                "an error is one short line");
        return;
    }
    const auto& table = std::get<MediaTable>(parsed);
    Require(!table.Rows().empty(), "a table has rows");
    Require(Same(table.At(-1), SourceMedia{}), "nothing is known before the first row");
    double before = 0;
    for (const MediaTableRow& row : table.Rows()) {
        Require(std::isfinite(row.Seconds) && row.Seconds >= before, "rows come in the order of their times");
        before = row.Seconds;
    }
    Require(Same(table.At(before), table.Rows().back().Media), "the last row holds to the end");

    const auto again = MediaTable::Parse(Written(table));
    Require(std::holds_alternative<MediaTable>(again), "a written table can be read");
    const auto& rows = std::get<MediaTable>(again).Rows();
    Require(rows.size() == table.Rows().size(), "a written table has the same rows");
    for (size_t i = 0; i < rows.size(); ++i) {
        Require(rows[i].Seconds == table.Rows()[i].Seconds && Same(rows[i].Media, table.Rows()[i].Media),
                "a written row is read as it was");
    }
}

}  // namespace Corvetape
