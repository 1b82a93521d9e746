// What the steps of the stop bring about while boxes are open in it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "forms/dlg_provider.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

TEST(StopEffects, TheTickRestsWhileABoxOfTheStopIsOpen) {
    WorldOptions options = Starting("");
    options.Radio = NumberedRadio({20, 60});
    World world(std::move(options));
    ASSERT_TRUE(world.Start());
    world.RunFor(12);
    world.Values().Messages.RaiseInfo(834);
    const uint64_t age = world.Recorder->SongAgeSeconds();
    size_t boxes = 0;
    world.Computer.Dialogs.WhileOpen = [&](const ShownBox&) {
        ++boxes;
        world.RunFor(30);
        EXPECT_EQ(world.Recorder->SongAgeSeconds(), age);
        EXPECT_EQ(world.Form().txtSong.Text(), "Song 1");
    };
    world.Recorder->Unload();
    EXPECT_EQ(boxes, 1U);
}

/// Ends the program while a source's question is open, in which the user may have switched media data off.
/// Returns the name of the source that is left.
std::string SourceAfterAnEndInTheQuestion(World& world, bool switchedOff) {
    world.Question.Answer = [&](dlgProvider&) {
        if (switchedOff) world.Form().chkStationDataEnable.Value(0);
        world.Recorder->Unload();
    };
    world.Made();
    EXPECT_TRUE(world.Load());
    world.RunFor(3);
    EXPECT_EQ(world.Ends, 1U);
    return world.Values().Media.ProviderName;
}

TEST(StopEffects, TheSourceIsReleasedOnlyWhileMediaDataAreOn) {
    for (const bool switchedOff : {false, true}) {
        WorldOptions options =
            Starting("", {{"MixerOther", "LevelMultiplier", "100"}, {"Other", "LengthOfPause", "500"}});
        options.Radio = NumberedRadio({60});
        World world(std::move(options));
        EXPECT_EQ(SourceAfterAnEndInTheQuestion(world, switchedOff),
                  switchedOff ? NoStationData : ProviderOfRadio);
    }
}

TEST(StopEffects, APageThatIsReleasedTakesItsTitleAlong) {
    WorldOptions options = Starting("");
    options.Radio = NumberedRadio({60});
    options.RestartRadio = [] {};  // so that it plays from a page
    World world(std::move(options));
    ASSERT_TRUE(world.Start());
    world.RunFor(8);
    ASSERT_EQ(world.Values().Media.CurrentMedia.Song, "Song 1");
    world.Recorder->Unload();
    EXPECT_EQ(world.Values().Media.CurrentMedia.Song, "");
}

}  // namespace
}  // namespace Corvetape::Test
