#include "mixer/mixer_line.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>

#include "mixer/mixer_rig.h"

namespace Corvetape::Test {
namespace {

/// One line of one card with one control, opened.
class OneControl : public testing::Test {
 protected:
    SimControl& Make(const SimControl& control) {
        SimDestination destination;
        destination.Line = {"Recording", 100, {control}};
        Cards.Add({"card", "in", {destination}});
        Device = Cards.Open(0);
        Control = Device->Controls(*Device->Destination(0))->front();
        return Cards.Cards.front().Destinations.front().Line.Controls.front();
    }

    /// A selector of so many lines with the ids 1000, 1001, ...
    SimControl& MakeSelector(size_t items, size_t chosen) {
        std::vector<uint32_t> ids(items);
        std::iota(ids.begin(), ids.end(), 1000U);
        return Make(MixerSelector(ids, chosen));
    }

    SimMixer Cards;
    std::unique_ptr<MixerDevice> Device;
    MIXERCONTROL Control;
};

using SetAControl = OneControl;
using GetAControl = OneControl;
using ItemsOfAControl = OneControl;

TEST_F(SetAControl, TakesTheValueAsItIsWithinItsBounds) {
    const SimControl& control = Make(MixerVolume(0));
    EXPECT_TRUE(SetMixerControl(*Device, Control, 32768));
    EXPECT_EQ(control.Value(), 32768);
}

TEST_F(SetAControl, PullsAValueToTheEdgeInsteadOfRefusingIt) {
    const SimControl& control = Make(MixerOther(0, -10, 20));
    EXPECT_TRUE(SetMixerControl(*Device, Control, 21));
    EXPECT_EQ(control.Value(), 20);
    EXPECT_TRUE(SetMixerControl(*Device, Control, std::numeric_limits<int32_t>::max()));
    EXPECT_EQ(control.Value(), 20);
    EXPECT_TRUE(SetMixerControl(*Device, Control, -11));
    EXPECT_EQ(control.Value(), -10);
    EXPECT_TRUE(SetMixerControl(*Device, Control, std::numeric_limits<int32_t>::min()));
    EXPECT_EQ(control.Value(), -10);
}

TEST_F(SetAControl, WhoseBoundsAreCrossedTakesTheLowerOne) {
    const SimControl& control = Make(MixerOther(0, 5, 3));
    EXPECT_TRUE(SetMixerControl(*Device, Control, 4));
    EXPECT_EQ(control.Value(), 5);
}

TEST_F(SetAControl, OfSeveralItemsSwitchesOneOnAndAllOthersOff) {
    const SimControl& control = MakeSelector(4, 0);
    EXPECT_TRUE(SetMixerControl(*Device, Control, 2));
    EXPECT_EQ(control.Slots, (std::vector<int32_t>{0, 0, 1, 0}));
}

TEST_F(SetAControl, OfSeveralItemsPullsAnIndexToTheLastItem) {
    const SimControl& control = MakeSelector(4, 0);
    EXPECT_TRUE(SetMixerControl(*Device, Control, 17));
    EXPECT_EQ(control.Chosen(), 3);
}

TEST_F(SetAControl, ServesTheItemOfTheLastOf51Slots) {
    const SimControl& control = MakeSelector(60, 0);
    EXPECT_TRUE(SetMixerControl(*Device, Control, 50));
    EXPECT_EQ(control.Chosen(), 50);
}

TEST_F(SetAControl, RefusesAnItemBeyondTheLastSlot) {
    const SimControl& control = MakeSelector(60, 3);
    EXPECT_FALSE(SetMixerControl(*Device, Control, 51));
    EXPECT_FALSE(SetMixerControl(*Device, Control, 100));  // pulled to 59
    EXPECT_EQ(control.Chosen(), 3);
    EXPECT_TRUE(Cards.Sets.empty());
}

TEST_F(SetAControl, OfADeviceThatIsGoneIsNoError) {
    Make(MixerVolume(7));
    Cards.Cards.front().Gone = true;
    EXPECT_TRUE(SetMixerControl(*Device, Control, 9));
    EXPECT_EQ(Cards.Cards.front().Destinations.front().Line.Controls.front().Value(), 7);
}

TEST_F(GetAControl, GivesTheValueOfASimpleOne) {
    Make(MixerOther(-5, -10, 20));
    EXPECT_EQ(GetMixerControl(*Device, Control), -5);
}

TEST_F(GetAControl, GivesTheIndexOfTheItemThatIsOn) {
    MakeSelector(4, 2);
    EXPECT_EQ(GetMixerControl(*Device, Control), 2);
}

TEST_F(GetAControl, OfSeveralItemsThatAreOnGivesTheFirst) {
    SimControl& control = MakeSelector(4, 3);
    control.Slots[1] = 1;
    EXPECT_EQ(GetMixerControl(*Device, Control), 1);
}

TEST_F(GetAControl, WithAllItemsOffGivesTheirNumber) {
    MakeSelector(4, 4);
    EXPECT_EQ(GetMixerControl(*Device, Control), 4);
}

TEST_F(GetAControl, WritingTheNumberOfItemsBackSwitchesTheLastOneOn) {
    const SimControl& control = MakeSelector(4, 4);
    EXPECT_TRUE(SetMixerControl(*Device, Control, GetMixerControl(*Device, Control)));
    EXPECT_EQ(control.Chosen(), 3);
}

TEST_F(GetAControl, DoesNotSeeAnItemBeyondTheLastSlot) {
    MakeSelector(60, 50);
    EXPECT_EQ(GetMixerControl(*Device, Control), 50);
    Cards.Cards.front().Destinations.front().Line.Controls = {MixerSelector(std::vector<uint32_t>(60), 51)};
    EXPECT_EQ(GetMixerControl(*Device, Control), 60);
}

TEST_F(GetAControl, OfADeviceThatIsGoneGivesZero) {
    Make(MixerVolume(7));
    Cards.Cards.front().Gone = true;
    EXPECT_EQ(GetMixerControl(*Device, Control), 0);
}

TEST_F(ItemsOfAControl, AreFoundByTheLineThatTheyStandFor) {
    MakeSelector(4, 0);
    EXPECT_EQ(FindListItem(*Device, Control, 1000), 0);
    EXPECT_EQ(FindListItem(*Device, Control, 1003), 3);
    EXPECT_EQ(FindListItem(*Device, Control, 1004), -1);
}

TEST_F(ItemsOfAControl, AreFoundByTheFirstOfEqualLines) {
    Make(MixerSelector({7, 8, 8}));
    EXPECT_EQ(FindListItem(*Device, Control, 8), 1);
}

TEST_F(ItemsOfAControl, OfALineWhoseIdHasTheTopBitAreFoundToo) {
    Make(MixerSelector({1, 0xFFFF0000}));
    EXPECT_EQ(FindListItem(*Device, Control, GetListItem(*Device, Control, 1)), 1);
}

TEST_F(ItemsOfAControl, GiveTheLineOfAnIndex) {
    MakeSelector(60, 0);
    EXPECT_EQ(GetListItem(*Device, Control, 0), 1000);
    EXPECT_EQ(GetListItem(*Device, Control, 59), 1059);
    EXPECT_EQ(GetListItem(*Device, Control, 60), -1);
    EXPECT_EQ(GetListItem(*Device, Control, -1), -1);
}

TEST_F(ItemsOfAControl, ThatHasNoneOrIsGoneAreNotFound) {
    Make(MixerVolume(1));
    EXPECT_EQ(FindListItem(*Device, Control, 1000), -1);
    EXPECT_EQ(GetListItem(*Device, Control, 0), -1);
    Cards.Cards.front().Destinations.front().Line.Controls = {MixerSelector({1000})};
    ASSERT_EQ(FindListItem(*Device, Control, 1000), 0);
    Cards.Cards.front().Gone = true;
    EXPECT_EQ(FindListItem(*Device, Control, 1000), -1);
    EXPECT_EQ(GetListItem(*Device, Control, 0), -1);
}

TEST(WaveInLine, IsTheFirstDestinationThatFeedsWaveIn) {
    SimMixer cards;
    SimDestination speakers;
    speakers.Type = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
    speakers.Line.Name = "Speakers";
    SimDestination first;
    first.Line.Name = "First";
    SimDestination second;
    second.Line.Name = "Second";
    cards.Add({"card", "in", {speakers, first, second}});
    cards.Add({"card without", "", {speakers}});
    EXPECT_EQ(FindWaveInLine(*cards.Open(0))->szName, "First");
    EXPECT_FALSE(FindWaveInLine(*cards.Open(1)));
}

}  // namespace
}  // namespace Corvetape::Test
