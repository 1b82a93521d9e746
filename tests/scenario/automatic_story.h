#pragma once

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "scenario/story.h"

namespace Corvetape::Test {

/// Most of a song that may be missing at its begin or end, or of its neighbour that may be in it.
inline constexpr double WithAGap = 0.1;
inline constexpr double WithoutAGap = 0.3;

inline std::vector<IniLine> AutomaticSettings() {
    std::vector<IniLine> lines = {{AnySourceSection, "EndOfSongDetection", "3"}};
    for (const char* source : {ProviderOfRadio, NoStationData})
        lines.push_back({source, "IgnoreShortSongs", "15"});
    return lines;
}

inline WorldOptions Automatic(RadioScript radio) {
    WorldOptions options;
    options.Radio = std::move(radio);
    options.Settings = AutomaticSettings();
    return options;
}

/// Songs one after the other with so much silence between them, each of another sound.
inline RadioScript Songs(int count, double seconds, double gap) {
    RadioScript radio;
    radio.Pause(3);
    constexpr std::array<SongSound, 2> sounds = {SongSound::Noise, SongSound::Chord};
    for (int i = 1; i <= count; ++i) {
        ScriptSong song;
        song.Seconds = seconds;
        song.Seed = static_cast<uint64_t>(i);
        song.Sound = sounds[static_cast<size_t>(i) % sounds.size()];
        const std::string text = std::to_string(i);
        song.Media = {"Radio", "Band " + text, "Song " + text, "Album " + text, ""};
        radio.Song(std::move(song));
        if (gap > 0) radio.Silence(gap);
    }
    return radio.SilenceForever();
}

/// A world whose player says what the test says of what the radio plays.
class PlayerWorld {
 public:
    explicit PlayerWorld(RadioScript radio, std::vector<IniLine> more = {})
        : Place(Options(std::move(radio), std::move(more))) {}

    /// At this second a player plays a track that began at another; without that, it does not say when.
    void Plays(double second, const std::string& title, std::optional<double> began,
               const std::string& track = "", const std::string& player = "mpv") {
        RunTo(Place, second);
        PlayerReport& report = Reports[player];
        report.Player = "org.mpris.MediaPlayer2." + player;
        report.Playing = true;
        report.Status = PlayerStatus::Playing;
        report.Artist = "Band";
        report.Title = title;
        report.TrackId = track.empty() ? title : track;
        report.LengthMs = 60'000;
        report.BeganAtMs.reset();
        if (began) report.BeganAtMs = static_cast<int64_t>(*began * 1000);
        Place.Players.Say(report);
    }
    void Pauses(double second, PlayerStatus status = PlayerStatus::Paused,
                const std::string& player = "mpv") {
        RunTo(Place, second);
        PlayerReport& report = Reports[player];
        report.Playing = false;
        report.Status = status;
        report.BeganAtMs.reset();
        Place.Players.Say(report);
    }
    void Quits(double second, const std::string& player = "mpv") {
        RunTo(Place, second);
        Place.Players.Quit("org.mpris.MediaPlayer2." + player);
    }

    /// Begins to record before the first sound.
    void Record() { ASSERT_TRUE(Place.StartRecording()); }
    void End(double second) {
        RunTo(Place, second);
        Place.Finish();
    }

    World Place;
    std::map<std::string, PlayerReport> Reports;

 private:
    static WorldOptions Options(RadioScript radio, std::vector<IniLine> more) {
        WorldOptions options = Automatic(std::move(radio));
        options.Settings.insert(options.Settings.end(), more.begin(), more.end());
        options.TellsTitles = false;
        options.Connect = [](World& world, Machine& machine, RunOptions&) {
            machine.Players = &world.Players;
        };
        return options;
    }
};

/// The player plays a stream: a title without a length, from the third second on.
inline void Streams(PlayerWorld& world, double second, const std::string& title) {
    world.Plays(second, title, 3);
    PlayerReport& report = world.Reports["mpv"];
    report.LengthMs = 0;
    world.Place.Players.Say(report);
}

/// Where a song was cut, against where it really is.
inline void ExpectSong(World& world, const HeardSong& heard, const std::string& title, double begin,
                       double end, double within) {
    SCOPED_TRACE(title);
    const double rate = world.Truth()->FramesPerSecond();
    EXPECT_EQ(heard.Song.Media.Song, title);
    EXPECT_NEAR(static_cast<double>(heard.RadioBegin) / rate, begin, within);
    EXPECT_NEAR(static_cast<double>(heard.RadioEnd) / rate, end, within);
}

/// Expects no other song to be kept, with all that is between begin and end but for the seconds that were cut
/// out. Returns it, for what else is to be said of it.
inline HeardSong ExpectOnlySong(World& world, const std::string& title, double begin, double end,
                                double within, double cutOut = 0) {
    const std::vector<HeardSong> kept = KeptSongs(world);
    EXPECT_EQ(kept.size(), 1U);
    if (kept.size() != 1) return {};
    ExpectSong(world, kept[0], title, begin, end, within);
    const double seconds = static_cast<double>(kept[0].Song.Frames) / world.Truth()->FramesPerSecond();
    EXPECT_NEAR(seconds, end - begin - cutOut, 2 * within);
    return kept[0];
}

/// Expects all songs of the radio to be kept whole, in their order.
inline void ExpectAll(World& world, double within) {
    const std::vector<HeardSong> kept = KeptSongs(world);
    const auto& songs = world.Truth()->Songs();
    ASSERT_EQ(kept.size(), songs.size());
    const double rate = world.Truth()->FramesPerSecond();
    for (size_t i = 0; i < songs.size(); ++i) {
        ExpectSong(world, kept[i], songs[i].Media.Song, static_cast<double>(songs[i].Begin) / rate,
                   static_cast<double>(songs[i].End) / rate, within);
    }
}

}  // namespace Corvetape::Test
