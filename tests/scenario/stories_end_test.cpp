// Stories of recordings that come to their end by themselves, each told twice.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double SongAndPause = 62;

/// Second in which song `number`, from 1 on, begins.
double BeginOf(int number) {
    return 3 + SongAndPause * (number - 1);
}
double EndOf(int number) {
    return BeginOf(number) + 60;
}

WorldOptions Station(const char* commandLine, std::vector<IniLine> settings = {}) {
    WorldOptions options;
    options.Radio = EvenRadio(20, 60);
    options.CommandLine = commandLine;
    options.Settings = std::move(settings);
    return options;
}

/// Waits for the five minutes after the first song to pass: recording ends with the sixth.
void ExpectFiveMinutes(World& world) {
    ASSERT_TRUE(world.Load());
    RunTo(world, EndOf(1) + 5);
    EXPECT_TRUE(world.Values().Flags.RecordCurrentSong) << "the song that played at the start is over";
    EXPECT_EQ(world.Form().txtRecordingPeriod.Text(), "5");
    RunTo(world, EndOf(1) + 64);
    EXPECT_EQ(world.Form().txtRecordingPeriod.Text(), "4") << "the minutes are counted down";
    RunTo(world, EndOf(1) + 304);
    EXPECT_TRUE(world.Values().Flags.StopAtEndOfSong);
    EXPECT_EQ(world.Form().chkStopRecording[0].Value(), 1);
    EXPECT_EQ(world.Form().chkStopRecording[1].Value(), 0);
    EXPECT_EQ(world.Ends, 0U) << "the song that plays is finished first";
}

TEST(TimedRecording, EndsTheProgramWithTheSongThatPlaysWhenTheTimeIsOver) {
    TellTwice([] { return Station("-dontask -time 5 -quit"); },
              [](World& world) {
                  ExpectFiveMinutes(world);
                  RunTo(world, EndOf(6) + 4);
                  EXPECT_EQ(world.Ends, 0U) << "the song waits for its hand-over";
                  RunTo(world, EndOf(6) + 7);
                  EXPECT_EQ(world.Ends, 1U);
                  EXPECT_EQ(world.Log.back().Kind, "END ");
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world),
                              ElementsAre("Song 2", "Song 3", "Song 4", "Song 5", "Song 6"));
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
                  EXPECT_EQ(world.Stored("Options", "QuitAfterRecording"), "-") << "the switch is not kept";
              });
}

TEST(TimedRecording, EndsTheProgramAlsoByTheStoredOption) {
    TellTwice(
        [] {
            return Station("-dontask -time 5", {{"Options", "QuitAfterRecording", "1"}});
        },
        [](World& world) {
            ExpectFiveMinutes(world);
            RunTo(world, EndOf(6) + 7);
            EXPECT_EQ(world.Ends, 1U);
            world.Finish();
            EXPECT_THAT(KeptTitles(world), SizeIs(5));
            EXPECT_EQ(MusicComparedWithRadio(world), "");
        });
}

TEST(TimedRecording, OnlyEndsTheRecordingWithoutThatOption) {
    TellTwice([] { return Station("-dontask -time 5"); },
              [](World& world) {
                  ExpectFiveMinutes(world);
                  RunTo(world, EndOf(9));
                  EXPECT_EQ(world.Ends, 0U);
                  EXPECT_FALSE(world.Values().Flags.RecordCurrentSong);
                  EXPECT_EQ(world.Form().chkStartStop[0].Value(), 0);
                  EXPECT_EQ(world.Form().chkStopRecording[0].Value(), 0);
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), SizeIs(5));
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
              });
}

TEST(TimedRecording, EndsAlsoWhenItsLastSongIsTooShortToBeKept) {
    TellTwice(
        [] {
            WorldOptions options;
            RadioScript radio;
            uint64_t number = 0;
            radio.Pause(3);
            AddSongs(radio, number, 1, 60);
            AddSongs(radio, number, 20, 20);
            options.Radio = radio.Stamped().SilenceForever();
            options.CommandLine = "-dontask -time 2 -quit";
            return options;
        },
        [](World& world) {
            ASSERT_TRUE(world.Load());
            RunTo(world, 250);
            EXPECT_EQ(world.Ends, 1U);
            world.Finish();
            EXPECT_THAT(KeptTitles(world), IsEmpty());
            EXPECT_THAT(world.Disk().Tree(SongTempFolder), IsEmpty());
        });
}

WorldOptions Delayed() {
    return Station("", {{"Options", "DelayUnload", "1"}});
}

TEST(ClosingWithDelay, WaitsForTheSongAndThenEndsTheProgram) {
    TellTwice(Delayed, [](World& world) {
        ASSERT_TRUE(world.StartRecording());
        RunTo(world, BeginOf(2) + 20);
        EXPECT_FALSE(world.Recorder->Close());
        EXPECT_EQ(world.Form().lblStatus[1].Caption(), Text("900"));
        EXPECT_EQ(world.Form().chkStopRecording[0].Value(), 1);
        RunTo(world, EndOf(2) + 4);
        EXPECT_EQ(world.Ends, 0U);
        RunTo(world, EndOf(2) + 7);
        EXPECT_EQ(world.Ends, 1U);
        world.Finish();
        EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
        EXPECT_EQ(MusicComparedWithRadio(world), "");
        EXPECT_THAT(world.Boxes(), IsEmpty());
    });
}

TEST(ClosingWithDelay, ASecondRequestEndsTheProgramAtOnceWithTheSongAsFarAsItHasPlayed) {
    TellTwice(Delayed, [](World& world) {
        ASSERT_TRUE(world.StartRecording());
        RunTo(world, BeginOf(2) + 20);
        EXPECT_FALSE(world.Recorder->Close());
        RunTo(world, BeginOf(2) + 45);
        EXPECT_TRUE(world.Recorder->Close());
        EXPECT_EQ(world.Ends, 1U);
        world.Finish();
        EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
        EXPECT_NEAR(static_cast<double>(KeptSongs(world)[1].Song.Frames) / 44100, 45, 0.1);
        EXPECT_EQ(MusicComparedWithRadio(world), "");
    });
}

TEST(ClosingWithDelay, AClickOnTheOptionTakesTheTextBack) {
    TellTwice(Delayed, [](World& world) {
        ASSERT_TRUE(world.StartRecording());
        RunTo(world, BeginOf(2) + 20);
        EXPECT_FALSE(world.Recorder->Close());
        world.Form().chkDelayUnload.Press();
        EXPECT_EQ(world.Form().lblStatus[1].Caption(), "");
        EXPECT_FALSE(world.Values().Flags.DisableAtEndOfSong);
    });
}

TEST(ClosingWithDelay, EndsWithTheRunningSongIfOnlyTheNextOneIsWanted) {
    TellTwice(Delayed, [](World& world) {
        ASSERT_TRUE(world.Start());
        RunTo(world, BeginOf(1) + 20);
        world.Form().chkStartStop[1].Value(1);
        EXPECT_FALSE(world.Recorder->Close());
        RunTo(world, EndOf(1) - 1);
        EXPECT_EQ(world.Ends, 0U);
        RunTo(world, EndOf(1) + 1);
        EXPECT_EQ(world.Ends, 1U);
        world.Finish();
        EXPECT_THAT(KeptTitles(world), IsEmpty());
        EXPECT_THAT(world.Disk().Tree(SongTempFolder), IsEmpty());
    });
}

TEST(Closing, PassesAtOnceWithoutThatOption) {
    TellTwice([] { return Station(""); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, BeginOf(2) + 45);
                  EXPECT_TRUE(world.Recorder->Close());
                  EXPECT_EQ(world.Ends, 1U);
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
              });
}

}  // namespace
}  // namespace Corvetape::Test
