// The way of noticing the end of a song is changed in the middle of one.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

/// One long song; the ways of noticing its end are chosen at these seconds, one after the other.
void Record(World& world, const std::vector<std::pair<double, size_t>>& changes) {
    ASSERT_TRUE(world.StartRecording());
    for (const auto& [second, mode] : changes) {
        world.RunFor(second - world.Now());
        world.Form().optEndOfSong[mode].Press();
    }
    world.RunFor(180 - world.Now());
    world.Finish();
}

class ChangeOfMode : public testing::TestWithParam<std::vector<std::pair<double, size_t>>> {};

TEST_P(ChangeOfMode, InTheMiddleOfASongLosesNothingOfIt) {
    WorldOptions options;
    options.Radio = NumberedRadio({150}, {.SecondsBetweenRests = 4});
    options.Settings = {{ProviderOfRadio, "LengthOfPause", "500"},
                        {ProviderOfRadio, "EndOfSongTimer", "600"},
                        {ProviderOfRadio, "IgnoreShortSongs", "5"}};
    World world(std::move(options));
    Record(world, GetParam());
    EXPECT_EQ(MusicComparedWithRadio(world), "");
    ASSERT_EQ(KeptSongs(world).size(), 1U);
    const ScriptedSong& song = world.Truth()->Songs()[0];
    EXPECT_LE(KeptSongs(world)[0].RadioBegin, song.Begin);
    EXPECT_GE(KeptSongs(world)[0].RadioEnd, song.End);
}

// 0 by silence, 1 by media data, 2 by time.
using Changes = std::vector<std::pair<double, size_t>>;
INSTANTIATE_TEST_SUITE_P(Ways, ChangeOfMode,
                         testing::Values(Changes{{60, 1}}, Changes{{20, 1}, {60, 0}},
                                         Changes{{20, 1}, {60, 0}, {90, 1}}, Changes{{20, 2}, {60, 0}},
                                         Changes{{20, 1}, {60, 2}}, Changes{{20, 1}, {60, 0}, {61, 1}}));

TEST(ChangeOfMode, WhileRecordingIsOffBringsNothingOldIntoALaterSong) {
    WorldOptions options;
    options.Radio = NumberedRadio({40, 100}, {.SecondsBetweenRests = 4});
    options.Settings = {{ProviderOfRadio, "LengthOfPause", "500"},
                        {ProviderOfRadio, "IgnoreShortSongs", "5"}};
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.Form().optEndOfSong[1].Press();
    world.RunFor(20 - world.Now());
    world.Values().Flags.RecordingEnabled = false;  // such as by a full disk
    world.Form().optEndOfSong[0].Press();
    world.RunFor(5);
    world.Values().Flags.RecordingEnabled = true;
    world.RunFor(60 - world.Now());  // the first song has ended meanwhile
    world.Form().optEndOfSong[1].Press();
    world.RunFor(30);
    world.Finish();
    ASSERT_EQ(world.Transferred.size(), 2U);
    const HeardSong second = KeptSongs(world)[1];
    EXPECT_LT(second.RadioBegin, world.Truth()->Songs()[1].Begin + 2205);
    EXPECT_EQ(ComparedWithRadio(world, second, world.Transferred[1].MusicFile), "equal");
}

TEST(ChangeOfMode, WhileRecordingIsOffForgetsTheCutThatIsDue) {
    WorldOptions options;
    options.Radio = NumberedRadio({40, 20, 100}, {.SecondsBetweenRests = 4});
    options.Settings = {{ProviderOfRadio, "LengthOfPause", "500"},
                        {ProviderOfRadio, "IgnoreShortSongs", "5"}};
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.Form().optEndOfSong[1].Press();
    world.RunFor(20);
    ASSERT_TRUE(world.RunUntil([&] { return world.Values().Cut.CutPending; }, 40));
    world.Values().Flags.RecordingEnabled = false;  // such as by a full disk
    world.Form().optEndOfSong[0].Press();
    world.RunFor(5);
    world.Values().Flags.RecordingEnabled = true;
    world.RunFor(90 - world.Now());  // in the third song, which the new cut would shorten
    world.Form().optEndOfSong[1].Press();
    world.RunFor(175 - world.Now());
    world.Finish();
    ASSERT_FALSE(world.Transferred.empty());
    const HeardSong third = KeptSongs(world).back();
    EXPECT_LE(third.RadioBegin, world.Truth()->Songs()[2].Begin);
    EXPECT_GE(third.RadioEnd, world.Truth()->Songs()[2].End);
    EXPECT_EQ(ComparedWithRadio(world, third, world.Transferred.back().MusicFile), "equal");
}

class ReopenedInput : public testing::TestWithParam<int> {};

TEST_P(ReopenedInput, KeepsWhatWasHeardBefore) {
    WorldOptions options;
    options.Radio = NumberedRadio({150}, {.SecondsBetweenRests = 4});
    options.Settings = {{ProviderOfRadio, "EndOfSongDetection", std::to_string(GetParam())},
                        {ProviderOfRadio, "LengthOfPause", "500"},
                        {ProviderOfRadio, "EndOfSongTimer", "600"}};
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(60 - world.Now());
    world.Form().cmbInputDevices.Select(0);
    const uint64_t heard = 60 * 44100;
    world.RunFor(60);
    world.Finish();
    const auto frames = FramesOfWav(world.Disk(), world.Transferred.back().MusicFile);
    ASSERT_TRUE(frames);
    const auto loud = std::ranges::find_if(*frames, [](Frame frame) { return frame.Left < -1000; });
    ASSERT_NE(loud, frames->end());
    const uint64_t begin = FrameOfStamp(*loud, 0);
    EXPECT_LE(begin, world.Truth()->Songs()[0].Begin);
    const std::span<const Frame> song(loud, frames->end());
    const auto played = FramesOfRadio(world.Truth(), begin, song.size());
    const auto same = static_cast<uint64_t>(std::ranges::mismatch(song, played).in1 - song.begin());
    EXPECT_GE(begin + same + 2205, heard);
}

INSTANTIATE_TEST_SUITE_P(Modes, ReopenedInput, testing::Values(0, 1, 2));

}  // namespace
}  // namespace Corvetape::Test
