#include "cli/song_report.h"

#include <fmt/format.h>

#include "cli/json_text.h"
#include "platform/linux/one_line.h"

namespace Corvetape {

namespace {

double Seconds(uint64_t frames, const ClosedSong& song) {
    return static_cast<double>(frames) / song.FramesPerSecond;
}

}  // namespace

std::string SongName(const STATIONANDSONGDATA& media) {
    if (media.Song.empty()) return media.TempFileName;
    return media.Artist.empty() ? media.Song : media.Artist + " - " + media.Song;
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

std::string SongAsLine(const ClosedSong& song) {
    std::string line =
        fmt::format("{:<8} {:>8}  {}", FateText(song.Fate), LengthText(song.Frames / song.FramesPerSecond),
                    OneLine(SongName(song.Media)));
    if (song.LostFrames > 0) {
        line += fmt::format("  ({:.2f} s lost)", Seconds(song.LostFrames, song));
    }
    if (song.Continues) line += "  (goes on in a next file)";
    return line;
}

std::string LengthText(uint64_t seconds) {
    if (seconds < 3600) return fmt::format("{}:{:02}", seconds / 60, seconds % 60);
    return fmt::format("{}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

}  // namespace Corvetape
