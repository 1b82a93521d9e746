#include "mixer/mixer_of_source.h"

#include <gtest/gtest.h>

#include "mixer/mixer_rig.h"

namespace Corvetape::Test {
namespace {

class MixerOfSourceTest : public testing::Test, protected MixerRig {
 protected:
    MixerOfSourceTest() {
        Cards.AddInput("in", 5);
        Write("MixerA", "C000000", "100");
        Write("MixerB", "C000000", "200");
        Options.AutoUpdate = true;
        Media.MixerSectionName = "MixerA";
    }

    int32_t& Volume() { return Cards.Cards[0].Destinations[0].Line.Controls[0].Value(); }

    Settings Options;
    MixerOfSource Kept{Mixers, Options, Media};
};

TEST_F(MixerOfSourceTest, IsSetWhenTheSourceChanges) {
    Kept.UpdateMixer();
    EXPECT_EQ(Volume(), 100);
    Media.MixerSectionName = "MixerB";
    Kept.UpdateMixer();
    EXPECT_EQ(Volume(), 200);
    Media.MixerSectionName = "MixerA";
    Kept.UpdateMixer();
    EXPECT_EQ(Volume(), 100);
}

TEST_F(MixerOfSourceTest, DoesNotMoveAVolumeBackWhileTheSourceStaysTheSame) {
    Kept.UpdateMixer();
    Volume() = 7;
    Kept.UpdateMixer();
    EXPECT_EQ(Volume(), 7);
}

TEST_F(MixerOfSourceTest, IsLeftAloneUnlessTheUserWantsIt) {
    Options.AutoUpdate = false;
    Kept.UpdateMixer();
    EXPECT_EQ(Volume(), 5);
    EXPECT_EQ(Cards.Opens, 0U);
    Options.AutoUpdate = true;
    Kept.UpdateMixer();
    EXPECT_EQ(Volume(), 100);
}

TEST_F(MixerOfSourceTest, IsSetAgainAfterTheUserDidNotWantItForAWhile) {
    Kept.UpdateMixer();
    Volume() = 7;
    Options.AutoUpdate = false;
    Kept.UpdateMixer();
    Options.AutoUpdate = true;
    Kept.UpdateMixer();
    EXPECT_EQ(Volume(), 100);
}

TEST_F(MixerOfSourceTest, IsAppliedAndStoredOnDemandWhateverTheUserWantsAtChanges) {
    Options.AutoUpdate = false;
    Kept.ApplyMixer();
    EXPECT_EQ(Volume(), 100);
    Media.MixerSectionName = "MixerC";
    Kept.StoreMixer();
    EXPECT_EQ(Section("MixerC"), (std::vector<std::string>{"C000000=100", "C000001=0"}));
}

}  // namespace
}  // namespace Corvetape::Test
