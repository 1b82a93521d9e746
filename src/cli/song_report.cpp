#include "cli/song_report.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

#include "cli/json_text.h"
#include "core/text/artist_and_title.h"
#include "platform/linux/desktop/one_line.h"

namespace Corvetape {

namespace {

double Seconds(uint64_t frames, const ClosedSong& song) {
    return static_cast<double>(frames) / song.FramesPerSecond;
}

}  // namespace

std::string SongName(const STATIONANDSONGDATA& media) {
    if (media.Song.empty()) return media.TempFileName;
    return ArtistAndTitle(media);
}

std::string FateText(SongFate fate) {
    switch (fate) {
        case SongFate::Kept:
            return "kept";
        case SongFate::Short:
            return "short";
        case SongFate::Unwanted:
            return "unwanted";
        case SongFate::Aborted:
            return "aborted";
    }
    return {};
}

std::string SongAsJson(const ClosedSong& song, const std::string& file) {
    return fmt::format(
        "{{\"begin\":{:.3f},\"end\":{:.3f},\"frames\":{},\"kept\":{},\"reason\":{},\"artist\":{},\"title\":{}"
        ","
        "\"file\":{},\"lost_frames\":{},\"clipped\":{},\"whole\":{}}}",
        Seconds(song.BeginFrame, song), Seconds(song.EndFrame, song), song.Frames,
        song.Fate == SongFate::Kept, JsonText(FateText(song.Fate)), JsonText(song.Media.Artist),
        JsonText(song.Media.Song), JsonText(file), song.LostFrames, song.ClippedSamples, song.Whole);
}

namespace {

/// "1 device change", "3 device changes".
std::string CountText(uint64_t count, const std::string& what) {
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

/// What is wrong with a song, with a comma between; empty for a healthy one.
std::string HealthText(const ClosedSong& song) {
    std::vector<std::string> texts;
    if (song.LostFrames > 0) texts.push_back(fmt::format("{:.2f} s lost", Seconds(song.LostFrames, song)));
    if (song.DeviceChanges > 0) texts.push_back(CountText(song.DeviceChanges, "device change"));
    const bool kept = song.Fate == SongFate::Kept;  // of the others nobody expects all
    if (kept && song.ClippedSamples > 0) texts.push_back(CountText(song.ClippedSamples, "clipped sample"));
    // A part of a song is none, and what has lost something is not whole anyway.
    if (kept && !song.Whole && song.LostFrames == 0 && song.Media.FilePart == 0)
        texts.emplace_back("not whole");
    return fmt::format("{}", fmt::join(texts, ", "));
}

}  // namespace

std::string SongAsLine(const ClosedSong& song) {
    std::string line =
        fmt::format("{:<8} {:>8}  {}", FateText(song.Fate), LengthText(song.Frames / song.FramesPerSecond),
                    OneLine(SongName(song.Media)));
    if (const std::string health = HealthText(song); !health.empty()) line += "  (" + health + ")";
    if (song.Continues) line += "  (goes on in a next file)";
    return line;
}

std::string LengthText(uint64_t seconds) {
    if (seconds < 3600) return fmt::format("{}:{:02}", seconds / 60, seconds % 60);
    return fmt::format("{}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

}  // namespace Corvetape
