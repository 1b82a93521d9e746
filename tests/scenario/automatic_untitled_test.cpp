// Songs whose titles nobody reports, at the end of song "Automatic".
#include <gtest/gtest.h>

#include "scenario/automatic_story.h"

namespace Corvetape::Test {
namespace {

TEST(AutomaticUntitled, SongsWithoutGapsAreCutWhereAnotherSoundGoesOn) {
    constexpr int songs = 4;
    constexpr double seconds = 80;
    WorldOptions options = Automatic(Songs(songs, seconds, 0));
    options.TellsTitles = false;
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 3 + songs * seconds + 20);
    world.Finish();
    const std::vector<HeardSong> kept = KeptSongs(world);
    ASSERT_EQ(kept.size(), size_t{songs});
    for (int song = 0; song < songs; ++song) {
        const double begin = 3 + song * seconds;
        ExpectSong(world, kept[static_cast<size_t>(song)], "", begin, begin + seconds, WithoutAGap);
    }
    EXPECT_EQ(kept[0].Song.Trust.End, Certainty::Unsure);
    EXPECT_EQ(kept[1].Song.Trust.Begin, Certainty::Unsure);
    EXPECT_EQ(kept[3].Song.Trust.End, Certainty::Sure) << "silence follows";
}

}  // namespace
}  // namespace Corvetape::Test
