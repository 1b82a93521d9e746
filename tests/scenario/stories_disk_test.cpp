// Stories of disks that fill up, fail or stand still, each told twice.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr uint64_t Megabyte = 1024 * 1024;
constexpr const char* TempVolume = "/home/user/.cache";
constexpr double SongAndPause = 62;

double BeginOf(int number) {
    return 3 + SongAndPause * (number - 1);
}

WorldOptions Station(std::vector<IniLine> settings = {}) {
    WorldOptions options;
    options.Radio = EvenRadio(8, 60);
    options.Settings = std::move(settings);
    return options;
}

/// The second song is being recorded.
bool RecordTheSecondSong(World& world) {
    if (!world.StartRecording()) return false;
    RunTo(world, BeginOf(2) + 10);
    return world.Values().Flags.RecordingEnabled;
}

/// How a disk that is nearly full ends the recording: the second song is finished, nothing comes after it.
void ExpectTheSecondSongToBeTheLast(World& world, const std::string& deferredKey) {
    EXPECT_TRUE(world.Values().Flags.DisableAtEndOfSong);
    EXPECT_EQ(world.Form().chkStopRecording[0].Value(), 1);
    RunTo(world, BeginOf(6));
    EXPECT_FALSE(world.Values().Flags.RecordingEnabled);
    EXPECT_FALSE(world.Values().Flags.RecordCurrentSong);
    EXPECT_THAT(world.Logged("INFO"), IsEmpty()) << "it is told at the end of the program";
    world.Finish();
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
    EXPECT_THAT(world.Closed, SizeIs(2)) << "no file is begun after it";
    EXPECT_EQ(MusicComparedWithRadio(world), "");
    EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text(deferredKey)));
    ASSERT_THAT(world.Computer.Dialogs.Boxes, SizeIs(1));
    EXPECT_EQ(world.Computer.Dialogs.Boxes[0].Text, Text(deferredKey));
    EXPECT_EQ(world.Computer.Dialogs.Boxes[0].Icon, DialogIcon::Information);
}

TEST(DiskThatFills, OneForAllEndsTheRecordingWithTheSong) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(RecordTheSecondSong(world));
                  world.Disk().SetFreeSpace("/", 600 * Megabyte);
                  RunTo(world, 118);
                  EXPECT_FALSE(world.Values().Flags.DisableAtEndOfSong) << "looked at once a minute";
                  RunTo(world, 122);
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), Text("803"));
                  ExpectTheSecondSongToBeTheLast(world, "833");
              });
}

TEST(DiskThatFills, OneForTemporaryFilesEndsTheRecordingWithTheSong) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  world.Disk().Mount(TempVolume, 10'000 * Megabyte);
                  ASSERT_TRUE(RecordTheSecondSong(world));
                  world.Disk().SetFreeSpace(TempVolume, 300 * Megabyte);
                  RunTo(world, 122);
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), Text("804"));
                  ExpectTheSecondSongToBeTheLast(world, "834");
              });
}

TEST(DiskThatFills, OneForMusicEndsTheRecordingWithTheSong) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  world.Disk().Mount(MusicFolder, 10'000 * Megabyte);
                  ASSERT_TRUE(RecordTheSecondSong(world));
                  world.Disk().SetFreeSpace(MusicFolder, 300 * Megabyte);
                  RunTo(world, 122);
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), Text("805"));
                  ExpectTheSecondSongToBeTheLast(world, "835");
              });
}

TEST(DiskThatFills, AnUnattendedProgramReportsItInTheLogAlone) {
    TellTwice(
        [] {
            WorldOptions options = Station();
            options.CommandLine = "-dontask";
            return options;
        },
        [](World& world) {
            ASSERT_TRUE(RecordTheSecondSong(world));
            world.Disk().SetFreeSpace("/", 600 * Megabyte);
            RunTo(world, 200);
            world.Finish();
            EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("833")));
            EXPECT_THAT(world.Boxes(), IsEmpty());
        });
}

TEST(DiskThatFills, SpaceForLessThanTenMinutesCountsAtOnceAndNotOnlyWithTheMinute) {
    // The lowest limit that can be typed is less than ten minutes of sound, which are 105.84 million bytes.
    TellTwice(
        [] {
            return Station({{"Options", "LowTempSpace", "100"}});
        },
        [](World& world) {
            world.Disk().Mount(TempVolume, 10'000 * Megabyte);
            ASSERT_TRUE(RecordTheSecondSong(world));
            // Some of it is still to be written: enough at first.
            world.Disk().SetFreeSpace(TempVolume, 105'840'000 + 5 * 176'400);
            world.RunFor(2.5);
            EXPECT_FALSE(world.Values().Flags.DisableAtEndOfSong);
            world.RunFor(5);
            EXPECT_LT(world.Now(), 90) << "the full minutes are at 60 and 120 seconds";
            EXPECT_EQ(world.Form().lblStatus[1].Caption(), Text("804"));
            ExpectTheSecondSongToBeTheLast(world, "834");
        });
}

TEST(DiskThatFills, TheReserveOfOneDiskForAllIsReportedAsThat) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(RecordTheSecondSong(world));
                  world.Disk().SetFreeSpace("/", 90 * Megabyte);
                  world.RunFor(1.5);
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), Text("803"));
                  ExpectTheSecondSongToBeTheLast(world, "833");
              });
}

TEST(DiskThatFills, NothingHappensWhileNothingIsRecorded) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(RecordTheSecondSong(world));
                  world.Form().chkStopRecording[0].Value(1);
                  world.Disk().SetFreeSpace("/", 600 * Megabyte);
                  RunTo(world, 124);
                  EXPECT_FALSE(world.Values().Flags.DisableAtEndOfSong) << "it ends with this song anyway";
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), "");
              });
}

/// Fills the disk up in the second song, 20 s of sound after this moment.
void FillUp(World& world) {
    world.Disk().SetFreeSpace(TempVolume, 20 * 176'400);
}

TEST(DiskThatIsFull, EndsTheRecordingAndTheFirstErrorIsReportedAtTheEnd) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  world.Disk().Mount(TempVolume, 10'000 * Megabyte);
                  ASSERT_TRUE(RecordTheSecondSong(world));
                  FillUp(world);
                  RunTo(world, BeginOf(2) + 35);
                  EXPECT_FALSE(world.Values().Flags.RecordingEnabled);
                  EXPECT_TRUE(world.Recorder->Running()) << "the program goes on";
                  EXPECT_EQ(world.Values().Messages.PendingError, 905);
                  EXPECT_THAT(world.Logged("ERROR"), SizeIs(1)) << "reported when it happens";
                  EXPECT_EQ(world.Logged("ERROR")[0], world.Form().lblStatus[1].Caption());
                  RunTo(world, BeginOf(4));
                  EXPECT_THAT(world.Boxes(), IsEmpty());
                  const std::string song = world.Values().Messages.PendingErrorText;
                  world.Finish();
                  const std::string text = Text("905", {song, "28: No space left on device"});
                  EXPECT_THAT(world.Logged("ERROR"), ElementsAre(text));
                  EXPECT_THAT(world.Boxes(), ElementsAre(text, Text("834")));
                  EXPECT_EQ(world.Computer.Dialogs.Boxes[0].Icon, DialogIcon::Critical);
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1"));

                  // What was written of the second song is there, readable and wanted.
                  const auto info = ReadWavInfo(world.Disk(), song);
                  ASSERT_TRUE(info);
                  EXPECT_NEAR(static_cast<double>(info->DataBytes) / 176'400, 30, 1);
              });
}

/// The machine after a next start of the program.
void StartAgain(World& world, const std::string& run) {
    world.Computer.System.OwnRun = run;
    world.Computer.System.AliveRuns = {run};
    world.Made();
    ASSERT_TRUE(world.Start());
}

TEST(DiskThatIsFull, TheNextStartOfTheProgramHandsOnWhatIsThereOfTheSong) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  world.Disk().Mount(TempVolume, 10'000 * Megabyte);
                  ASSERT_TRUE(RecordTheSecondSong(world));
                  FillUp(world);
                  world.Disk().SetFreeSpace(TempVolume, 40 * 176'400);
                  RunTo(world, BeginOf(4));
                  world.Finish();
                  ASSERT_THAT(world.Transferred, SizeIs(1));

                  world.Disk().SetFreeSpace(TempVolume, 10'000 * Megabyte);
                  StartAgain(world, "run-2");
                  ASSERT_THAT(world.Transferred, SizeIs(2));
                  EXPECT_EQ(world.Transferred[1].Media.Song, "Song 2");
                  world.Finish();
                  const auto frames = FramesOfWav(world.Disk(), world.Transferred[1].MusicFile);
                  ASSERT_TRUE(frames);
                  EXPECT_NEAR(static_cast<double>(frames->size()) / 44100, 50, 1);
                  const uint64_t begin = world.Truth()->Songs()[1].Begin;
                  const uint64_t first = FrameOfStamp(frames->at(3000), begin) - 3000;
                  EXPECT_EQ(Comparison(FramesOfRadio(world.Truth(), first, frames->size()), *frames),
                            "equal");
              });
}

/// Without a source of titles the recording is put in order every second, so that a song goes on as soon as
/// its disk has room again.
void TellOfAGapOf10Seconds(const std::function<void(World&)>& meanwhile) {
    TellTwice(
        [] {
            WorldOptions options = Station();
            options.TellsTitles = false;
            return options;
        },
        [&](World& world) {
            world.Disk().Mount(TempVolume, 10'000 * Megabyte);
            ASSERT_TRUE(RecordTheSecondSong(world));
            FillUp(world);
            RunTo(world, BeginOf(2) + 32);
            meanwhile(world);
            RunTo(world, BeginOf(2) + 40);
            world.Disk().SetFreeSpace(TempVolume, 10'000 * Megabyte);
            RunTo(world, BeginOf(3) + 1);
            ASSERT_THAT(world.Closed, SizeIs(2));
            const ClosedSong& song = world.Closed[1].Song;
            EXPECT_EQ(song.Fate, SongFate::Kept);
            EXPECT_NEAR(static_cast<double>(song.LostFrames) / 44100, 10, 1);
            EXPECT_NEAR(static_cast<double>(song.Frames + song.LostFrames) / 44100, 60, 0.2);
            EXPECT_EQ(song.EndFrame - song.BeginFrame, song.Frames + song.LostFrames);
            EXPECT_FALSE(song.Whole);
        });
}

TEST(DiskThatIsFull, TheSongGoesOnWhenThereIsRoomAndReportsWhatItLacks) {
    TellOfAGapOf10Seconds([](World&) {});
}

TEST(DiskThatIsFull, WhatTheSongLacksIsReportedAlsoIfAnInputWasChosenMeanwhile) {
    TellOfAGapOf10Seconds([](World& world) { world.Form().cmbInputDevices.Select(0); });
}

TEST(DiskThatCannotBeWrittenTo, EndsTheProgramWithItsReason) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(RecordTheSecondSong(world));
                  FileFault fault;
                  fault.Pattern = SongTempFolder + std::string("/*.wav");
                  fault.Operation = FileOperation::Create;
                  fault.Error = EROFS;
                  world.Disk().AddFault(fault);
                  RunTo(world, BeginOf(3) + 5);
                  EXPECT_EQ(world.Ends, 1U);
                  world.Finish();
                  ASSERT_THAT(world.Logged("ERROR"), SizeIs(1));
                  EXPECT_THAT(world.Logged("ERROR")[0], testing::StartsWith("The song file"));
                  EXPECT_THAT(world.Boxes(), SizeIs(1));
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
              });
}

TEST(DiskThatCannotBeAsked, EndsTheProgramWithItsReason) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(RecordTheSecondSong(world));
                  FileFault fault;
                  fault.Operation = FileOperation::FreeSpace;
                  world.Disk().AddFault(fault);
                  RunTo(world, 118);
                  EXPECT_EQ(world.Ends, 0U);
                  RunTo(world, 122);
                  EXPECT_EQ(world.Ends, 1U);
                  const std::string text = Text("906", {TempVolume});
                  EXPECT_THAT(world.Logged("ERROR"), ElementsAre(text));
                  EXPECT_THAT(world.Boxes(), ElementsAre(text));
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
              });
}

class DiskThatStandsStill : public testing::TestWithParam<const char*> {};

TEST_P(DiskThatStandsStill, ForTwentySecondsCostsNoSound) {
    TellTwice(
        [] {
            return Station({{ProviderOfRadio, "EndOfSongDetection", GetParam()},
                            {ProviderOfRadio, "EndOfSongTimer", "60"}});
        },
        [](World& world) {
            world.Computer.WaveIn.SetQueueLimit(60);  // what the program's own queue holds for a stalled disk
            ASSERT_TRUE(RecordTheSecondSong(world));
            FileFault fault;
            fault.Pattern = SongTempFolder + std::string("/*.wav");
            fault.Operation = FileOperation::Write;
            fault.Error = 0;
            fault.Times = 1;
            fault.Delay = std::chrono::seconds(20);
            world.Disk().AddFault(fault);
            const double before = world.Now();
            world.RunFor(0.5);
            RunTo(world, BeginOf(6));
            EXPECT_GT(world.Now(), before + 20);
            world.Finish();

            EXPECT_GE(KeptSongs(world).size(), 4U);
            EXPECT_EQ(MusicComparedWithRadio(world), "");
            EXPECT_THAT(InfoButForShortSongs(world), IsEmpty()) << "nothing was lost";
            for (const HeardSong& song : KeptSongs(world)) EXPECT_EQ(song.Song.LostFrames, 0U);
            // The computer was busy, which is told once.
            ASSERT_THAT(world.Logged("ERROR"), SizeIs(1));
            EXPECT_THAT(world.Logged("ERROR")[0], testing::StartsWith("This computer was busy for too long"));
        });
}

INSTANTIATE_TEST_SUITE_P(Modes, DiskThatStandsStill, testing::Values("0", "1", "2"));

}  // namespace
}  // namespace Corvetape::Test
