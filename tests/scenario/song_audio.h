#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "audio/wav_file.h"
#include "scenario/world.h"
#include "sim/frame_stamp.h"
#include "sim/script_source.h"

namespace Corvetape::Test {

/// The frames of a WAV file as its header tells them; nothing if it is none.
inline std::optional<std::vector<Frame>> FramesOfWav(SimFiles& disk, const std::string& path) {
    const auto info = ReadWavInfo(disk, path);
    const auto content = disk.Content(path);
    if (!info || !content || info->DataStart + info->DataBytes > content->size()) return std::nullopt;
    std::vector<Frame> frames(static_cast<size_t>(info->DataBytes / sizeof(Frame)));
    if (frames.empty()) return frames;
    std::memcpy(frames.data(), content->data() + info->DataStart, frames.size() * sizeof(Frame));
    return frames;
}

/// The frames that a radio plays from `begin` on.
inline std::vector<Frame> FramesOfRadio(const std::shared_ptr<const RadioTimeline>& radio, uint64_t begin,
                                        uint64_t count) {
    std::vector<Frame> frames(static_cast<size_t>(count));
    ScriptSource source(radio, begin);
    frames.resize(source.Read(frames));
    return frames;
}

/// "equal", or where the two first differ.
inline std::string Comparison(std::span<const Frame> expected, std::span<const Frame> actual) {
    const auto [left, right] = std::ranges::mismatch(expected, actual);
    if (left == expected.end() && right == actual.end()) return "equal";
    return "differs at frame " + std::to_string(left - expected.begin()) + " of " +
           std::to_string(expected.size()) + " expected and " + std::to_string(actual.size()) + " found";
}

/// What a numbered radio may have beside its songs.
struct NumberedRadioOptions {
    double FirstPause = 3;
    double SecondsBetweenRests = 0;  ///< 0: none
    double RestSeconds = 0.3;
};

/// A radio whose songs carry the numbers of their frames: a pause, then songs of these lengths with pauses of
/// two seconds after them, then silence.
inline RadioScript NumberedRadio(std::initializer_list<double> songSeconds,
                                 const NumberedRadioOptions& options = {}) {
    RadioScript script;
    script.Pause(options.FirstPause);
    uint64_t number = 0;
    for (const double seconds : songSeconds) {
        ScriptSong song;
        song.Seconds = seconds;
        song.Seed = ++number;
        const double step = options.SecondsBetweenRests;
        for (double at = step; step > 0 && at + step < seconds; at += step) {
            song.Rests.push_back({at, options.RestSeconds, -70});
        }
        const std::string text = std::to_string(number);
        song.Media = {"Radio", "Band " + text, "Song " + text, "Album " + text, ""};
        script.Song(std::move(song)).Pause(2);
    }
    return script.Stamped().SilenceForever();
}

/// The songs of a world that were kept.
inline std::vector<HeardSong> KeptSongs(const World& world) {
    std::vector<HeardSong> kept;
    for (const HeardSong& song : world.Closed) {
        if (song.Song.Fate == SongFate::Kept) kept.push_back(song);
    }
    return kept;
}

/// Compares a file, frame by frame, with the place in the radio that its song claims to come from: "equal",
/// or what is wrong.
inline std::string ComparedWithRadio(World& world, const HeardSong& song, const std::string& path) {
    const auto info = ReadWavInfo(world.Disk(), path);
    if (!info) return path + " is no song";
    const uint64_t count = info->DataBytes / sizeof(Frame);
    if (count != song.RadioEnd - song.RadioBegin) return path + " has another length than it claims";
    ScriptSource radio(world.Truth(), song.RadioBegin);
    std::vector<Frame> expected;
    std::string result = "equal";
    uint64_t behindPiece = 0;
    size_t header = info->DataStart;
    world.Disk().VisitContent(path, [&](std::span<const std::byte> piece) {
        piece = piece.subspan(std::exchange(header, 0));
        expected.resize(std::min<uint64_t>(piece.size() / sizeof(Frame), count - behindPiece));
        radio.Read(expected);
        behindPiece += expected.size();
        if (std::memcmp(expected.data(), piece.data(), expected.size() * sizeof(Frame)) == 0) return;
        if (result == "equal") result = path + " differs before frame " + std::to_string(behindPiece);
    });
    if (behindPiece != count) return path + " is shorter than its header";
    return result;
}

/// Compares the music file of each kept song with the radio: empty, or what is wrong, one thing a line.
inline std::string MusicComparedWithRadio(World& world) {
    const std::vector<HeardSong> kept = KeptSongs(world);
    if (kept.size() != world.Transferred.size()) {
        return std::to_string(kept.size()) + " songs were kept and " +
               std::to_string(world.Transferred.size()) + " handed over";
    }
    std::string faults;
    for (const TransferredSong& song : world.Transferred) {
        const HeardSong* heard = world.HeardAs(song);
        const std::string compared =
            heard == nullptr ? "was never closed" : ComparedWithRadio(world, *heard, song.MusicFile);
        if (compared != "equal") faults += song.MusicFile + ": " + compared + "\n";
    }
    return faults;
}

}  // namespace Corvetape::Test
