// Songs that end by everything that is known: talk between them, titles that come again, jumps within them,
// and what is said of unsure ones.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/wav_file.h"
#include "recording/run_songs.h"
#include "scenario/automatic_story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

ScriptSong SongOf(double seconds, SongSound sound, const std::string& title) {
    ScriptSong song;
    song.Seconds = seconds;
    song.Seed = static_cast<uint64_t>(seconds * 10);
    song.Sound = sound;
    if (!title.empty()) song.Media = {"Radio", "Band", title, "", ""};
    return song;
}

/// Three songs of 40 s, from second 3 on, and between the first two somebody speaks for 6 s. His title is
/// that of the song before him, and the next one is 1 s late.
WorldOptions SongsWithTalk(std::vector<IniLine> more = {}) {
    RadioScript radio;
    radio.Pause(3);
    radio.Song(SongOf(40, SongSound::Noise, "One"));
    radio.Song(SongOf(6, SongSound::Speech, "One"));
    radio.Song(SongOf(41, SongSound::Chord, "Two"));
    radio.Song(SongOf(42, SongSound::Noise, "Three"));
    WorldOptions options = Automatic(radio.SilenceForever());
    options.Settings.insert(options.Settings.end(), more.begin(), more.end());
    options.TitleDelay = [](size_t) { return 1.0; };
    return options;
}

/// Those that were closed, but for the silence before the first.
std::vector<HeardSong> ClosedSongs(const World& world) {
    std::vector<HeardSong> closed = world.Closed;
    std::erase_if(closed, [](const HeardSong& song) { return song.Song.Frames == 0; });
    return closed;
}

TEST(AutomaticTalk, WhatIsSpokenBetweenTwoSongsIsInNeitherAndTooShortToBeKept) {
    World world(SongsWithTalk());
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 150);
    world.Finish();
    const auto kept = KeptSongs(world);
    ASSERT_EQ(kept.size(), 3U);
    ExpectSong(world, kept[0], "One", 3, 43, WithAGap);
    ExpectSong(world, kept[1], "Two", 49, 90, WithoutAGap);
    ExpectSong(world, kept[2], "Three", 90, 132, WithoutAGap);
    EXPECT_NEAR(static_cast<double>(kept[1].RadioBegin) / 44100, 49, WithAGap);
    const auto closed = ClosedSongs(world);
    ASSERT_EQ(closed.size(), 4U);
    EXPECT_EQ(closed[1].Song.Fate, SongFate::Short);
    ExpectSong(world, closed[1], "", 43, 49, WithAGap);
}

TEST(AutomaticTalk, LongTalkIsKeptWithoutANameAndUsesUpNoWish) {
    World world(SongsWithTalk({{ProviderOfRadio, "IgnoreShortSongs", "4"}}));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 60);
    world.Form().chkStopRecording[0].Value(1);  // "Two", whose title is shown, is the last one
    RunTo(world, 150);
    world.Finish();
    const auto kept = KeptSongs(world);
    ASSERT_EQ(kept.size(), 3U);
    ExpectSong(world, kept[0], "One", 3, 43, WithAGap);
    ExpectSong(world, kept[1], "", 43, 49, WithAGap);
    ExpectSong(world, kept[2], "Two", 49, 90, WithoutAGap);
}

/// A stream plays two pieces of 40 s under the same title.
PlayerWorld TwoPiecesOfOneTitle(SongSound second, double gap) {
    RadioScript radio;
    radio.Pause(3);
    radio.Song(SongOf(40, SongSound::Noise, ""));
    if (gap > 0) radio.Silence(gap);
    radio.Song(SongOf(40, second, ""));
    return PlayerWorld(radio.SilenceForever(), {{"Options", "SameName", "2"}});
}

/// The title is gone for a second between the pieces.
void PlayWithATitleThatVanishes(PlayerWorld& world) {
    world.Record();
    Streams(world, 3.1, "One");
    Streams(world, 43.2, "");
    Streams(world, 44.2, "One");
    world.Quits(83.2);
    world.End(100);
}

TEST(AutomaticSameTitle, AfterABoundaryWithEvidenceIsANewSong) {
    PlayerWorld world = TwoPiecesOfOneTitle(SongSound::Chord, 0);
    PlayWithATitleThatVanishes(world);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    ExpectSong(world.Place, kept[0], "One", 3, 43, WithoutAGap);
    ExpectSong(world.Place, kept[1], "One", 43, 83, WithoutAGap);
}

TEST(AutomaticSameTitle, ThatVanishesAgainSoonLosesNoBoundary) {
    for (const double later : {2.0, 7.0}) {
        SCOPED_TRACE(later);
        PlayerWorld world = TwoPiecesOfOneTitle(SongSound::Chord, 0);
        world.Record();
        Streams(world, 3.1, "One");
        for (const double second : {43.2, 43.2 + later}) {
            Streams(world, second, "");
            Streams(world, second + 1, "One");
        }
        world.Quits(83.2);
        world.End(100);
        const auto kept = KeptSongs(world.Place);
        ASSERT_EQ(kept.size(), 2U);
        ExpectSong(world.Place, kept[0], "One", 3, 43, WithoutAGap);
        ExpectSong(world.Place, kept[1], "One", 43, 83, WithoutAGap);
    }
}

TEST(AutomaticSameTitle, WithoutEvidenceForABoundaryIsTheSameSong) {
    PlayerWorld world = TwoPiecesOfOneTitle(SongSound::Noise, 0);
    PlayWithATitleThatVanishes(world);
    ExpectOnlySong(world.Place, "One", 3, 83, WithAGap);
}

TEST(AutomaticSameTitle, AfterASilenceThatEndsASongIsANewSong) {
    PlayerWorld world = TwoPiecesOfOneTitle(SongSound::Noise, 5);
    world.Record();
    Streams(world, 3.1, "One");
    world.Quits(88.2);
    world.End(105);
    const auto kept = KeptSongs(world.Place);
    ASSERT_EQ(kept.size(), 2U);
    ExpectSong(world.Place, kept[0], "One", 3, 43, WithAGap);
    ExpectSong(world.Place, kept[1], "One", 48, 88, WithAGap);
}

TEST(AutomaticSeek, AJumpToAPlaceFurtherOnThanTheMachineRunsIsNoted) {
    PlayerWorld world(Songs(1, 40, 0));
    world.Record();
    world.Plays(3.1, "One", 3);
    world.Plays(23.1, "One", -30);
    world.Quits(43.2);
    world.End(60);
    const HeardSong song = ExpectOnlySong(world.Place, "One", 3, 43, WithAGap);
    EXPECT_TRUE(song.Song.Trust.Sought);
    EXPECT_FALSE(song.Song.Whole);
}

/// What a song file has beside its sound.
std::string TagsOf(World& world, const std::string& path) {
    const auto info = ReadWavInfo(world.Disk(), path);
    const auto content = world.Disk().Content(path);
    if (!info || !content) return {};
    return content->substr(0, info->DataStart) + content->substr(info->DataStart + info->DataBytes);
}

TEST(AutomaticCertainty, TheTagsSayNothingOfItTheListDoes) {
    WorldOptions options = Automatic(Songs(3, 40, 0));
    for (RadioScript::Item& item : options.Radio.Items) item.Song.Sound = SongSound::Noise;
    std::vector<std::string> tags;
    options.Encode = [&tags](World& of, const TransferredSong& song) {
        tags.push_back(TagsOf(of, song.TempFile));
    };
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 140);
    world.Finish();
    RunSongs list;
    for (const HeardSong& song : KeptSongs(world)) {
        ASSERT_TRUE(song.Song.Trust.IsUnsure()) << "one noise follows the other";
        list.SongClosed(song.Song);
        EXPECT_EQ(list.Songs()[0].Begin, song.Song.Trust.Begin);
        EXPECT_EQ(list.Songs()[0].End, song.Song.Trust.End);
    }
    EXPECT_EQ(list.Songs().size(), 3U);
    EXPECT_THAT(tags, testing::SizeIs(3));
    for (const std::string& each : tags) {
        EXPECT_THAT(each, testing::HasSubstr("Song "));
        EXPECT_THAT(each, testing::Not(testing::HasSubstr("ICMT")));
        EXPECT_THAT(each, testing::Not(testing::HasSubstr("unsure")));
    }
    ASSERT_EQ(world.Computer.Processes.Jobs.size(), 3U);
    for (const HiddenJob& job : world.Computer.Processes.Jobs) EXPECT_FALSE(Mentions(job, "unsure"));
}

}  // namespace
}  // namespace Corvetape::Test
