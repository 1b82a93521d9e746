// Stories of inputs that go, stand still or are late, each told twice.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr uint64_t Second = 44100;

/// Four songs of three minutes. The second begins at second 185.
WorldOptions Station(const char* mode) {
    WorldOptions options;
    options.Radio = EvenRadio(4, 180);
    options.Settings = {{ProviderOfRadio, "EndOfSongDetection", mode},
                        {ProviderOfRadio, "LengthOfPause", "500"}};
    return options;
}
constexpr double SecondSong = 185;
constexpr double EndOfRadio = 3 + 4 * 182.0;

/// Holds the file of a song with one hole against the radio. The hole's place in the radio is `at`, in
/// seconds, and its length `hole`.
void ExpectAllButTheHole(World& world, const TransferredSong& song, double at, double hole) {
    const HeardSong* heard = world.HeardAs(song);
    ASSERT_NE(heard, nullptr);
    const auto frames = FramesOfWav(world.Disk(), song.MusicFile);
    ASSERT_TRUE(frames);
    const auto begin = static_cast<uint64_t>(at * 44100);
    const auto end = begin + static_cast<uint64_t>(hole * 44100);
    std::vector<Frame> expected = FramesOfRadio(world.Truth(), heard->RadioBegin, begin - heard->RadioBegin);
    const std::vector<Frame> after = FramesOfRadio(world.Truth(), end, heard->RadioEnd - end);
    expected.insert(expected.end(), after.begin(), after.end());
    EXPECT_EQ(Comparison(expected, *frames), "equal");
}

/// The second song has lost a minute, and everybody was told.
void ExpectAMinuteToBeMissing(World& world, const char* reasonKey, double at) {
    RunTo(world, EndOfRadio + 20);
    world.Finish();
    EXPECT_THAT(InfoButForShortSongs(world),
                ElementsAre(Text("842"), Text(reasonKey, {"60.000", "2646000", RadioName}), Text("843"),
                            Text("848", {"Band 2 - Song 2", "60.000"})));
    EXPECT_THAT(world.Logged("ERROR"), IsEmpty());
    EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
    const auto kept = KeptSongs(world);
    EXPECT_EQ(kept[0].Song.LostFrames, 0U);
    EXPECT_EQ(kept[1].Song.LostFrames, 60 * Second);
    EXPECT_EQ(kept[2].Song.LostFrames, 0U);
    EXPECT_EQ(kept[1].Song.DeviceChanges, 1U);
    EXPECT_EQ(kept[2].Song.DeviceChanges, 0U);
    EXPECT_FALSE(kept[1].Song.Whole);
    EXPECT_TRUE(kept[2].Song.Whole);
    ExpectAllButTheHole(world, world.Transferred[1], at, 60);
}

class InputThatGoes : public testing::TestWithParam<const char*> {};

TEST_P(InputThatGoes, ADeviceThatIsGoneForAMinuteCostsThatMinuteAndNothingElse) {
    TellTwice([] { return Station(GetParam()); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, SecondSong + 60);
                  world.Computer.WaveIn.Vanish(RadioName);
                  world.RunFor(60);
                  EXPECT_TRUE(world.Recorder->Running());
                  EXPECT_THAT(InfoButForShortSongs(world), ElementsAre(Text("842")));
                  world.Computer.WaveIn.Return(RadioName);
                  ExpectAMinuteToBeMissing(world, "846", SecondSong + 60);
              });
}

TEST_P(InputThatGoes, ASoundServerThatIsGoneForAMinuteCostsThatMinuteAndNothingElse) {
    TellTwice([] { return Station(GetParam()); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, SecondSong + 60);
                  world.Computer.WaveIn.KillServer();
                  world.RunFor(60);
                  world.Computer.WaveIn.RestartServer();
                  ExpectAMinuteToBeMissing(world, "845", SecondSong + 60);
              });
}

TEST_P(InputThatGoes, ForTenMinutesAndComesBackInAPauseIsNotTakenForSilence) {
    TellTwice(
        [] {
            WorldOptions options = Station(GetParam());
            options.Radio = EvenRadio(8, 180);
            return options;
        },
        [](World& world) {
            constexpr double pause = 3 + 182 * 6 - 2;  // the one after the sixth song
            ASSERT_TRUE(world.StartRecording());
            RunTo(world, pause + 0.2 - 600);
            world.Computer.WaveIn.Vanish(RadioName);
            RunTo(world, pause + 0.2);
            world.Computer.WaveIn.Return(RadioName);
            RunTo(world, pause + 2 * 182 + 30);
            EXPECT_TRUE(world.Values().Flags.RecordingEnabled);
            world.Finish();
            EXPECT_THAT(world.Logged("ERROR"), IsEmpty());
            EXPECT_THAT(KeptTitles(world), testing::IsSupersetOf({"Song 1", "Song 2", "Song 7", "Song 8"}));
            for (const std::string& line : world.Logged("INFO")) {
                EXPECT_THAT(line, testing::Not(HasSubstr("No sound for")));
            }
        });
}

INSTANTIATE_TEST_SUITE_P(Modes, InputThatGoes, testing::Values("0", "1"));

TEST(LateBuffers, AreReportedOnceAsSoonAsNearlyAllOfTheQueueWasUsed) {
    TellTwice([] { return Station("0"); },
              [](World& world) {
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, 60);
                  // The driver stands still: an arrival on time counts two, so 1.35 s count 28.
                  world.Computer.WaveIn.Hold(RadioName);
                  world.RunFor(1.3);
                  world.Computer.WaveIn.Release(RadioName);
                  world.RunFor(3);
                  EXPECT_THAT(world.Logged("ERROR"), IsEmpty());

                  world.Computer.WaveIn.Hold(RadioName);
                  world.RunFor(1.6);
                  world.Computer.WaveIn.Release(RadioName);
                  world.RunFor(5);
                  ASSERT_THAT(world.Logged("ERROR"), SizeIs(1));
                  EXPECT_THAT(world.Logged("ERROR")[0], HasSubstr("buffers of sound were waiting"));
                  EXPECT_EQ(world.Form().lblStatus[1].Caption(), world.Logged("ERROR")[0]);
                  EXPECT_EQ(world.Form().lblMaxBuffers.Caption(), "2") << "counted anew";

                  RunTo(world, EndOfRadio + 20);
                  world.Finish();
                  EXPECT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
                  EXPECT_EQ(MusicComparedWithRadio(world), "") << "late is not lost";
              });
}

TEST(LateBuffers, OfADeviceThatKeepsNoMoreThanItsQueueAreReportedAsLost) {
    TellTwice([] { return Station("0"); },
              [](World& world) {
                  world.Computer.WaveIn.SetQueueLimit(1.5);
                  ASSERT_TRUE(world.StartRecording());
                  RunTo(world, SecondSong + 30);
                  world.Computer.WaveIn.Hold(RadioName);
                  world.RunFor(4);
                  world.Computer.WaveIn.Release(RadioName);
                  RunTo(world, EndOfRadio + 20);
                  world.Finish();
                  ASSERT_THAT(KeptTitles(world), ElementsAre("Song 1", "Song 2", "Song 3", "Song 4"));
                  const ClosedSong song = KeptSongs(world)[1].Song;
                  EXPECT_NEAR(static_cast<double>(song.LostFrames) / 44100, 2.5, 0.11);
                  EXPECT_FALSE(song.Whole);
                  ASSERT_THAT(world.Logged("INFO"), SizeIs(2));
                  EXPECT_THAT(world.Logged("INFO")[0], HasSubstr("too slow for the sound server"));
                  EXPECT_THAT(world.Logged("INFO")[1], HasSubstr("\"Band 2 - Song 2\""));
                  EXPECT_THAT(world.Logged("ERROR"), SizeIs(1));
              });
}

}  // namespace
}  // namespace Corvetape::Test
