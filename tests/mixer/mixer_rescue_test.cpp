#include "mixer/mixer_rescue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mixer/mixer_rig.h"

namespace Corvetape::Test {
namespace {

using testing::IsEmpty;

constexpr const char* Path = "/home/user/.config/before.ini";

class RescueTest : public testing::Test, protected MixerRig {
 protected:
    RescueTest() {
        Cards.AddInput("mic", 1000, 1);
        SimDestination speakers;
        speakers.Type = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
        speakers.Line = {"Speakers", 5, {MixerVolume(500)}};
        Cards.Add({"speakers", "", {speakers}});
        Cards.Add(CardWithSelector("line"));
    }

    SimControl& At(size_t card, size_t control) {
        return Cards.Cards[card].Destinations[0].Line.Controls[control];
    }

    void ChangeEverything() {
        At(0, 0).Value() = 7;
        At(0, 1).Value() = 0;
        At(1, 0).Value() = 8;
        At(2, 0) = MixerSelector({11, 12}, 0);
        for (SimLine& source : Cards.Cards[2].Destinations[0].Sources) source.Controls[0].Value() = 9;
    }

    bool InputsAreAsBefore() {
        const auto& sources = Cards.Cards.back().Destinations[0].Sources;
        return At(0, 0).Value() == 1000 && At(0, 1).Value() == 1 && sources[0].Controls[0].Value() == 1000 &&
               sources[1].Controls[0].Value() == 2000 &&
               Cards.Cards.back().Destinations[0].Line.Controls[0].Chosen() == 1;
    }

    MixerRescue Rescue{Cards, Computer.Files, Path};
    MixerRescue NextRun{Cards, Computer.Files, Path};
};

TEST_F(RescueTest, PutsTheInputsBackAndLeavesTheOutputsAlone) {
    Rescue.Keep();
    ChangeEverything();
    EXPECT_TRUE(Rescue.PutBack());
    EXPECT_TRUE(InputsAreAsBefore());
    EXPECT_EQ(At(1, 0).Value(), 8);
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(RescueTest, TheNextRunPutsBackWhatACrashHasLeft) {
    Rescue.Keep();
    ChangeEverything();
    EXPECT_TRUE(NextRun.PutBack());
    EXPECT_TRUE(InputsAreAsBefore());
    EXPECT_FALSE(Computer.Files.Exists(Path));
    EXPECT_FALSE(NextRun.PutBack());
}

TEST_F(RescueTest, DevicesAreKnownByTheirNamesWhateverTheirNumbers) {
    Rescue.Keep();
    ChangeEverything();
    Cards.Cards.erase(Cards.Cards.begin() + 1);
    std::swap(Cards.Cards[0], Cards.Cards[1]);
    SimCard stranger = Cards.Cards[1];
    stranger.Name = "stranger";
    Cards.Cards.push_front(stranger);
    EXPECT_TRUE(NextRun.PutBack());
    EXPECT_EQ(Cards.Cards[2].Destinations[0].Line.Controls[0].Value(), 1000);
    EXPECT_EQ(Cards.Cards[0].Destinations[0].Line.Controls[0].Value(), 7);
}

TEST_F(RescueTest, NothingIsPutBackAfterASearchThatHasEnded) {
    Rescue.Keep();
    ChangeEverything();
    Rescue.Forget();
    EXPECT_FALSE(Computer.Files.Exists(Path));
    EXPECT_FALSE(Rescue.PutBack());
    EXPECT_FALSE(NextRun.PutBack());
    EXPECT_EQ(At(0, 0).Value(), 7);
}

TEST_F(RescueTest, WithoutAnythingKeptNothingIsDone) {
    EXPECT_FALSE(Rescue.PutBack());
    EXPECT_THAT(Cards.Sets, IsEmpty());
}

TEST_F(RescueTest, WithoutAMixerTheFileWaitsForARunThatHasOne) {
    Rescue.Keep();
    ChangeEverything();
    NoMixer none;
    EXPECT_FALSE(MixerRescue(none, Computer.Files, Path).PutBack());
    EXPECT_TRUE(NextRun.PutBack());
    EXPECT_TRUE(InputsAreAsBefore());
}

TEST_F(RescueTest, WhatHasNotChangedIsNotSet) {
    Rescue.Keep();
    At(0, 0).Value() = 7;
    EXPECT_TRUE(Rescue.PutBack());
    EXPECT_EQ(Cards.Sets.size(), 1U);
}

TEST_F(RescueTest, ASelectorComesBackBeforeTheVolumes) {
    SimDestination port;
    port.Line = {"Built-in", 3, {MixerVolume(100), MixerSelector({0, 1}, 0)}};
    Cards.Cards = {{"built-in", "built-in", {port}}};
    Rescue.Keep();
    At(0, 0).Value() = 1;
    At(0, 1) = MixerSelector({0, 1}, 1);
    Rescue.PutBack();
    ASSERT_EQ(Cards.Sets.size(), 2U);
    EXPECT_EQ(Cards.Sets[0].ControlType, MIXERCONTROL_CONTROLTYPE_MUX);
    EXPECT_EQ(Cards.Sets[1].ControlType, MIXERCONTROL_CONTROLTYPE_VOLUME);
}

TEST_F(RescueTest, ARunWithoutADiskStillPutsItsOwnSearchBack) {
    MixerRescue rescue(Cards, Computer.Files, "/no/such/folder/before.ini");
    rescue.Keep();
    ChangeEverything();
    EXPECT_TRUE(rescue.PutBack());
    EXPECT_TRUE(InputsAreAsBefore());
}

TEST_F(RescueTest, ASearchPutsBackFirstWhatAnEarlierRunHasLeft) {
    Rescue.Keep();
    ChangeEverything();
    NextRun.Keep();  // its start has found no sound server
    EXPECT_TRUE(InputsAreAsBefore());
    ChangeEverything();
    EXPECT_TRUE(NextRun.PutBack());
    EXPECT_TRUE(InputsAreAsBefore());
}

TEST_F(RescueTest, ASearchWithoutAMixerLeavesTheFileOfAnEarlierRun) {
    Rescue.Keep();
    ChangeEverything();
    NoMixer none;
    MixerRescue without(none, Computer.Files, Path);
    without.Keep();
    without.Forget();
    EXPECT_TRUE(NextRun.PutBack());
    EXPECT_TRUE(InputsAreAsBefore());
}

TEST_F(RescueTest, DevicesOfAnyNameComeBack) {
    Cards.Cards.clear();
    const std::vector<std::string> names = {"mic",          "Mic",    "a]b ; c", "[\"q\"]", " blank ",
                                            "two\r\nlines", "100 %1", "A=B",     ";x",      "\xC3\xA4\xFF"};
    for (size_t i = 0; i < names.size(); ++i) Cards.AddInput(names[i], 100 + static_cast<int32_t>(i));
    Rescue.Keep();
    for (size_t i = 0; i < names.size(); ++i) At(i, 0).Value() = 7;
    EXPECT_TRUE(NextRun.PutBack());
    for (size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(At(i, 0).Value(), 100 + static_cast<int32_t>(i)) << names[i];
    }
}

TEST_F(RescueTest, OfADamagedFileWhatMakesSenseIsPutBack) {
    Rescue.Keep();
    ChangeEverything();
    std::string text = *Computer.Files.Content(Path);
    text.insert(0, std::string("\0\xFF[[[\n=5\nC000000\n[mic\n[nobody]\nC000000=1\n", 41));
    text += "\n[mic]\nC000000=99999999999\nC000099=5\nC000001=-1e400\n[line]\nC000000=55";
    Computer.Files.Put(Path, text);
    EXPECT_TRUE(NextRun.PutBack());
    EXPECT_TRUE(InputsAreAsBefore());
    EXPECT_FALSE(Computer.Files.Exists(Path));
    Computer.Files.Put(Path, std::string("\0\x01\x02 nothing", 11));
    EXPECT_FALSE(NextRun.PutBack());
}

TEST_F(RescueTest, AValueOutOfRangeIsBroughtWithinIt) {
    Computer.Files.Put(Path, "[mic]\nC000000=2000000000\nC000001=-4\n[line]\nC000000=77\n");
    EXPECT_TRUE(NextRun.PutBack());
    EXPECT_EQ(At(0, 0).Value(), 65535);
    EXPECT_EQ(At(0, 1).Value(), 0);
}

}  // namespace
}  // namespace Corvetape::Test
