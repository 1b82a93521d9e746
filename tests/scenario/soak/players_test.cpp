// Random lives of a media player: it pauses, seeks, skips, comes and goes. What has to come out of it follows
// from what it did.

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/virtual/sim_random.h"
#include "scenario/automatic_story.h"

namespace Corvetape::Test {
namespace {

constexpr uint64_t SeedsOfATest = 25;

/// A song that is not longer than this is thrown away.
constexpr double ShortSong = 15;

/// Something that the player says.
struct News {
    enum class Kind { Plays, Pauses, Quits, OtherPlays, OtherQuits };
    Kind What = Kind::Plays;
    double Second = 0;
    std::string Title;
    double Began = 0;
};

/// A track as it was heard.
struct HeardTrack {
    std::string Title;
    double Begin = 0;
    double End = 0;
    double Seconds = 0;  ///< without its pauses
    int32_t Pauses = 0;
    bool Sought = false;
    bool Mixed = false;
    double GapBefore = 0;
    double GapAfter = 0;
};

/// What a player does from second 3 on, and how that sounds.
class PlayerLife {
 public:
    explicit PlayerLife(uint64_t seed) : Chance(seed) {
        Radio.Pause(Now);
        for (int track = 1; track <= 7; ++track) PlayTrack(track);
        Quit();
        Radio.SilenceForever();
    }

    RadioScript Radio;
    std::vector<News> Said;
    std::vector<HeardTrack> Tracks;
    double Now = 3;

 private:
    void Say(News::Kind what, const HeardTrack& track, double began) {
        Said.push_back({what, Now + Chance.Between(0.05, 0.35), track.Title, began});
    }

    void Sound(HeardTrack& track, int number, double seconds) {
        ScriptSong song;
        song.Seconds = seconds;
        song.Seed = ++Seed;
        song.Sound = number % 2 == 0 ? SongSound::Chord : SongSound::Noise;
        song.PeakLeft = song.PeakRight = static_cast<int16_t>(6000 + 4000 * (number % 3));
        Radio.Song(std::move(song));
        Now += seconds;
        track.Seconds += seconds;
        track.End = Now;
    }

    void Rest(double seconds) {
        Radio.Silence(seconds);
        Now += seconds;
    }

    /// A second player begins to play beside this one, and ends in this track or in the next one.
    void HearOther(HeardTrack& track, int number) {
        const bool began = !Other && Chance.Chance(0.25);
        if (began) {
            Say(News::Kind::OtherPlays, track, Now);
            Sound(track, number, Chance.Between(4.0, 8.0));
        }
        track.Mixed = began || Other;
        const bool stays = began && number < 7 && Chance.Chance(0.4);
        if (track.Mixed && !stays) {
            Say(News::Kind::OtherQuits, track, 0);
            Sound(track, number, Chance.Between(3.0, 6.0));
        }
        Other = stays;
    }

    void Quit() {
        if (!Tracks.empty()) Said.push_back({News::Kind::Quits, Now + Chance.Between(0.05, 0.35), {}, 0});
    }

    void PlayTrack(int number) {
        HeardTrack track;
        track.Title = "Track " + std::to_string(number);
        track.Begin = Now;
        track.GapBefore = Gap;
        double began = Now;
        Say(News::Kind::Plays, track, began);
        if (number > 1 && !Other && Chance.Chance(0.2)) {
            Sound(track, number, Chance.Between(6.0, 10.0));  // skipped
            Gap = 0;
        } else {
            Sound(track, number, Chance.Between(16.5, 22.0));
            if (!Other && Chance.Chance(0.3)) began = PauseTrack(track, number, began);
            if (Chance.Chance(0.3)) SeekInTrack(track, number, began);
            HearOther(track, number);
            Gap = Chance.Chance(0.4) ? 0 : Chance.Between(0.25, 8.0);
        }
        track.GapAfter = Gap;
        const bool quits = Gap > 4 && !Other && Chance.Chance(0.4);
        if (quits) Quit();
        if (Gap > 0) Rest(Gap);
        Tracks.push_back(track);
    }

    double PauseTrack(HeardTrack& track, int number, double began) {
        const double length = Chance.Between(1.0, 14.0);
        Say(News::Kind::Pauses, track, 0);
        Rest(length);
        Say(News::Kind::Plays, track, began + length);
        ++track.Pauses;
        Sound(track, number, Chance.Between(5.0, 12.0));
        return began + length;
    }

    void SeekInTrack(HeardTrack& track, int number, double began) {
        Say(News::Kind::Plays, track, began - Chance.Between(4.0, 15.0));
        track.Sought = true;
        Sound(track, number, Chance.Between(5.0, 12.0));
    }

    SimRandom Chance;
    uint64_t Seed = 0;
    double Gap = 3;
    bool Other = false;  ///< the second player plays
};

void Tell(PlayerWorld& world, const News& news) {
    switch (news.What) {
        case News::Kind::Plays:
            return world.Plays(news.Second, news.Title, news.Began);
        case News::Kind::Pauses:
            return world.Pauses(news.Second);
        case News::Kind::Quits:
            return world.Quits(news.Second);
        case News::Kind::OtherPlays:
            return world.Plays(news.Second, "Somebody else's", news.Second, "other", "vlc");
        case News::Kind::OtherQuits:
            return world.Quits(news.Second, "vlc");
    }
}

void ExpectTrack(World& world, const HeardSong& heard, const HeardTrack& track) {
    const auto within = [](double gap) { return gap >= 0.2 ? WithAGap : WithoutAGap; };
    const double rate = world.Truth()->FramesPerSecond();
    EXPECT_EQ(heard.Song.Media.Song, track.Title);
    EXPECT_NEAR(static_cast<double>(heard.RadioBegin) / rate, track.Begin, within(track.GapBefore));
    EXPECT_NEAR(static_cast<double>(heard.RadioEnd) / rate, track.End, within(track.GapAfter));
    EXPECT_NEAR(static_cast<double>(heard.Song.Frames) / rate, track.Seconds,
                within(track.GapBefore) + within(track.GapAfter));
    EXPECT_EQ(heard.Song.Trust.PausesCut, track.Pauses);
    EXPECT_EQ(heard.Song.Trust.Sought, track.Sought) << track.Title;
    EXPECT_EQ(heard.Song.Trust.Mixed, track.Mixed) << track.Title;
}

void LiveThroughPlayer(uint64_t seed) {
    const PlayerLife life(seed);
    PlayerWorld world(life.Radio);
    world.Record();
    for (const News& news : life.Said) Tell(world, news);
    world.End(life.Now + 15);
    std::vector<HeardTrack> expected;
    for (const HeardTrack& track : life.Tracks) {
        if (track.Seconds > ShortSong) expected.push_back(track);
    }
    std::string story;
    for (const News& news : life.Said) {
        story += std::to_string(news.Second) + " " + std::to_string(static_cast<int>(news.What)) + " " +
                 news.Title + " began " + std::to_string(news.Began) + "\n";
    }
    SCOPED_TRACE(story);
    const std::vector<HeardSong> kept = KeptSongs(world.Place);
    std::vector<std::string> titles;
    for (const HeardTrack& track : expected) titles.push_back(track.Title);
    ASSERT_EQ(KeptTitles(world.Place), titles);
    for (size_t i = 0; i < kept.size(); ++i) ExpectTrack(world.Place, kept[i], expected[i]);
}

TEST(SoakPlayers, WhateverAPlayerDoesItsTracksAreWholeNamedAndAlone) {
    const char* alone = std::getenv("CORVETAPE_SEED");
    const char* some = std::getenv("CORVETAPE_SEEDS");
    const uint64_t first = alone == nullptr ? 1 : std::strtoull(alone, nullptr, 10);
    const uint64_t wished = some == nullptr ? SeedsOfATest : std::strtoull(some, nullptr, 10) / 20 + 1;
    const uint64_t count = alone == nullptr ? wished : 1;
    for (uint64_t seed = first; seed < first + count && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        LiveThroughPlayer(seed);
    }
}

}  // namespace
}  // namespace Corvetape::Test
