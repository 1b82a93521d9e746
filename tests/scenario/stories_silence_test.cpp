// Stories of a station that falls silent, each told twice.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double FirstBreak = 125;  // two songs of a minute, from second 3 on

/// Two songs, nothing for `silence` seconds, and two songs more, of a minute each.
RadioScript BrokenRadio(double silence) {
    RadioScript radio;
    uint64_t number = 0;
    radio.Pause(3);
    AddSongs(radio, number, 2, 60);
    radio.Silence(silence - 2);  // after the second song's pause
    AddSongs(radio, number, 2, 60);
    return radio.Stamped().SilenceForever();
}

WorldOptions Station(double silence, const char* mode = "0", const char* commandLine = "") {
    WorldOptions options;
    options.Radio = BrokenRadio(silence);
    options.CommandLine = commandLine;
    options.Settings = {{ProviderOfRadio, "EndOfSongDetection", mode}};
    return options;
}

TEST(QuietStation, IsReportedOnceAndItsReturnToo) {
    TellTwice([] { return Station(200); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, FirstBreak + 55);
                  EXPECT_THAT(world.Logged("INFO"), IsEmpty());
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), "");

                  RunTo(world, FirstBreak + 62);
                  EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("705", {"60"})));

                  // The number of seconds runs on in the status line, but not in the log.
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), Text("705", {"61"}));
                  RunTo(world, FirstBreak + 150);
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), Text("705", {"149"}));
                  EXPECT_THAT(world.Logged("INFO"), SizeIs(1));

                  RunTo(world, FirstBreak + 203);
                  EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("705", {"60"}), Text("706")));
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), "");
                  EXPECT_THAT(world.Boxes(), IsEmpty());
              });
}

TEST(QuietStation, KeepsTheSongsOnBothSidesOfTheSilence) {
    TellTwice([] { return Station(200); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, FirstBreak + 200 + 2 * 62 + 10);
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
                  EXPECT_THAT(world.Logged("ERROR"), IsEmpty());
              });
}

TEST(QuietStation, ByMediaDataTheSongThatTheSilenceBrokeOffIsNotKeptButTheNextOneIs) {
    TellTwice([] { return Station(200, "1"); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, FirstBreak + 65);
                  // Its file is open, for no title has come to end it.
                  EXPECT_FALSE(world.Values().Flags.RecordCurrentSong);
                  EXPECT_TRUE(world.Values().Flags.RecordNextSong);
                  EXPECT_EQ(world.Form().chkStartStop[1].Value(), 1);
                  RunTo(world, FirstBreak + 200 + 2 * 62 + 10);
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 3", "Song 4"));
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
              });
}

TEST(QuietStation, ByTimeAPieceEndsWhereTheSilenceBeganAndNoPieceOfSilenceIsKept) {
    TellTwice(
        [] {
            WorldOptions options = Station(200, "2");
            options.Settings.push_back({ProviderOfRadio, "EndOfSongTimer", "300"});
            options.Settings.push_back({ProviderOfRadio, "QuitAfterSilence", "60"});
            return options;
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, FirstBreak + 199);
            ASSERT_THAT(world.Closed, SizeIs(1));
            EXPECT_EQ(world.Closed[0].Song.Fate, SongFate::Kept);
            const uint64_t lastSound = world.Truth()->Songs()[1].End;
            EXPECT_GE(world.Closed[0].RadioEnd, lastSound);
            EXPECT_LE(world.Closed[0].RadioEnd, lastSound + 2 * uint64_t{44100});
            RunTo(world, FirstBreak + 330);
            world.Finish();
            ASSERT_THAT(world.Closed, SizeIs(2));
            EXPECT_EQ(world.Closed[1].Song.Fate, SongFate::Kept);
            const uint64_t sound = world.Truth()->Songs()[2].Begin;
            EXPECT_LE(world.Closed[1].RadioBegin, sound);
            EXPECT_GE(world.Closed[1].RadioBegin + 2 * uint64_t{44100}, sound);
            EXPECT_EQ(MusicComparedWithRadio(world), "");
        });
}

TEST(QuietStation, IsNotReportedWhereSilenceIsToBeIgnored) {
    TellTwice(
        [] {
            WorldOptions options = Station(400, "1");
            options.Settings.push_back({ProviderOfRadio, "IgnoreSilence", "1"});
            return options;
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, FirstBreak + 400 + 2 * 62 + 10);
            world.Finish();
            EXPECT_THAT(world.Logged("INFO"), IsEmpty());
            EXPECT_THAT(world.Logged("ERROR"), IsEmpty());
            EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
        });
}

TEST(EndAfterSilence, EndsTheRecordingAndReportsWhenSomebodyIsThere) {
    TellTwice([] { return Station(400); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, FirstBreak + 298);
                  EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
                  EXPECT_EQ(world.Form().chkStartStop[0].Value(), 1);

                  RunTo(world, FirstBreak + 303);
                  EXPECT_FALSE(world.Values().Flags.RecordingEnabled);
                  EXPECT_EQ(world.Form().chkStartStop[0].Value(), 0);
                  EXPECT_THAT(world.Logged("ERROR"), ElementsAre(Text("707", {"5"})));
                  ASSERT_THAT(world.Computer.Dialogs.Boxes, SizeIs(1));
                  EXPECT_EQ(world.Computer.Dialogs.Boxes[0].Text, Text("708", {"5"}));
                  EXPECT_EQ(world.Computer.Dialogs.Boxes[0].Icon, DialogIcon::Exclamation);
                  EXPECT_EQ(world.Ends, 0U);

                  // Once only, and the program is ready again as soon as there is sound.
                  RunTo(world, FirstBreak + 398);
                  EXPECT_THAT(world.Logged("ERROR"), SizeIs(1));
                  RunTo(world, FirstBreak + 402);
                  EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
                  EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("705", {"60"}), Text("706")));
                  RunTo(world, FirstBreak + 400 + 2 * 62 + 10);
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
              });
}

TEST(EndAfterSilence, AClickOnRecordSaysThatItWaitsForTheSound) {
    TellTwice([] { return Station(400); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, FirstBreak + 310);
                  const Label& status = world.Form().lblStatus[1];
                  EXPECT_EQ(status.Caption(), Text("705", {"309"}));
                  world.Form().cmdStartStop.Press();
                  EXPECT_FALSE(world.Values().Flags.RecordingEnabled);
                  EXPECT_EQ(status.Caption(), Text("890", {"310"}));
                  RunTo(world, FirstBreak + 315);
                  EXPECT_EQ(status.Caption(), Text("890", {"314"})) << "as long as it waits";
                  RunTo(world, FirstBreak + 402);
                  EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
                  EXPECT_EQ(status.Caption(), "");
                  RunTo(world, FirstBreak + 400 + 2 * 62 + 10);
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
              });
}

TEST(EndAfterSilence, TheBoxIsShownOnceHoweverLongItStandsOpen) {
    TellTwice([] { return Station(400); },
              [](World& world) {
                  world.Computer.Dialogs.WhileOpen = [&world](const ShownBox&) { world.RunFor(30); };
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, FirstBreak + 390);
                  EXPECT_THAT(world.Boxes(), ElementsAre(Text("708", {"5"})));
                  EXPECT_THAT(world.Logged("ERROR"), SizeIs(1));
              });
}

TEST(EndAfterSilence, EndsAnUnattendedProgramWithoutABox) {
    TellTwice([] { return Station(400, "0", "-dontask"); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, FirstBreak + 298);
                  EXPECT_EQ(world.Ends, 0U);
                  RunTo(world, FirstBreak + 303);
                  EXPECT_EQ(world.Ends, 1U);
                  EXPECT_FALSE(world.Recorder->Running());
                  EXPECT_THAT(world.Logged("ERROR"), ElementsAre(Text("707", {"5"})));
                  EXPECT_EQ(world.Log.back().Kind, "END ");
                  EXPECT_THAT(world.Boxes(), IsEmpty());
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
              });
}

TEST(EndAfterSilence, ByMediaDataTheBrokenSongLeavesNothingBehind) {
    TellTwice([] { return Station(400, "1", "-dontask"); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, FirstBreak + 303);
                  EXPECT_EQ(world.Ends, 1U);
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1"));
                  const ClosedSong& broken = world.Closed.back().Song;
                  EXPECT_EQ(broken.Fate, SongFate::Aborted);
                  EXPECT_FALSE(world.Disk().Exists(broken.TempPath));
              });
}

/// A radio that notes when it is asked to play again.
struct AskedRadio {
    std::vector<int> Seconds;
};

TEST(RestartOfTheRadio, IsTriedOnceAMinuteWhileSomethingIsWantedAndTheNextFullSongIsKept) {
    AskedRadio asked;
    World* told = nullptr;
    TellTwice(
        [&] {
            WorldOptions options = Station(200);
            options.Settings.push_back({"Options", "RestartRadioIfSilent", "1"});
            options.RestartRadio = [&] {
                asked.Seconds.push_back(static_cast<int>(told->Now() - FirstBreak));
            };
            return options;
        },
        [&](World& world) {
            asked.Seconds.clear();
            told = &world;
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, FirstBreak + 195);
            ASSERT_THAT(asked.Seconds, SizeIs(3));
            for (size_t i = 0; i < 3; ++i) EXPECT_NEAR(asked.Seconds[i], 60 * static_cast<int>(i + 1), 1);
            EXPECT_EQ(world.Form().chkStartStop[1].Value(), 1);
            EXPECT_EQ(world.Form().chkStartStop[0].Value(), 0);

            RunTo(world, FirstBreak + 200 + 2 * 62 + 10);
            world.Finish();
            // The third may have lost its beginning when the radio came back: only the fourth is surely
            // whole.
            EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 4"));
            EXPECT_THAT(asked.Seconds, SizeIs(3));
        });
}

TEST(RestartOfTheRadio, IsNotTriedWhileNothingIsWanted) {
    size_t asked = 0;
    TellTwice(
        [&] {
            WorldOptions options = Station(200);
            options.Settings.push_back({"Options", "RestartRadioIfSilent", "1"});
            options.RestartRadio = [&] { ++asked; };
            return options;
        },
        [&](World& world) {
            ASSERT_TRUE(world.Start());
            RunTo(world, FirstBreak + 195);
            EXPECT_EQ(asked, 0U);
            EXPECT_THAT(world.Logged("INFO"), SizeIs(1)) << "the silence is told all the same";
        });
}

}  // namespace
}  // namespace Corvetape::Test
