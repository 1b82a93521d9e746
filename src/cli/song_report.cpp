#include "cli/song_report.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

#include "audio/certainty_words.h"
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

std::string CertaintyText(Certainty certainty) {
    return std::string(WordOf(certainty));
}

namespace {

/// Empty unless songs are ended by everything that is known.
std::string TrustAsJson(const SongTrust& trust) {
    if (trust == SongTrust{}) return {};
    const auto word = [](Certainty certainty) {
        return certainty == Certainty::None ? std::string("null") : JsonText(CertaintyText(certainty));
    };
    return fmt::format(
        ",\"confidence\":{{\"begin\":{},\"end\":{}}},\"mixed\":{},\"sought\":{},\"dropouts\":{},"
        "\"pauses_cut\":{},\"by_title_alone\":{}",
        word(trust.Begin), word(trust.End), trust.Mixed, trust.Sought, trust.Dropouts, trust.PausesCut,
        trust.AgainstEvidence);
}

}  // namespace

std::string SongAsJson(const ClosedSong& song, const std::string& file) {
    return fmt::format(
        "{{\"begin\":{:.3f},\"end\":{:.3f},\"frames\":{},\"kept\":{},\"reason\":{},\"artist\":{},\"title\":{}"
        ","
        "\"file\":{},\"lost_frames\":{},\"clipped\":{},\"whole\":{}{}}}",
        Seconds(song.BeginFrame, song), Seconds(song.EndFrame, song), song.Frames,
        song.Fate == SongFate::Kept, JsonText(FateText(song.Fate)), JsonText(song.Media.Artist),
        JsonText(song.Media.Song), JsonText(file), song.LostFrames, song.ClippedSamples, song.Whole,
        TrustAsJson(song.Trust));
}

namespace {

/// "1 device change", "3 device changes".
std::string CountText(uint64_t count, const std::string& what) {
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

/// How sure its cuts are, and what makes it doubtful otherwise.
void AddTrust(const SongTrust& trust, std::vector<std::string>& texts) {
    if (trust.Mixed) texts.emplace_back("mixed with another player");
    if (trust.Sought) texts.emplace_back("sought");
    if (trust.Dropouts > 0) texts.push_back(CountText(static_cast<uint64_t>(trust.Dropouts), "dropout"));
    if (trust.AgainstEvidence) texts.emplace_back("ended by its title alone");
    if (trust.Begin == trust.End && trust.End != Certainty::None) {
        texts.push_back(CertaintyText(trust.End));
        return;
    }
    if (trust.Begin != Certainty::None) texts.push_back("begin " + CertaintyText(trust.Begin));
    if (trust.End != Certainty::None) texts.push_back("end " + CertaintyText(trust.End));
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
    if (kept) AddTrust(song.Trust, texts);
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
