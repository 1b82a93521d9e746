// Stories of programs that end without a word, and of the start that comes after. Each told twice.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr double SongAndPause = 92;

double BeginOf(int number) {
    return 3 + SongAndPause * (number - 1);
}

WorldOptions Station(std::vector<IniLine> settings = {}) {
    WorldOptions options;
    options.Radio = EvenRadio(6, 90);
    options.Settings = std::move(settings);
    return options;
}

/// The program is gone in the middle of whatever it did; the disk is as it was at that moment.
void Crash(World& world) {
    const SimDiskImage image = world.Disk().Snapshot();
    world.Recorder.reset();
    world.Disk().Restore(image);
}

/// The next start of the program, as another process.
void StartAgain(World& world, const std::string& run = "run-2", bool otherIsGone = true) {
    world.Computer.System.OwnRun = run;
    std::set<std::string>& alive = world.Computer.System.AliveRuns;
    if (otherIsGone) std::erase_if(alive, [](const std::string& each) { return each.starts_with("run-"); });
    world.Computer.System.AliveRuns.insert(run);
    world.Made();
    ASSERT_TRUE(world.Start());
}

/// Where the frames of a file come from in the radio, by the stamps that they carry: the first one and one
/// after the last. Fails if they are not all the frames between.
std::pair<uint64_t, uint64_t> PlaceInRadio(World& world, const std::string& path, uint64_t near) {
    const auto frames = FramesOfWav(world.Disk(), path);
    if (!frames || frames->size() < 44100) {
        ADD_FAILURE() << path << " holds no song";
        return {};
    }
    constexpr size_t inTheSong = 22050;  // surely after the pause that a file may begin with
    const uint64_t begin = FrameOfStamp(frames->at(inTheSong), near) - inTheSong;
    EXPECT_EQ(Comparison(FramesOfRadio(world.Truth(), begin, frames->size()), *frames), "equal");
    return {begin, begin + frames->size()};
}

/// The second song, handed on by the second run, with everything that was written of it.
void ExpectTheSecondSongUpTo(World& world, double second) {
    const std::string musicFile = MusicFolder + std::string("/Radio/Band 2 - Song 2.wav");
    const auto isTheSecond = [&](const TransferredSong& song) { return song.MusicFile == musicFile; };
    ASSERT_EQ(std::ranges::count_if(world.Transferred, isTheSecond), 1);
    const TransferredSong& song = *std::ranges::find_if(world.Transferred, isTheSecond);
    world.RunFor(5);
    const ScriptedSong& truth = world.Truth()->Songs()[1];
    const auto [begin, end] = PlaceInRadio(world, song.MusicFile, truth.Begin);
    EXPECT_LE(begin, truth.Begin);
    EXPECT_NEAR(static_cast<double>(end) / 44100, second, 0.1);
}

TEST(CrashInAWantedSong, IsMadeGoodByTheNextStart) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, BeginOf(2) + 60);
                  Crash(world);
                  StartAgain(world);
                  EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("840", {"Band 2 - Song 2"})));
                  ExpectTheSecondSongUpTo(world, BeginOf(2) + 60);
              });
}

/// In a mode that keeps what comes in the ring for a while.
void CrashWithSoundInTheRing(const std::string& endOfSong) {
    TellTwice(
        [&] {
            return Station({{ProviderOfRadio, "EndOfSongDetection", endOfSong}});
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, BeginOf(2) + 60);
            ASSERT_GT(world.Values().Ring.Unread(), 5 * BuffersPerSecond);
            Crash(world);
            StartAgain(world);
            ExpectTheSecondSongUpTo(world, BeginOf(2) + 60);
        });
}

TEST(CrashInAWantedSong, ByMediaDataLosesNothingOfWhatWaitsInTheRing) {
    CrashWithSoundInTheRing("1");
}

TEST(CrashInAWantedSong, ByEverythingThatIsKnownLosesNothingOfWhatWaitsInTheRing) {
    CrashWithSoundInTheRing("3");
}

TEST(CrashWhileACutIsPending, GivesTheOldSongAllThatHadArrived) {
    TellTwice(
        [] {
            return Station({{ProviderOfRadio, "EndOfSongDetection", "1"}});
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            ASSERT_TRUE(world.RunUntil(
                [&] { return world.Values().Cut.CutPending && world.Now() > BeginOf(3) - 2; }, 300));
            world.RunFor(1);
            ASSERT_TRUE(world.Values().Cut.CutPending);
            const double now = world.Now();
            Crash(world);
            StartAgain(world);
            ExpectTheSecondSongUpTo(world, now);
        });
}

TEST(CrashRightAfterACut, FindsTheNewSongFromItsBeginning) {
    TellTwice(
        [] {
            return Station(
                {{ProviderOfRadio, "EndOfSongDetection", "1"}, {ProviderOfRadio, "IgnoreShortSongs", "1"}});
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            const auto firstIsClosed = [&] {
                return !world.Closed.empty() && world.Closed.back().Song.Media.Song == "Song 1";
            };
            RunTo(world, BeginOf(2) - 5);
            ASSERT_TRUE(world.RunUntil(
                [&] { return world.Now() > BeginOf(2) && !world.Values().Cut.CutPending; }, 20));
            ASSERT_TRUE(firstIsClosed());
            world.RunFor(6);
            ASSERT_LT(world.Values().Ring.Unread(), 10 * BuffersPerSecond) << "nothing is counted yet";
            const double now = world.Now();
            Crash(world);
            StartAgain(world);
            ExpectTheSecondSongUpTo(world, now);
        });
}

TEST(CrashInAWantedPiece, ByFixedTimeLosesNothingOfWhatWaitsInTheRing) {
    TellTwice(
        [] {
            return Station({{ProviderOfRadio, "EndOfSongDetection", "2"}});
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            const double begun = world.Now();
            world.RunFor(60);
            const double now = world.Now();
            Crash(world);
            StartAgain(world);
            ASSERT_THAT(world.Transferred, SizeIs(1));
            world.RunFor(5);
            const auto frames = FramesOfWav(world.Disk(), world.Transferred[0].MusicFile);
            ASSERT_TRUE(frames);
            EXPECT_NEAR(static_cast<double>(frames->size()) / 44100, now - begun, 0.2);
        });
}

TEST(CrashInAWantedSong, LeavesTheNewRunReadyForTheNextSongs) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, BeginOf(2) + 60);
                  Crash(world);
                  StartAgain(world);
                  world.Form().chkStartStop[1].Value(1);
                  RunTo(world, BeginOf(5));
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 3", "Song 4"));
                  EXPECT_THAT(world.Disk().Tree(SongTempFolder), Not(Contains(HasSubstr(".note"))));
                  const std::string third = MusicFolder + std::string("/Radio/Band 3 - Song 3.wav");
                  const auto [begin, end] = PlaceInRadio(world, third, world.Truth()->Songs()[2].Begin);
                  EXPECT_LE(begin, world.Truth()->Songs()[2].Begin);
                  EXPECT_GE(end, world.Truth()->Songs()[2].End);
              });
}

TEST(CrashInAWantedSong, IsMadeGoodOnce) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, BeginOf(2) + 60);
                  Crash(world);
                  StartAgain(world);
                  world.RunFor(5);
                  world.Finish();
                  const size_t transferred = world.Transferred.size();
                  StartAgain(world, "run-3");
                  EXPECT_THAT(world.Transferred, SizeIs(transferred));
                  EXPECT_THAT(world.Logged("INFO"), SizeIs(1));
              });
}

TEST(CrashInAWantedSong, ThatIsShorterThanSongsHaveToBeKeepsWhatThereIs) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, BeginOf(2) + 20);
                  Crash(world);
                  StartAgain(world);
                  const std::string report = Text("840", {"Band 2 - Song 2"});
                  EXPECT_THAT(world.Logged("INFO"), ElementsAre(report));
                  EXPECT_EQ(world.Values().Form.lblStatus[1].Caption(), report);
                  ExpectTheSecondSongUpTo(world, BeginOf(2) + 20);
              });
}

TEST(CrashInAWantedSong, LeavesItWhereItsDiskFailsAtTheNextStart) {
    TellTwice(
        [] {
            return Station({{"Options", "DelTempFolder", "1"}});
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, BeginOf(2) + 58);
            Crash(world);
            FileFault fault;
            fault.Pattern = "*.wav";
            fault.Operation = FileOperation::Patch;
            fault.Times = 1;
            world.Disk().AddFault(fault);
            StartAgain(world);
            EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("849", {"Band 2 - Song 2"})));
            world.Finish();
            world.Log.clear();
            StartAgain(world, "run-3");
            EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("840", {"Band 2 - Song 2"})));
            ExpectTheSecondSongUpTo(world, BeginOf(2) + 58);
        });
}

TEST(CrashInAnUnwantedSong, DeletesItAtTheNextStart) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(world.Start());
                  RunTo(world, BeginOf(2) + 60);
                  EXPECT_THAT(world.Disk().Tree(SongTempFolder), SizeIs(2)) << "the song and its note";
                  Crash(world);
                  StartAgain(world);
                  EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("841", {"Band 2 - Song 2"})));
                  EXPECT_THAT(world.Transferred, IsEmpty());
                  // The new run writes the song that plays as well: it has a name of its own.
                  world.Finish();
                  EXPECT_THAT(world.Disk().Tree(SongTempFolder), IsEmpty());
                  EXPECT_THAT(world.Disk().Tree(MusicFolder), IsEmpty());
              });
}

TEST(CrashInAnUnwantedSong, ThatWasGivenUpWhileItPlayedDeletesItToo) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, BeginOf(2) + 50);
                  world.Form().cmdSkipThisRecording.Press();
                  RunTo(world, BeginOf(2) + 60);
                  Crash(world);
                  StartAgain(world);
                  EXPECT_THAT(world.Transferred, SizeIs(1));
                  EXPECT_THAT(world.Logged("INFO"), ElementsAre(HasSubstr("is deleted")));
              });
}

TEST(CrashInTheDelayBeforeTheHandOver, LosesNothingOfTheSong) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, BeginOf(3));
                  ASSERT_TRUE(world.Form().tmrEncodeFile.Running());
                  ASSERT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2"));
                  ASSERT_THAT(world.Transferred, SizeIs(1));
                  Crash(world);
                  StartAgain(world);
                  const ScriptedSong& truth = world.Truth()->Songs()[1];
                  ExpectTheSecondSongUpTo(world, static_cast<double>(truth.End) / 44100);
                  const auto info = ReadWavInfo(world.Disk(), world.Transferred[1].MusicFile);
                  ASSERT_TRUE(info);
                  using Tag = std::pair<std::string, std::string>;
                  EXPECT_THAT(info->Tags, Contains(Tag("INAM", "Song 2")));
              });
}

TEST(CrashInTheDelayBeforeTheHandOver, BringsThePauseOfASongWithoutATitleNotBack) {
    TellTwice(
        [] {
            WorldOptions options = Station({{NoStationData, "LengthOfPause", "1500"}});
            options.TellsTitles = false;
            return options;
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, BeginOf(3));
            ASSERT_TRUE(world.Form().tmrEncodeFile.Running());
            const uint64_t frames = world.Closed.back().Song.Frames;
            ASSERT_THAT(world.Transferred, SizeIs(1));
            Crash(world);
            StartAgain(world);
            world.RunFor(5);
            ASSERT_THAT(world.Transferred, SizeIs(2));
            const auto info = ReadWavInfo(world.Disk(), world.Transferred[1].MusicFile);
            ASSERT_TRUE(info);
            EXPECT_EQ(info->DataBytes, frames * sizeof(Frame));
        });
}

TEST(CrashBesideSongsThatWereLeftOnPurpose, DoesNotTouchThem) {
    TellTwice(
        [] {
            return Station({{"Options", "EncodeOffline", "1"}});
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, BeginOf(3) + 60);
            const std::string first = SongTempFolder + std::string("/Band 1 - Song 1.wav");
            const std::string second = SongTempFolder + std::string("/Band 2 - Song 2.wav");
            const auto before = world.Disk().HashOfFile(first);
            ASSERT_TRUE(before);
            ASSERT_TRUE(world.Disk().Exists(second));
            Crash(world);
            StartAgain(world);
            EXPECT_THAT(world.Logged("INFO"), SizeIs(1)) << "the song that was being written";
            EXPECT_EQ(world.Disk().HashOfFile(first), before);
            EXPECT_TRUE(world.Disk().Exists(second));
            EXPECT_TRUE(world.Disk().Exists(SongTempFolder + std::string("/Band 3 - Song 3.wav")));
            world.Finish();
            EXPECT_EQ(world.Disk().HashOfFile(first), before);
        });
}

TEST(CrashOfNobody, TheSongsOfARunThatIsAliveAreItsOwn) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, BeginOf(2) + 60);
                  const std::vector<std::string> files = world.Disk().Tree(SongTempFolder);
                  Crash(world);
                  // As if the first run were still there, beside one that was started to update.
                  StartAgain(world, "run-2", false);
                  EXPECT_THAT(world.Logged("INFO"), IsEmpty());
                  EXPECT_THAT(world.Transferred, SizeIs(1));
                  for (const std::string& file : files) EXPECT_TRUE(world.Disk().Exists(file)) << file;
              });
}

/// How often a song was given to an encoder. What was just begun when the program was gone is given to one
/// too.
std::vector<TransferredSong> TransfersOf(const World& world, const std::string& title) {
    std::vector<TransferredSong> songs;
    for (const TransferredSong& each : world.Transferred) {
        if (each.Media.Song == title) songs.push_back(each);
    }
    return songs;
}

TEST(CrashWhileTheEncoderRuns, LeavesTheSongToTheEncoder) {
    TellTwice([] { return Station(); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, BeginOf(3) + 4);
                  ASSERT_THAT(world.Transferred, SizeIs(2));
                  ASSERT_EQ(world.Computer.Processes.Running(), 1U);
                  Crash(world);
                  StartAgain(world);
                  EXPECT_THAT(TransfersOf(world, "Song 2"), SizeIs(1));
                  const ScriptedSong& truth = world.Truth()->Songs()[1];
                  ExpectTheSecondSongUpTo(world, static_cast<double>(truth.End) / 44100);
              });
}

TEST(CrashOfRecorderAndEncoder, HasTheSongEncodedByTheNextStartAndOnlyOnce) {
    TellTwice(
        [] {
            return Station({{"Options", "DelTempFolder", "1"}});
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, BeginOf(3) + 4);
            ASSERT_EQ(world.Computer.Processes.Running(), 1U);
            world.Computer.Processes.KillAll();
            const std::string part = MusicFolder + std::string("/Radio/.corvet-run-1-2.part");
            world.Disk().Put(part, "half");
            Crash(world);
            StartAgain(world);
            world.RunFor(5);
            const std::vector<TransferredSong> songs = TransfersOf(world, "Song 2");
            ASSERT_THAT(songs, SizeIs(2));
            EXPECT_EQ(songs[1].MusicFile, songs[0].MusicFile);
            EXPECT_TRUE(world.Disk().Exists(songs[1].MusicFile));
            EXPECT_FALSE(world.Disk().Exists(part));
            world.Finish();
            StartAgain(world, "run-3");
            world.RunFor(5);
            EXPECT_THAT(TransfersOf(world, "Song 2"), SizeIs(2));
        });
}

TEST(CrashOfRecorderAndEncoder, ThatHappensAgainLeavesTheSongAsItIs) {
    TellTwice(
        [] {
            return Station({{"Options", "DelTempFolder", "1"}});
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, BeginOf(3) + 4);
            for (const char* run : {"run-2", "run-3", "run-4"}) {
                world.Computer.Processes.KillAll();
                Crash(world);
                StartAgain(world, run);
            }
            EXPECT_THAT(TransfersOf(world, "Song 2"), SizeIs(2)) << "by its own run and by the next one";
            world.Finish();
            EXPECT_TRUE(world.Disk().Exists(SongTempFolder + std::string("/Band 2 - Song 2.wav")));
        });
}

}  // namespace
}  // namespace Corvetape::Test
