#include "mixer/mod_mixer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mixer/mixer_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Device 0 has a speakers' line with two controls, and a recording line with a selector and two sources.
/// Device 1 is an input with volume and mute.
class MixerTest : public testing::Test, protected MixerRig {
 protected:
    MixerTest() {
        SimDestination speakers;
        speakers.Type = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
        speakers.Line = {"Speakers", 50, {MixerVolume(30000), MixerMute(0)}};
        SimCard card = CardWithSelector("in");
        card.Destinations.insert(card.Destinations.begin(), speakers);
        Cards.Add(card);
        Cards.AddInput("usb", 5000, 1);
    }

    SimLine& Speakers() { return Cards.Cards[0].Destinations[0].Line; }
    SimLine& Recording() { return Cards.Cards[0].Destinations[1].Line; }
    SimLine& Source(size_t index) { return Cards.Cards[0].Destinations[1].Sources[index]; }
    SimLine& Usb() { return Cards.Cards[1].Destinations[0].Line; }

    /// Another state of all controls.
    void ChangeEverything() {
        Speakers().Controls = {MixerVolume(1), MixerMute(1)};
        Recording().Controls = {MixerSelector({11, 12}, 0), MixerMute(0)};
        for (const size_t source : {size_t{0}, size_t{1}}) Source(source).Controls = {MixerVolume(9)};
        Usb().Controls = {MixerVolume(2), MixerMute(0)};
    }

    /// One of the calls for one line, on the recording line.
    std::optional<int32_t> OnRecording(MixerMode mode, uint32_t type, int32_t value = 0) {
        const auto device = Cards.Open(0);
        return Mixers.MixerLineAction(*device, *device->Destination(1), {mode, type, value});
    }

    /// The values of all controls in the order of the walk.
    std::vector<int32_t> Values() {
        std::vector<int32_t> values;
        for (SimCard& card : Cards.Cards) {
            for (SimDestination& destination : card.Destinations) {
                for (const SimControl& each : destination.Line.Controls) Add(values, each);
                for (const SimLine& source : destination.Sources) {
                    for (const SimControl& each : source.Controls) Add(values, each);
                }
            }
        }
        return values;
    }

    static void Add(std::vector<int32_t>& values, const SimControl& control) {
        values.push_back(control.Items.empty() ? control.Value() : control.Chosen());
    }

    const std::vector<int32_t> AtFirst{30000, 0, 1, 1, 1000, 2000, 5000, 1};
    const std::vector<std::string> SavedAtFirst = {"C000000=30000", "C000001=0",      "C000100=1",
                                                   "C000101=1",     "C00010000=1000", "C00010100=2000",
                                                   "C010000=5000",  "C010001=1"};
};

using Snapshot = MixerTest;
using SavedMixer = MixerTest;
using OneLine = MixerTest;
using FailingCards = MixerTest;

TEST(MixerKeyOf, ALineIsMadeOfTwoDigitsEach) {
    EXPECT_EQ(MixerKey({0, 1, std::nullopt}, 3), "C000103");
    EXPECT_EQ(MixerKey({0, 1, 2}, 5), "C00010205");
    EXPECT_EQ(MixerKey({12, 10, 99}, 11), "C12109911");
}

TEST(MixerKeyOf, NumbersFromAHundredOnHaveAllTheirDigits) {
    EXPECT_EQ(MixerKey({0, 0, std::nullopt}, 100), "C0000100");
    EXPECT_EQ(MixerKey({100, 0, std::nullopt}, 0), "C1000000");
}

TEST_F(Snapshot, HoldsEveryControlOfEveryLineOfEveryDeviceUnderItsPlace) {
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::TakeSnapshot));
    EXPECT_THAT(
        Mixers.MixerSnapshot(),
        ElementsAre(Pair("C000000", 30000), Pair("C000001", 0), Pair("C000100", 1), Pair("C00010000", 1000),
                    Pair("C000101", 1), Pair("C00010100", 2000), Pair("C010000", 5000), Pair("C010001", 1)));
    EXPECT_THAT(Cards.Sets, IsEmpty());
    EXPECT_EQ(Cards.Opened, 0U);
    EXPECT_EQ(Cards.Opens, 2U);
}

TEST_F(Snapshot, HoldsTheStateOfItsOwnWalkAlone) {
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    Cards.Cards.pop_back();
    Cards.Cards[0].Destinations.pop_back();
    Speakers().Controls = {MixerVolume(7)};
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::TakeSnapshot));
    EXPECT_THAT(Mixers.MixerSnapshot(), ElementsAre(Pair("C000000", 7)));
}

TEST_F(Snapshot, ComesBackAsItWasTaken) {
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    ChangeEverything();
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Restore));
    EXPECT_EQ(Values(), AtFirst);
}

TEST_F(Snapshot, IsRestoredWithTheDestinationBeforeItsSources) {
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Restore));
    std::vector<std::string> lines;
    for (const SimMixerSet& set : Cards.Sets) lines.push_back(set.Line);
    EXPECT_THAT(lines, ElementsAre("Speakers", "Speakers", "Recording", "Recording", "Microphone", "Line",
                                   "usb", "usb"));
}

TEST_F(Snapshot, AControlThatItDoesNotHoldEndsTheRestoring) {
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    ChangeEverything();
    Speakers().Controls.push_back(MixerOther(4));
    EXPECT_FALSE(Mixers.MixerAction(MixerMode::Restore));
    EXPECT_EQ(Speakers().Controls[0].Value(), 30000);
    EXPECT_EQ(Speakers().Controls[2].Value(), 4);
    EXPECT_EQ(Recording().Controls[0].Chosen(), 0);  // after the one without a value
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(Snapshot, ADeviceThatCameSinceEndsTheRestoringAfterTheOthers) {
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    ChangeEverything();
    Cards.AddInput("new", 77);
    EXPECT_FALSE(Mixers.MixerAction(MixerMode::Restore));
    EXPECT_EQ(Usb().Controls[0].Value(), 5000);
    EXPECT_EQ(Cards.Cards[2].Destinations[0].Line.Controls[0].Value(), 77);
}

TEST_F(Snapshot, ADeviceThatWentSinceIsNotMissed) {
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    ChangeEverything();
    Cards.Cards.pop_back();
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Restore));
    EXPECT_EQ(Speakers().Controls[0].Value(), 30000);
}

TEST_F(Snapshot, WithAllItemsOffTurnsTheLastOneOnWhenItComesBack) {
    Recording().Controls[0] = MixerSelector({11, 12}, 2);
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    EXPECT_EQ(Mixers.MixerSnapshot().at("C000100"), 2);
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Restore));
    EXPECT_EQ(Recording().Controls[0].Chosen(), 1);
}

TEST_F(SavedMixer, StandsInTheSectionInForceAsDecimalNumbers) {
    Media.MixerSectionName = "MixerMy Radio";
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Save));
    EXPECT_EQ(Section("MixerMy Radio"), SavedAtFirst);
    EXPECT_THAT(Section("Mixer"), IsEmpty());
    EXPECT_THAT(Cards.Sets, IsEmpty());
}

TEST_F(SavedMixer, NegativeValuesKeepTheirSign) {
    Usb().Controls = {MixerOther(-300, -1000, 1000)};
    Mixers.MixerAction(MixerMode::Save);
    EXPECT_EQ(Section("Mixer").back(), "C010000=-300");
    Usb().Controls[0].Value() = 0;
    Mixers.MixerAction(MixerMode::Load);
    EXPECT_EQ(Usb().Controls[0].Value(), -300);
}

TEST_F(SavedMixer, IsReplacedAndNotMergedByTheNextSave) {
    Mixers.MixerAction(MixerMode::Save);
    Cards.Cards.pop_back();
    Speakers().Controls[0].Value() = 5;
    Mixers.MixerAction(MixerMode::Save);
    EXPECT_THAT(Section("Mixer"), ElementsAre("C000000=5", "C000001=0", "C000100=1", "C000101=1",
                                              "C00010000=1000", "C00010100=2000"));
    Mixers.MixerAction(MixerMode::Save);
    EXPECT_EQ(Section("Mixer").size(), 6U);
}

TEST_F(SavedMixer, ComesBackFromTheSectionInForce) {
    Media.MixerSectionName = "MixerA";
    Mixers.MixerAction(MixerMode::Save);
    ChangeEverything();
    Media.MixerSectionName = "MixerB";
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Load));
    EXPECT_EQ(Usb().Controls[0].Value(), 2);
    Media.MixerSectionName = "MixerA";
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Load));
    EXPECT_EQ(Values(), AtFirst);
}

TEST_F(SavedMixer, LeavesControlsWithoutAKeyOrAValueAsTheyAre) {
    Write("Mixer", "C000000", "400");
    Write("Mixer", "C000001", "");
    Write("Mixer", "C010000", "loud");
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Load));
    EXPECT_THAT(Cards.Sets,
                ElementsAre(SimMixerSet{"card of in", "Speakers", MIXERCONTROL_CONTROLTYPE_VOLUME, 400}));
}

TEST_F(SavedMixer, NeverLooksAtKeysWithoutAControl) {
    Write("Mixer", "C090909", "1");
    Write("Mixer", "C00000900", "1");
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Load));
    EXPECT_THAT(Cards.Sets, IsEmpty());
}

TEST_F(SavedMixer, AKeyThatNowFitsAnotherControlSetsItWithinItsBounds) {
    Write("Mixer", "C000001", "30000");  // once a volume, now a switch
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Load));
    EXPECT_EQ(Speakers().Controls[1].Value(), 1);
}

TEST_F(SavedMixer, SavingAndForgettingRemoveEverythingElseOfThePlainSection) {
    for (const MixerMode mode : {MixerMode::Save, MixerMode::Forget}) {
        Write("Mixer", "AutoUpdate", "1");
        Write("Mixer", "InputDevice", "2");
        Write("Mixer", "InputDeviceNames", "A;B;");
        Write("Mixer", "SPDIF48kHz", "1");
        Mixers.MixerAction(mode);
        const std::vector<std::string> left =
            mode == MixerMode::Save ? SavedAtFirst : std::vector<std::string>();
        EXPECT_EQ(Section("Mixer"), left);
    }
}

TEST_F(SavedMixer, SavingKeepsTheGainOfTheSource) {
    Media.MixerSectionName = "MixerA";
    Write("MixerA", "LevelMultiplier", "180");
    Mixers.MixerAction(MixerMode::Save);
    std::vector<std::string> expected = SavedAtFirst;
    expected.emplace_back("LevelMultiplier=180");
    EXPECT_EQ(Section("MixerA"), expected);
    Mixers.MixerAction(MixerMode::Save);
    EXPECT_EQ(Section("MixerA"), expected);
}

TEST_F(SavedMixer, ForgettingRemovesTheGainOfTheSourceToo) {
    Media.MixerSectionName = "MixerA";
    Write("MixerA", "LevelMultiplier", "180");
    Write("MixerA", "C000000", "1");
    Write("Mixer", "C000000", "2");
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Forget));
    EXPECT_THAT(Section("MixerA"), IsEmpty());
    EXPECT_THAT(Section("Mixer"), ElementsAre("C000000=2"));
    EXPECT_EQ(Cards.Opens, 0U);
}

TEST_F(SavedMixer, WhatRejectedInputsGetStaysAsTheUserHasSetIt) {
    Write("Mixer", "KeepRejectedInputs", "0");
    Mixers.MixerAction(MixerMode::Forget);
    EXPECT_THAT(Section("Mixer"), ElementsAre("KeepRejectedInputs=0"));
    Mixers.MixerAction(MixerMode::Save);
    EXPECT_EQ(Section("Mixer").back(), "KeepRejectedInputs=0");
}

TEST_F(OneLine, SetsTheFirstControlOfATypeAndEndsThere) {
    Recording().Controls = {MixerOther(0), MixerVolume(1), MixerVolume(2)};
    EXPECT_EQ(OnRecording(MixerMode::SetValue, MIXERCONTROL_CONTROLTYPE_VOLUME, 700), -1);
    EXPECT_EQ(Recording().Controls[0].Value(), 0);
    EXPECT_EQ(Recording().Controls[1].Value(), 700);
    EXPECT_EQ(Recording().Controls[2].Value(), 2);
    EXPECT_EQ(Cards.Sets.size(), 1U);
}

TEST_F(OneLine, SettingGivesTheSameAnswerWhetherOrNotThereIsSuchAControl) {
    EXPECT_EQ(OnRecording(MixerMode::SetValue, MIXERCONTROL_CONTROLTYPE_MUTE, 0), -1);
    EXPECT_EQ(OnRecording(MixerMode::SetValue, MIXERCONTROL_CONTROLTYPE_VOLUME, 0), -1);
    EXPECT_EQ(Cards.Sets.size(), 1U);
}

TEST_F(OneLine, GivesTheValueOfTheFirstControlOfAType) {
    Recording().Controls = {MixerVolume(1), MixerVolume(2), MixerMute(1)};
    EXPECT_EQ(OnRecording(MixerMode::GetValue, MIXERCONTROL_CONTROLTYPE_VOLUME), 1);
    EXPECT_EQ(OnRecording(MixerMode::GetValue, MIXERCONTROL_CONTROLTYPE_MUTE), 1);
    EXPECT_EQ(OnRecording(MixerMode::GetValue, MIXERCONTROL_CONTROLTYPE_ONOFF), -1);
}

TEST_F(OneLine, GivesTheItemOfALineAndTheLineOfAnItem) {
    EXPECT_EQ(OnRecording(MixerMode::GetValue, MIXERCONTROL_CONTROLTYPE_MUX), 1);
    EXPECT_EQ(OnRecording(MixerMode::FindItem, MIXERCONTROL_CONTROLTYPE_MUX, 12), 1);
    EXPECT_EQ(OnRecording(MixerMode::FindItem, MIXERCONTROL_CONTROLTYPE_MUX, 13), -1);
    EXPECT_EQ(OnRecording(MixerMode::GetItem, MIXERCONTROL_CONTROLTYPE_MUX, 0), 11);
    EXPECT_EQ(OnRecording(MixerMode::GetItem, MIXERCONTROL_CONTROLTYPE_MUX, 2), -1);
    EXPECT_EQ(OnRecording(MixerMode::FindItem, MIXERCONTROL_CONTROLTYPE_VOLUME, 12), -1);
}

TEST_F(OneLine, WithoutControlsTheAnswerIsZeroInEveryMode) {
    Recording().Controls.clear();
    for (int16_t mode = 0; mode <= 7; ++mode) {
        EXPECT_EQ(OnRecording(static_cast<MixerMode>(mode), MIXERCONTROL_CONTROLTYPE_MUX), 0) << mode;
    }
}

TEST_F(OneLine, WhoseControlsCannotBeFetchedAnswersZero) {
    Recording().ControlsFail = true;
    for (int16_t mode = 0; mode <= 7; ++mode) {
        EXPECT_EQ(OnRecording(static_cast<MixerMode>(mode), MIXERCONTROL_CONTROLTYPE_MUX), 0) << mode;
    }
}

TEST_F(OneLine, TheModesOfTheWalkAnswerMinusOne) {
    EXPECT_EQ(OnRecording(MixerMode::TakeSnapshot, 0), -1);
    EXPECT_EQ(OnRecording(MixerMode::Restore, 0), -1);
    EXPECT_EQ(OnRecording(MixerMode::Save, 0), -1);
    EXPECT_EQ(OnRecording(MixerMode::Load, 0), -1);
}

TEST_F(OneLine, AnItemWithoutASlotIsAnError) {
    Recording().Controls = {MixerSelector(std::vector<uint32_t>(60), 0)};
    EXPECT_EQ(OnRecording(MixerMode::SetValue, MIXERCONTROL_CONTROLTYPE_MUX, 55), std::nullopt);
}

TEST_F(FailingCards, AnItemWithoutASlotEndsTheWalk) {
    Recording().Controls = {MixerSelector(std::vector<uint32_t>(60), 0)};
    Write("Mixer", "C000000", "5");
    Write("Mixer", "C000100", "55");
    Write("Mixer", "C010000", "6");
    EXPECT_FALSE(Mixers.MixerAction(MixerMode::Load));
    EXPECT_EQ(Speakers().Controls[0].Value(), 5);
    EXPECT_EQ(Usb().Controls[0].Value(), 5000);
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(FailingCards, WithoutLinesAddNothing) {
    Cards.Cards.clear();
    Cards.Add({"empty", "", {}});
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Save));
    EXPECT_THAT(Section("Mixer"), IsEmpty());
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::TakeSnapshot));
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Restore));
    EXPECT_THAT(Mixers.MixerSnapshot(), IsEmpty());
}

TEST_F(FailingCards, AreWalkedPastWhenTheyCannotBeOpened) {
    Cards.Cards[0].Gone = true;
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Save));
    EXPECT_THAT(Section("Mixer"), ElementsAre("C010000=5000", "C010001=1"));
}

TEST_F(FailingCards, ALineWhoseControlsFailIsWalkedPast) {
    Recording().ControlsFail = true;
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Save));
    EXPECT_THAT(Section("Mixer"), ElementsAre("C000000=30000", "C000001=0", "C00010000=1000",
                                              "C00010100=2000", "C010000=5000", "C010001=1"));
}

TEST_F(FailingCards, ADeviceThatVanishesInTheMiddleEndsQuietlyAndTheNextIsServed) {
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    ChangeEverything();
    Cards.BeforeSet = [this](const SimMixerSet& set) {
        if (set.Line == "Recording") Cards.Cards[0].Gone = true;
    };
    EXPECT_TRUE(Mixers.MixerAction(MixerMode::Restore));
    EXPECT_EQ(Speakers().Controls[0].Value(), 30000);
    EXPECT_EQ(Recording().Controls[0].Chosen(), 0);
    EXPECT_EQ(Usb().Controls[0].Value(), 5000);
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(FailingCards, WithoutAMixerNothingIsDoneAndNothingFound) {
    NoMixer none;
    modMixer mixers(none, Store, Media);
    EXPECT_TRUE(mixers.MixerAction(MixerMode::TakeSnapshot));
    EXPECT_TRUE(mixers.MixerAction(MixerMode::Restore));
    EXPECT_TRUE(mixers.MixerAction(MixerMode::Load));
    EXPECT_THAT(mixers.MixerSnapshot(), IsEmpty());
    EXPECT_EQ(mixers.OpenWaveIn("in"), nullptr);
}

TEST_F(FailingCards, ResetPutsTheSnapshotBackAndALaterChangeOfTheSourceAppliesNothing) {
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    ChangeEverything();
    Mixers.MixerAction(MixerMode::Save);
    Mixers.MixerAction(MixerMode::Restore);
    Mixers.MixerAction(MixerMode::Forget);
    EXPECT_EQ(Values(), AtFirst);
    Cards.Sets.clear();
    Mixers.MixerAction(MixerMode::Load);
    EXPECT_THAT(Cards.Sets, IsEmpty());
}

}  // namespace
}  // namespace Corvetape::Test
