#include "cli/recut_choice.h"

#include <fmt/format.h>

#include <cmath>
#include <functional>

#include "cli/song_report.h"
#include "core/text/artist_and_title.h"
#include "core/text/numbers.h"
#include "core/text/placeholders.h"
#include "core/text/text.h"
#include "platform/linux/desktop/one_line.h"

namespace Corvetape {

namespace {

using IsMeant = std::function<bool(const KeptMargins&)>;

std::vector<KeptMargins> Those(const std::vector<KeptMargins>& all, const IsMeant& meant) {
    std::vector<KeptMargins> found;
    for (const KeptMargins& each : all) {
        if (meant(each)) found.push_back(each);
    }
    return found;
}

std::vector<std::string> NamesOf(const KeptMargins& margins) {
    std::vector<std::string> names = {PathPart(margins.MusicFile, PathPiece::NameWithoutExtension),
                                      margins.MusicFile.substr(margins.MusicFile.rfind('/') + 1),
                                      margins.Base};
    if (!margins.Media.Song.empty()) {
        names.push_back(ArtistAndTitle(margins.Media));
        names.push_back(margins.Media.Song);
    }
    return names;
}

std::string WordFor(Certainty certainty) {
    return certainty == Certainty::None ? "not known" : CertaintyText(certainty);
}

}  // namespace

std::string NameOf(const KeptMargins& margins) {
    if (!margins.MusicFile.empty()) return PathPart(margins.MusicFile, PathPiece::NameWithoutExtension);
    return margins.Media.Song.empty() ? margins.Base : ArtistAndTitle(margins.Media);
}

std::vector<KeptMargins> FindSongs(Files& disk, const std::vector<KeptMargins>& all,
                                   const std::string& wanted) {
    if (wanted.empty()) return {};
    auto byFile = Those(all, [&](const KeptMargins& each) {
        return !each.MusicFile.empty() && (each.MusicFile == wanted || disk.SameFile(each.MusicFile, wanted));
    });
    // Of songs of one name the file is that of the one which has it surely.
    auto surely = Those(byFile, [](const KeptMargins& each) { return each.MusicKnown; });
    if (!surely.empty()) return surely;
    if (!byFile.empty()) return byFile;
    auto exactly = Those(all, [&](const KeptMargins& each) {
        const std::vector<std::string> names = NamesOf(each);
        return std::ranges::find(names, wanted) != names.end();
    });
    if (!exactly.empty()) return exactly;
    return Those(all, [&](const KeptMargins& each) {
        return std::ranges::any_of(NamesOf(each),
                                   [&](const std::string& name) { return EqualIgnoringCase(name, wanted); });
    });
}

std::string RecutLines(const RecutEntry& entry) {
    const KeptMargins& margins = entry.Margins;
    const double hours = static_cast<double>(entry.SecondsLeft) / 3600;
    std::string text = fmt::format("{}  (begin {}, end {}; kept for {:.1f} h)\n", OneLine(NameOf(margins)),
                                   WordFor(margins.Begin), WordFor(margins.End), hours);
    if (!entry.Room) return text + "    what was kept of it is not complete\n";
    return text + fmt::format("    {}; begin up to {:.2f} s earlier, end up to {:.2f} s later\n",
                              LengthText(static_cast<uint64_t>(std::lround(entry.Room->Length))),
                              std::abs(entry.Room->BeginEarliest), entry.Room->EndLatest);
}

std::optional<double> SecondsToMove(const std::string& text) {
    const std::optional<double> seconds = NumberFromText(text);
    constexpr double most = 1e6;
    if (!seconds || !std::isfinite(*seconds) || std::abs(*seconds) > most) return std::nullopt;
    return seconds;
}

}  // namespace Corvetape
