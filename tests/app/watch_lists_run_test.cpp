// The lists of songs to keep and to drop, in a recording.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

/// A radio that plays songs of these titles, each of half a minute.
RadioScript Playing(std::initializer_list<const char*> titles) {
    RadioScript script;
    script.Pause(3);
    uint64_t seed = 0;
    for (const char* title : titles) {
        ScriptSong song;
        song.Seconds = 30;
        song.Seed = ++seed;
        song.Media = {"Radio", "Band", title, "", ""};
        script.Song(std::move(song)).Pause(2);
    }
    return script.Stamped().SilenceForever();
}

class ListsOfARun : public testing::TestWithParam<int> {
 protected:
    /// Titles of the songs that were kept.
    static std::vector<std::string> Kept(const std::string& include, const std::string& exclude,
                                         bool autoExclude) {
        WorldOptions options;
        options.Radio = Playing({"One", "Two", "One", "Three"});
        options.Settings = {{ProviderOfRadio, "EndOfSongDetection", std::to_string(GetParam())},
                            {ProviderOfRadio, "LengthOfPause", "500"},
                            {ProviderOfRadio, "IgnoreShortSongs", "5"},
                            {"Options", "AutoExclude", autoExclude ? "1" : "0"}};
        World world(std::move(options));
        world.Disk().Put(LogFolder + std::string("/Include.txt"), include);
        world.Disk().Put(LogFolder + std::string("/Exclude.txt"), exclude);
        EXPECT_TRUE(world.StartRecording());
        world.RunFor(160);
        world.Finish();
        std::vector<std::string> titles;
        for (const TransferredSong& song : world.Transferred) titles.push_back(song.Media.Song);
        return titles;
    }
};

TEST_P(ListsOfARun, ASongOnTheSecondListIsDroppedAndTheNextOneKept) {
    EXPECT_THAT(Kept("", "*TWO*\r\n", false), ElementsAre("One", "One", "Three"));
}

TEST_P(ListsOfARun, ASongOnBothListsIsKept) {
    EXPECT_THAT(Kept("band - t*\r\n", "*\r\n", false), ElementsAre("Two", "Three"));
}

TEST_P(ListsOfARun, WithAutoExcludeASongIsCollectedOnceOnly) {
    EXPECT_THAT(Kept("", "", true), ElementsAre("One", "Two", "Three"));
}

TEST_P(ListsOfARun, WithAutoExcludeASongOnTheFirstListIsCollectedEachTime) {
    EXPECT_THAT(Kept("Band - One\r\n", "", true), ElementsAre("One", "Two", "One", "Three"));
}

INSTANTIATE_TEST_SUITE_P(SilenceAndMediaData, ListsOfARun, testing::Values(0, 1));

}  // namespace
}  // namespace Corvetape::Test
