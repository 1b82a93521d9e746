// Stories of clocks: midnight, a clock that is set, and thirty days of running. Each told twice.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <set>

#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double SongAndPause = 62;
constexpr uint64_t BufferFrames = 2205;

double BeginOf(int number) {
    return 3 + SongAndPause * (number - 1);
}

/// Lines of a day's log.
std::vector<std::string> LinesOf(World& world, const std::string& day) {
    std::istringstream text(world.Disk().Content(LogFolder + ("/" + day) + ".log").value_or(""));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
}

TEST(Midnight, PassesInTheMiddleOfASongAndChangesNothingButTheLogFile) {
    TellTwice(
        [] {
            WorldOptions options;
            options.Radio = EvenRadio(5, 60);
            options.Machine.WallTime = {2024, 12, 31, 23, 58, 30, 0};  // midnight 25 s into the second song
            return options;
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, BeginOf(2) + 20);
            EXPECT_FALSE(world.Disk().Exists(LogFolder + std::string("/20250101.log")));
            RunTo(world, BeginOf(6) + 10);
            world.Finish();
            EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4", "Song 5"));
            EXPECT_EQ(MusicComparedWithRadio(world), "");
            EXPECT_THAT(world.Logged("INFO"), IsEmpty());
            EXPECT_THAT(world.Logged("ERROR"), IsEmpty()) << "nothing waited for a day";

            const auto before = LinesOf(world, "20241231");
            const auto after = LinesOf(world, "20250101");
            ASSERT_THAT(before, SizeIs(2));
            EXPECT_THAT(before[0], testing::StartsWith("23:58:30\tSTART"));
            EXPECT_THAT(before[1], testing::StartsWith("23:59:38\tWAV44\tBand 1 - Song 1"));
            ASSERT_THAT(after, SizeIs(5));
            EXPECT_THAT(after[0], testing::StartsWith("00:00:40\tWAV44\tBand 2 - Song 2"));
            EXPECT_THAT(after[4], testing::HasSubstr("END "));
        });
}

TEST(Midnight, DoesNotStopTheTick) {
    TellTwice(
        [] {
            WorldOptions options;
            options.Radio = EvenRadio(5, 60);
            options.Machine.WallTime = {2024, 12, 31, 23, 59, 0, 0};
            options.CommandLine = "-dontask -time 2 -quit";
            return options;
        },
        [](World& world) {
            ASSERT_TRUE(world.Load());
            // The second song is the first that is kept; the two minutes are over in the third.
            RunTo(world, BeginOf(4) + 8);
            EXPECT_EQ(world.Ends, 1U);
            world.Finish();
            EXPECT_THAT(KeptTitles(world), ElementsAre("Song 2", "Song 3"));
        });
}

/// Songs of just under a minute, each of which begins on the same second of its minute, without titles: their
/// files are named by the clock.
WorldOptions NamelessMinutes(int count) {
    WorldOptions options;
    options.Radio = EvenRadio(count, 58);
    options.TellsTitles = false;
    return options;
}

TEST(ClockSetBackAnHour, GivesTheSameNamesAgainAndNothingIsWrittenOver) {
    TellTwice([] { return NamelessMinutes(66); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, 3600 + 30);
                  ASSERT_THAT(KeptSongs(world), SizeIs(60));
                  world.Computer.Clock.ShiftWall(-std::chrono::hours(1));
                  RunTo(world, 3 + 66 * 60.0 + 10);
                  world.Finish();

                  EXPECT_THAT(KeptSongs(world), SizeIs(66));
                  std::set<std::string> files;
                  for (const TransferredSong& song : world.Transferred) files.insert(song.MusicFile);
                  EXPECT_THAT(files, SizeIs(66)) << "each song has a file of its own";
                  size_t second = 0;
                  for (const std::string& file : files) second += file.ends_with("-2.wav") ? 1 : 0;
                  EXPECT_EQ(second, 5U);
                  EXPECT_EQ(MusicComparedWithRadio(world), "");
                  EXPECT_THAT(world.Logged("ERROR"), IsEmpty());
              });
}

TEST(ClockSetBackAnHour, LetsTimedRecordingsAndSilenceRunOnUnchanged) {
    TellTwice(
        [] {
            WorldOptions options;
            RadioScript radio;
            uint64_t number = 0;
            radio.Pause(3);
            AddSongs(radio, number, 6, 60);
            options.Radio = radio.Stamped().SilenceForever();
            return options;
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            world.Form().txtRecordingPeriod.Text("3");
            world.Form().chkStopRecording[1].Value(1);
            RunTo(world, 90);
            world.Computer.Clock.ShiftWall(-std::chrono::hours(1));
            RunTo(world, 179);
            EXPECT_EQ(world.Form().chkStopRecording[0].Value(), 0);
            RunTo(world, 182);
            EXPECT_EQ(world.Form().chkStopRecording[0].Value(), 1) << "three minutes are three minutes";
            RunTo(world, BeginOf(7) + 63);
            EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("705", {"60"})));
            EXPECT_THAT(world.Logged("ERROR"), IsEmpty());
        });
}

TEST(ClockSetForward, ByHalfAYearCostsNothing) {
    TellTwice(
        [] {
            WorldOptions options;
            options.Radio = EvenRadio(5, 60);
            return options;
        },
        [](World& world) {
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, BeginOf(2) + 30);
            world.Computer.Clock.SetLocalNow({2024, 11, 2, 3, 4, 5, 0});
            RunTo(world, BeginOf(6) + 10);
            world.Finish();
            EXPECT_THAT(KeptTitles(world), SizeIs(5));
            EXPECT_EQ(MusicComparedWithRadio(world), "");
            EXPECT_THAT(world.Disk().Tree(LogFolder), testing::Contains(testing::HasSubstr("20241102.log")));
        });
}

/// The last minutes before the signed millisecond clock passes its limit.
WorldOptions NearTheLimit(RadioScript radio, double secondsBefore) {
    WorldOptions options;
    options.Radio = std::move(radio);
    options.Machine.MonotonicNanoseconds =
        SimClock::NanosecondsToWrap - static_cast<int64_t>(secondsBefore * 1e9);
    return options;
}

TEST(LimitOfTheMillisecondClock, PassedInTheMiddleOfASongIsNotNoticed) {
    TellTwice([] { return NearTheLimit(EvenRadio(5, 60), 100); },
              [](World& world) {
                  const double start = world.Now();
                  ASSERT_TRUE(world.StartRecording());
                  ASSERT_GT(world.Computer.Clock.TimeGetTime(), 0);
                  RunTo(world, start + BeginOf(6) + 10);
                  ASSERT_LT(world.Computer.Clock.TimeGetTime(), 0);
                  world.Finish();
                  EXPECT_THAT(KeptSongs(world), SizeIs(5));
                  EXPECT_THAT(world.Logged("INFO"), IsEmpty());
                  EXPECT_THAT(world.Logged("ERROR"), IsEmpty());
              });
}

TEST(LimitOfTheMillisecondClock, SilenceThatBeginsAfterItIsTimedAsAnyOther) {
    TellTwice([] { return NearTheLimit(EvenRadio(3, 60), 100); },
              [](World& world) {
                  const double start = world.Now();
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, start + BeginOf(4) + 55);
                  EXPECT_THAT(world.Logged("INFO"), IsEmpty());
                  RunTo(world, start + BeginOf(4) + 62);
                  EXPECT_THAT(world.Logged("INFO"), ElementsAre(Text("705", {"60"})));
                  RunTo(world, start + BeginOf(4) + 303);
                  EXPECT_THAT(world.Logged("ERROR"), ElementsAre(Text("707", {"5"})));
              });
}

/// A month of a station whose programme is five minutes a day: songs in the first minutes of each, among them
/// those of the day on which the millisecond clock passes its limit. For the rest of the day its computer is
/// off, so there is nothing to be heard, but the recorder runs on.
constexpr int Days = 30;
constexpr double DaySeconds = 86'400;
constexpr double OnAirAt = 20.0 * 3600 + 29 * 60;  // the limit is at 20:31:23.648 of the 25th day

RadioScript Month() {
    RadioScript radio;
    uint64_t number = 0;
    for (int day = 0; day < Days; ++day) {
        radio.Silence(OnAirAt);
        AddSongs(radio, number, 4, 60);
        radio.Silence(DaySeconds - OnAirAt - 4 * SongAndPause);
    }
    return radio.Stamped().SilenceForever();
}

/// What a month has left behind.
struct MonthOfRadio {
    Outcome Left;
    std::vector<HeardSong> Kept;
    std::vector<ScriptedSong> Songs;
    std::string Faults;  ///< one line for each song that is not as the radio played it
    std::vector<std::string> Errors;
    bool PassedTheLimitInASong = false;
};

MonthOfRadio LiveThroughAMonth() {
    MonthOfRadio month;
    WorldOptions options;
    options.Radio = Month();
    options.Settings = {{ProviderOfRadio, "QuitAfterSilence", "60"}, {"Options", "InfoAfterSilence", "3000"}};
    options.Encode = [&month](World& world, const TransferredSong& song) {
        const HeardSong* heard = world.HeardAs(song);
        const std::string compared = ComparedWithRadio(world, *heard, song.TempFile);
        if (compared != "equal") month.Faults += compared + "\n";
        world.Disk().Delete(song.TempFile);
    };
    World world(std::move(options));
    if (!world.StartRecording()) return month;
    for (int day = 0; day < Days; ++day) {
        world.Computer.WaveIn.KillServer();
        RunTo(world, day * DaySeconds + OnAirAt - 2);
        world.Computer.WaveIn.RestartServer();
        const int32_t before = world.Computer.Clock.TimeGetTime();
        RunTo(world, day * DaySeconds + OnAirAt + 4 * SongAndPause + 1);
        month.PassedTheLimitInASong |= before > 0 && world.Computer.Clock.TimeGetTime() < 0;
    }
    world.RunFor(20);
    month.Kept = KeptSongs(world);
    month.Songs = world.Truth()->Songs();
    world.Finish();
    month.Errors = world.Logged("ERROR");
    month.Left = OutcomeOf(world);
    return month;
}

TEST(ThirtyDays, EachSongOfEachDayIsKeptWholeAndTwoMonthsAreTheSame) {
    auto other = std::async(std::launch::async, LiveThroughAMonth);
    const MonthOfRadio month = LiveThroughAMonth();
    EXPECT_EQ(month.Left, other.get().Left);
    EXPECT_TRUE(month.PassedTheLimitInASong);
    ASSERT_THAT(month.Songs, SizeIs(Days * 4));
    ASSERT_THAT(month.Kept, SizeIs(Days * 4));
    for (size_t i = 0; i < month.Kept.size(); ++i) {
        EXPECT_EQ(month.Kept[i].Song.Media.Song, month.Songs[i].Media.Song);
        EXPECT_LT(month.Kept[i].RadioBegin, month.Songs[i].Begin + BufferFrames);
        EXPECT_GT(month.Kept[i].RadioEnd + BufferFrames, month.Songs[i].End);
    }
    EXPECT_EQ(month.Faults, "");
    EXPECT_THAT(month.Errors, IsEmpty());
}

}  // namespace
}  // namespace Corvetape::Test
