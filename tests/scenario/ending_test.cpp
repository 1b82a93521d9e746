// The end of the program in the middle of things: what was heard up to then is kept.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/automatic_story.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::SizeIs;

constexpr uint64_t BufferFrames = 2205;

struct Moment {
    int Mode;
    double Second;  ///< of the radio, at which the program ends
};

WorldOptions UpTo(const Moment& moment) {
    WorldOptions options;
    options.Radio = NumberedRadio({30, 40, 50}, {.FirstPause = 3.2, .SecondsBetweenRests = 4});
    options.Settings = {{ProviderOfRadio, "EndOfSongDetection", std::to_string(moment.Mode)},
                        {ProviderOfRadio, "LengthOfPause", "500"},
                        {ProviderOfRadio, "IgnoreShortSongs", "0"},
                        {ProviderOfRadio, "EndOfSongTimer", "60"}};
    return options;
}

/// What of the radio's songs is missing between the opening of the input and the end, in frames.
uint64_t FramesMissing(World& world, uint64_t heardUpTo) {
    const auto kept = KeptSongs(world);
    uint64_t missing = 0;
    for (const ScriptedSong& song : world.Truth()->Songs()) {
        uint64_t at = song.Begin;
        const uint64_t end = std::min(song.End, heardUpTo);
        for (const HeardSong& heard : kept) {
            if (heard.RadioBegin > at && heard.RadioBegin < end) missing += heard.RadioBegin - at;
            if (heard.RadioEnd > at && heard.RadioBegin < end) at = std::min(heard.RadioEnd, end);
        }
        if (at < end) missing += end - at;
    }
    return missing;
}

class EndOfTheProgram : public testing::TestWithParam<Moment> {};

TEST_P(EndOfTheProgram, LosesNothingOfWhatWasHeard) {
    World world(UpTo(GetParam()));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(GetParam().Second - world.Now());
    const uint64_t heard = *world.Computer.WaveIn.RadioFrameOf(world.Values().Signal.FramesReceived);
    world.Finish();
    EXPECT_EQ(MusicComparedWithRadio(world), "");
    // The seam of a cut by time lies inside a song: a rest is thrown away there.
    const uint64_t allowed = GetParam().Mode == 2 ? 7 * BufferFrames : BufferFrames;
    EXPECT_LT(FramesMissing(world, heard), allowed);
    EXPECT_EQ(world.Disk().OpenHandles(), 0U);
    EXPECT_EQ(world.Logged("ERROR"), std::vector<std::string>());
}

// Songs are from 3.2 to 33.2, 35.2 to 75.2 and 77.2 to 127.2 seconds.
INSTANTIATE_TEST_SUITE_P(BySilence, EndOfTheProgram,
                         testing::Values(Moment{0, 20},     // inside a song
                                         Moment{0, 33.4},   // in a pause that is not recognised yet
                                         Moment{0, 34},     // in a recognised pause, a transfer pending
                                         Moment{0, 35.22},  // with the first frames of a song
                                         Moment{0, 37},     // a transfer pending, the next song begun
                                         Moment{0, 140}));  // in the silence after the last song
INSTANTIATE_TEST_SUITE_P(ByMediaData, EndOfTheProgram,
                         testing::Values(Moment{1, 12},    // before anything was written
                                         Moment{1, 20},    // up to ten seconds are in memory only
                                         Moment{1, 35.3},  // the title has changed, nobody has seen it
                                         Moment{1, 35.8},  // a cut is pending
                                         Moment{1, 37},    // the same, most of its window is there
                                         Moment{1, 39},    // cut, a transfer pending
                                         Moment{1, 76},    // in a pause
                                         Moment{1, 140}));
INSTANTIATE_TEST_SUITE_P(ByTime, EndOfTheProgram,
                         testing::Values(Moment{2, 20}, Moment{2, 61.5},  // a cut is due
                                         Moment{2, 63.5}, Moment{2, 66}));

TEST(EndOfTheProgram, HandsOverTheSongThatWaitedAndTheOneThatPlayed) {
    World world(UpTo({0, 39}));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(37 - world.Now());
    ASSERT_TRUE(world.Form().tmrEncodeFile.Running());
    world.Finish();
    ASSERT_THAT(world.Transferred, SizeIs(2));
    EXPECT_EQ(world.Transferred[0].Media.Song, "Song 1");
    EXPECT_EQ(world.Transferred[1].Media.Song, "Song 2");
}

TEST(EndOfTheProgram, WithoutAWishToKeepNothingIsKept) {
    World world(UpTo({0, 20}));
    ASSERT_TRUE(world.Start());
    world.RunFor(20);
    world.Finish();
    EXPECT_THAT(world.Transferred, SizeIs(0));
    EXPECT_EQ(world.Disk().Tree(SongTempFolder), std::vector<std::string>());
}

TEST(EndOfTheProgram, ADelayedCloseEndsWithTheSongAndItsTransfer) {
    WorldOptions options = UpTo({0, 0});
    options.Settings.push_back({"Options", "DelayUnload", "1"});
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(20);
    EXPECT_FALSE(world.Recorder->Close());
    EXPECT_TRUE(world.RunUntil([&] { return world.Ends > 0; }, 25));
    ASSERT_THAT(world.Transferred, SizeIs(1));
    EXPECT_EQ(world.Transferred[0].Media.Song, "Song 1");
    EXPECT_GT(KeptSongs(world)[0].RadioEnd + BufferFrames, world.Truth()->Songs()[0].End);
}

TEST(EndOfTheProgram, ADelayedCloseWaitsForItsSongThoughTheTransferOfTheOneBeforeIsPending) {
    WorldOptions options = UpTo({0, 0});
    options.Settings.push_back({"Options", "DelayUnload", "1"});
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(37 - world.Now());
    ASSERT_TRUE(world.Form().tmrEncodeFile.Running());
    EXPECT_FALSE(world.Recorder->Close());
    EXPECT_TRUE(world.RunUntil([&] { return world.Ends > 0; }, 60));
    ASSERT_THAT(world.Transferred, SizeIs(2));
    EXPECT_EQ(world.Transferred[1].Media.Song, "Song 2");
    EXPECT_GT(KeptSongs(world)[1].RadioEnd + BufferFrames, world.Truth()->Songs()[1].End);
}

/// The songs that are kept when the window is closed soon after the second song's title has come.
std::vector<std::string> KeptAfterTheTitle(int mode, bool firstWanted) {
    WorldOptions options = Automatic(Songs(4, 40, 1.2));
    options.Settings.push_back({"Options", "DelayUnload", "1"});
    for (IniLine& line : options.Settings) {
        if (line.Key == "EndOfSongDetection") line.Value = std::to_string(mode);
    }
    options.Settings.push_back({ProviderOfRadio, "EndOfSongDetection", std::to_string(mode)});
    World world(std::move(options));
    EXPECT_TRUE(world.Start());
    world.RunFor(30 - world.Now());
    world.Form().chkStartStop[firstWanted ? 0 : 1].Value(1);
    const auto titled = [&] { return world.Values().Media.CurrentMedia.Song == "Song 2"; };
    EXPECT_TRUE(world.RunUntil(titled, 30));
    world.RunFor(0.5);
    EXPECT_FALSE(world.Recorder->Close());
    EXPECT_TRUE(world.RunUntil([&] { return world.Ends > 0; }, 90));
    std::vector<std::string> titles;
    for (const TransferredSong& song : world.Transferred) titles.push_back(song.Media.Song);
    for (const HeardSong& heard : KeptSongs(world)) {
        EXPECT_GT(heard.RadioEnd - heard.RadioBegin, 38U * 44100U) << heard.Song.Media.Song;
    }
    return titles;
}

TEST(EndOfTheProgram, ADelayedCloseWaitsForItsSongThoughTheOneBeforeIsNotClosedYet) {
    for (const int mode : {1, 3}) {
        SCOPED_TRACE(mode);
        EXPECT_THAT(KeptAfterTheTitle(mode, false), testing::ElementsAre("Song 2"));
        EXPECT_THAT(KeptAfterTheTitle(mode, true), testing::ElementsAre("Song 1", "Song 2"));
    }
}

TEST(EndOfTheProgram, ADelayedCloseWhoseSongIsDiscardedEndsAtOnce) {
    WorldOptions options = UpTo({0, 0});
    options.Settings.push_back({"Options", "DelayUnload", "1"});
    options.Settings.push_back({ProviderOfRadio, "IgnoreShortSongs", "120"});
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(20);
    EXPECT_FALSE(world.Recorder->Close());
    EXPECT_TRUE(world.RunUntil([&] { return world.Ends > 0; }, 16));
    EXPECT_LT(world.Now(), 35);  // the pause after the song, not one second later
    EXPECT_THAT(world.Transferred, SizeIs(0));
}

TEST(TimedRecording, EndsWithTheSongThatPlaysWhenTheTimeIsOver) {
    WorldOptions options = UpTo({0, 0});
    options.CommandLine = "-time 1";
    World world(std::move(options));
    ASSERT_TRUE(world.Start());
    world.RunFor(150);
    // The minute begins in the pause ahead of the first song and ends in the second one.
    ASSERT_THAT(world.Transferred, SizeIs(2));
    EXPECT_EQ(world.Transferred[0].Media.Song, "Song 1");
    EXPECT_EQ(world.Transferred[1].Media.Song, "Song 2");
    EXPECT_GT(KeptSongs(world)[1].RadioEnd + BufferFrames, world.Truth()->Songs()[1].End);
    EXPECT_FALSE(world.Values().Flags.RecordCurrentSong);
    EXPECT_TRUE(world.Recorder->Running());
}

TEST(SwitchQuit, WithoutATimeEndsNothingUntilTheRecordingIsEnded) {
    WorldOptions options = UpTo({0, 0});
    options.CommandLine = "-auto -quit";
    World world(std::move(options));
    ASSERT_TRUE(world.Start());
    world.RunFor(90 - world.Now());
    ASSERT_THAT(world.Transferred, SizeIs(2));
    EXPECT_TRUE(world.Values().Flags.RecordCurrentSong);
    world.Form().cmdStartStop.Press();
    world.RunFor(45);
    EXPECT_THAT(world.Transferred, SizeIs(2));
    EXPECT_FALSE(world.Values().Flags.RecordingEnabled) << "nothing is written after it";
    EXPECT_TRUE(world.Recorder->Running());
}

TEST(TimedRecording, WithQuitTheProgramEndsAfterIt) {
    WorldOptions options = UpTo({0, 0});
    options.CommandLine = "-time 1 -quit -dontask";
    World world(std::move(options));
    ASSERT_TRUE(world.Load());
    EXPECT_TRUE(world.RunUntil([&] { return world.Ends > 0; }, 200));
    ASSERT_THAT(world.Transferred, SizeIs(2));
    EXPECT_EQ(world.Transferred.back().Media.Song, "Song 2");
}

}  // namespace
}  // namespace Corvetape::Test
