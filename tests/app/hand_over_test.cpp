// The delay between the close of a song and its transfer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "app/desktop_notes.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

WorldOptions ThreeSongs(const char* delayMs) {
    WorldOptions options = Starting("", {{ProviderOfRadio, "LengthOfPause", "500"},
                                         {ProviderOfRadio, "IgnoreShortSongs", "2"},
                                         {"DoNotChange", "EncodeDelay", delayMs}});
    options.Radio = NumberedRadio({10, 10, 10});
    return options;
}

TEST(HandOver, WaitsForTheDelayOfTheSettings) {
    World world(ThreeSongs("4000"));
    ASSERT_TRUE(world.StartRecording());
    ASSERT_TRUE(world.RunUntil([&] { return KeptSongs(world).size() == 1; }, 30));
    world.RunFor(3.9);
    EXPECT_THAT(world.Transferred, IsEmpty());
    world.RunFor(0.2);
    EXPECT_THAT(world.Transferred, SizeIs(1));
}

TEST(HandOver, OfASongThatStillWaitsComesAheadOfTheNextOne) {
    World world(ThreeSongs("30000"));
    ASSERT_TRUE(world.StartRecording());
    ASSERT_TRUE(world.RunUntil([&] { return KeptSongs(world).size() == 3; }, 60));
    EXPECT_THAT(world.Transferred, SizeIs(2));
    world.Finish();
    ASSERT_THAT(world.Transferred, SizeIs(3));
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(world.Transferred[i].Media.TempFileName, KeptSongs(world)[i].Song.Media.TempFileName);
        EXPECT_TRUE(world.Disk().Exists(world.Transferred[i].MusicFile));
    }
}

TEST(HandOver, OfAFileThatBecomesFullAtTheEndComesAheadOfTheLastOne) {
    WorldOptions options = ThreeSongs("30000");
    options.Settings.push_back({ProviderOfRadio, "EndOfSongDetection", "2"});
    options.MaxSongBytes = uint64_t{12} * 176400;
    World world(options);
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(14);
    ASSERT_THAT(world.Closed, IsEmpty());
    world.Finish();
    ASSERT_THAT(KeptSongs(world), SizeIs(2));
    ASSERT_THAT(world.Transferred, SizeIs(2));
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(world.Transferred[i].Media.TempFileName, KeptSongs(world)[i].Song.Media.TempFileName);
        EXPECT_TRUE(world.Disk().Exists(world.Transferred[i].MusicFile));
    }
}

TEST(ShortSong, IsReportedInLogAndWindowWithItsNameAndLength) {
    WorldOptions options = Starting(
        "", {{ProviderOfRadio, "LengthOfPause", "500"}, {ProviderOfRadio, "IgnoreShortSongs", "15"}});
    options.Radio = NumberedRadio({20, 10, 20});
    World world(options);
    ASSERT_TRUE(world.StartRecording());
    const auto second = [&] {
        return !world.Closed.empty() && world.Closed.back().Song.Media.Song == "Song 2";
    };
    ASSERT_TRUE(world.RunUntil(second, 60));
    ASSERT_EQ(world.Closed.back().Song.Fate, SongFate::Short);
    const std::string line = world.Form().lblStatus[1].Caption();
    const std::regex wanted("\"Band 2 - Song 2\" is not kept: with 1[0-2]\\.. seconds it is too short\\.");
    EXPECT_TRUE(std::regex_match(line, wanted)) << line;
    EXPECT_THAT(world.Logged("INFO"), ElementsAre(line));
}

}  // namespace
}  // namespace Corvetape::Test
