#include "mixer/auto_gain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mixer/search_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr SystemVersion OlderStack{2, 5, 1, 0};
constexpr SystemVersion NewerStack{2, 6, 0, 0};

LevelHistory HistoryOf(const std::vector<int32_t>& newest) {
    LevelHistory history;
    for (size_t i = newest.size(); i < LevelHistory::Capacity; ++i) history.Append(1);
    for (const int32_t level : newest) history.Append(level);
    return history;
}

TEST(PeakOfLastLevels, LooksAtOneEntryMoreThanItIsAskedFor) {
    std::vector<int32_t> levels(62, 5);
    levels[1] = 700;  // entry 140 of 200
    EXPECT_EQ(PeakOfLastLevels(HistoryOf(levels), 60), 700);
    levels[1] = 5;
    levels[0] = 700;  // entry 139
    EXPECT_EQ(PeakOfLastLevels(HistoryOf(levels), 60), 5);
    std::vector<int32_t> shorter(42, 5);
    shorter[1] = 700;  // entry 160
    EXPECT_EQ(PeakOfLastLevels(HistoryOf(shorter), 40), 700);
    std::swap(shorter[0], shorter[1]);
    EXPECT_EQ(PeakOfLastLevels(HistoryOf(shorter), 40), 5);
}

TEST(PeakOfLastLevels, TheNewestEntryCounts) {
    EXPECT_EQ(PeakOfLastLevels(HistoryOf({5, 900}), 40), 900);
}

TEST(PeakOfLastLevels, TakesMagnitudesAndPassesEndsOfSongsOver) {
    EXPECT_EQ(PeakOfLastLevels(HistoryOf({-300, 200, -1}), 2), 300);
    EXPECT_EQ(PeakOfLastLevels(HistoryOf({-1, -2, -1}), 2), 2);
    EXPECT_EQ(PeakOfLastLevels(HistoryOf({-1, -1, -1}), 2), 0);
}

TEST(PeakOfLastLevels, AShortOrEmptyHistoryIsLookedAtWhole) {
    LevelHistory history;
    EXPECT_EQ(PeakOfLastLevels(history, 60), 0);
    history.Append(9);
    EXPECT_EQ(PeakOfLastLevels(history, 60), 9);
    EXPECT_EQ(PeakOfLastLevels(history, 1), 9);
}

/// A gain search on a card with a selector, or on an input of its own.
class GainTest : public testing::Test, protected SearchRig {
 protected:
    AutoGain Make(const SystemVersion& version) {
        return AutoGain({Mixers, Inputs, Pause, Signal, Wait}, version);
    }

    /// An input that is open and has played for ten seconds.
    SimCard& Playing(double level, int32_t volume = 65535) {
        SimCard& card = AddInput("A", level, volume);
        EXPECT_TRUE(Inputs.FillInputDevices());
        RunFor(10.5);
        return card;
    }

    bool FindOnDevice() { return Make(NewerStack).AutoGainLine(); }

    std::vector<int32_t> Volumes() const {
        std::vector<int32_t> volumes;
        for (const SimMixerSet& set : Cards.Sets) {
            if (set.ControlType == MIXERCONTROL_CONTROLTYPE_VOLUME) volumes.push_back(set.Value);
        }
        return volumes;
    }

    double SecondsOf(const std::function<void()>& work) {
        const int64_t begun = Computer.Clock.MonotonicNanoseconds();
        work();
        return static_cast<double>(Computer.Clock.MonotonicNanoseconds() - begun) / 1e9;
    }
};

using WeakSignal = GainTest;
using StrongSignal = GainTest;
using GainOfALine = GainTest;
using GainOfADevice = GainTest;

struct Weak {
    double Level = 0;
    int32_t Gain = 0;
    bool Reached = false;
};

TEST_F(WeakSignal, IsRaisedTo90PercentOfFullScale) {
    double level = 0;
    Cards.AddInput("A");
    AddSound("A", [&level] { return level; });
    ASSERT_TRUE(Inputs.FillInputDevices());
    RunFor(10.5);
    const Weak cases[] = {{16384, 180, true},  {29491, 100, true},  {20000, 147, true},  {3000, 983, true},
                          {2950, 1000, false}, {2949, 1000, false}, {2000, 1000, false}, {1, 1000, false}};
    for (const Weak& each : cases) {
        level = each.Level;
        EXPECT_EQ(FindOnDevice(), each.Reached) << each.Level;
        EXPECT_EQ(Pause.LevelMultiplier, each.Gain) << each.Level;
    }
}

TEST_F(WeakSignal, GainsAreRoundedToTheNearestWithHalvesToEven) {
    // 90 * 32768 / 18432 = 160 and / 18874 = 156.25; half a per cent is at 90 * 32768 / P = n + 0.5.
    double level = 0;
    Cards.AddInput("A");
    AddSound("A", [&level] { return level; });
    ASSERT_TRUE(Inputs.FillInputDevices());
    RunFor(10.5);
    const std::pair<double, int32_t> cases[] = {{8192, 360},  {4096, 720},  {16364, 180},
                                                {18874, 156}, {17873, 165}, {23592, 125}};
    for (const auto& [signal, gain] : cases) {
        level = signal;
        FindOnDevice();
        EXPECT_EQ(Pause.LevelMultiplier, gain) << signal;
    }
}

TEST_F(WeakSignal, StaysAtFullVolumeAndTakesTheTimeOfOneMeasurement) {
    const SimCard& card = Playing(10000, 300);
    Pause.LevelMultiplier = 500;
    const double seconds = SecondsOf([this] { EXPECT_TRUE(FindOnDevice()); });
    EXPECT_NEAR(seconds, 3.3, 0.1);
    EXPECT_EQ(card.Destinations[0].Line.Controls[0].Value(), 65535);
    EXPECT_THAT(Volumes(), ElementsAreArray({65535}));
    EXPECT_EQ(Pause.LevelMultiplier, 295);
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(WeakSignal, SilenceIsNoLevelAndLeavesTheGainAt100) {
    Playing(0);
    Pause.LevelMultiplier = 500;
    EXPECT_FALSE(FindOnDevice());
    EXPECT_EQ(Pause.LevelMultiplier, 100);
}

TEST_F(StrongSignal, OfExactly29492IsHalvedAndOneLessIsNot) {
    double level = 29491;
    Cards.AddInput("A");
    AddSound("A", [&level] { return level; });
    ASSERT_TRUE(Inputs.FillInputDevices());
    RunFor(10.5);
    FindOnDevice();
    EXPECT_EQ(Volumes().size(), 1U);
    level = 29492;
    FindOnDevice();
    EXPECT_EQ(Volumes().size(), 12U);
    EXPECT_EQ(Volumes().back(), 73);  // and turned down at each step
}

TEST_F(StrongSignal, StepsAreHalvedTenTimesFromFullVolume) {
    Cards.AddInput("A");
    AddSound("A", [] { return 32000.0; });  // whatever the volume is
    ASSERT_TRUE(Inputs.FillInputDevices());
    RunFor(10.5);
    const double seconds = SecondsOf([this] { EXPECT_FALSE(FindOnDevice()); });
    EXPECT_NEAR(seconds, 25.3, 0.3);
    std::vector<int32_t> expected = {65535};
    for (const int32_t step : {32767, 16383, 8191, 4095, 2047, 1023, 511, 255, 127, 63}) {
        expected.push_back(expected.back() - step);
    }
    EXPECT_THAT(Volumes(), ElementsAreArray(expected));
    EXPECT_EQ(Pause.LevelMultiplier, 100);
}

TEST_F(StrongSignal, EndsJustBelow90PercentAtTheRightVolume) {
    SimCard& card = Playing(60000);  // 29492 at a volume of 32213
    EXPECT_TRUE(FindOnDevice());
    EXPECT_NEAR(VolumeOf(card), 32213, 64);
    EXPECT_EQ(Pause.LevelMultiplier, 100);
    for (const int32_t volume : Volumes()) EXPECT_GE(volume, 0);
}

TEST_F(StrongSignal, ThatEndsBelow95PercentIsGoodThoughItIsAbove90) {
    for (const auto& [level, reached] : {std::pair(31129.0, true), std::pair(31130.0, false)}) {
        Cards.Cards.clear();
        Cards.AddInput("A");
        AddSound("A" + std::to_string(static_cast<int>(level)), [level = level] { return level; });
        Cards.Cards[0].WaveInId = Computer.WaveIn.Devices().back().Id;
        Options.InputDevice = static_cast<int32_t>(Computer.WaveIn.Devices().size()) - 1;
        ASSERT_TRUE(Inputs.FillInputDevices());
        RunFor(10.5);
        EXPECT_EQ(FindOnDevice(), reached) << level;
    }
}

TEST_F(GainOfADevice, WaitsUntilTheHistoryIsFull) {
    AddInput("A", 10000);
    ASSERT_TRUE(Inputs.FillInputDevices());
    const double seconds = SecondsOf([this] { EXPECT_TRUE(FindOnDevice()); });
    EXPECT_NEAR(seconds, 10 + 3.3, 0.3);
}

TEST_F(GainOfADevice, GivesUpWhenNothingComesForTenSeconds) {
    AddInput("A", 10000);
    ASSERT_TRUE(Inputs.FillInputDevices());
    Computer.WaveIn.Vanish("A");
    Pause.LevelMultiplier = 200;
    const double seconds = SecondsOf([this] { EXPECT_FALSE(FindOnDevice()); });
    EXPECT_NEAR(seconds, 10, 1.5);
    EXPECT_EQ(Pause.LevelMultiplier, 200);
}

TEST_F(GainOfADevice, GivesUpWhenSoundEndsBeforeTheHistoryIsFull) {
    AddInput("A", 10000);
    ASSERT_TRUE(Inputs.FillInputDevices());
    const auto goes = Computer.Loop.NewTimer([this] { Computer.WaveIn.Vanish("A"); });
    goes->Start(std::chrono::seconds(3), TimerPrecision::Coarse);
    const double seconds = SecondsOf([this] { EXPECT_FALSE(FindOnDevice()); });
    EXPECT_NEAR(seconds, 3 + 10, 1.5);
}

TEST_F(GainOfADevice, GivesUpWhenTheProgramEndsWhileItWaitsForTheHistory) {
    AddInput("A", 10000);
    ASSERT_TRUE(Inputs.FillInputDevices());
    const auto ends = Computer.Loop.NewTimer([this] { Wait.End(); });
    ends->Start(std::chrono::seconds(4), TimerPrecision::Coarse);
    const double seconds = SecondsOf([this] { EXPECT_FALSE(FindOnDevice()); });
    EXPECT_NEAR(seconds, 4, 0.2);
    EXPECT_THAT(Cards.Sets, IsEmpty());
}

TEST_F(GainOfADevice, ThatVanishesWhileItIsHeardReachesNoLevel) {
    Playing(10000);
    Cards.BeforeSet = [this](const SimMixerSet&) { Computer.WaveIn.Vanish("A"); };
    EXPECT_FALSE(FindOnDevice());
}

TEST_F(GainOfADevice, WithoutALineOrAVolumeLeavesTheGainAlone) {
    SimCard& card = Playing(10000);
    Pause.LevelMultiplier = 200;
    card.Destinations[0].Line.Controls = {MixerMute(0)};
    EXPECT_FALSE(FindOnDevice());
    card.Destinations[0].Type = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
    EXPECT_FALSE(FindOnDevice());
    card.Gone = true;
    EXPECT_FALSE(FindOnDevice());
    EXPECT_EQ(Pause.LevelMultiplier, 200);
    EXPECT_THAT(Cards.Sets, IsEmpty());
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(GainOfADevice, SetsTheFirstRecordingLineAlone) {
    SimCard& card = Playing(10000);
    SimDestination second;
    second.Line = {"second", 77, {MixerVolume(5)}};
    card.Destinations.push_back(second);
    EXPECT_TRUE(FindOnDevice());
    EXPECT_EQ(card.Destinations[1].Line.Controls[0].Value(), 5);
}

TEST_F(GainOfADevice, MeasuresWithoutTheGainOfASourceThatComesMeanwhile) {
    Playing(60000);
    size_t sets = 0;
    Cards.BeforeSet = [&](const SimMixerSet&) {
        if (++sets == 3) Pause.LevelMultiplier = 300;
    };
    EXPECT_TRUE(FindOnDevice());
    EXPECT_EQ(Pause.LevelMultiplier, 100);
}

TEST_F(GainOfADevice, GivesUpWhenTheProgramEnds) {
    Playing(60000);
    const auto ends = Computer.Loop.NewTimer([this] { Wait.End(); });
    ends->Start(std::chrono::seconds(5), TimerPrecision::Coarse);
    const double seconds = SecondsOf([this] { EXPECT_FALSE(FindOnDevice()); });
    EXPECT_NEAR(seconds, 5, 0.1);
}

/// A card whose selector has chosen the second of its lines.
class SelectedLine : public GainOfALine {
 protected:
    SelectedLine() {
        Card = &Cards.Add(CardWithSelector("A"));
        AddSound("A", [this] { return 20000.0 * SecondLine().Value() / 65535.0; });
        EXPECT_TRUE(Inputs.FillInputDevices());
        RunFor(10.5);
    }

    SimControl& SecondLine() { return Card->Destinations[0].Sources[1].Controls[0]; }
    SimLine& Recording() { return Card->Destinations[0].Line; }
    bool Find() { return Make(OlderStack).AutoGainLine(); }

    SimCard* Card = nullptr;
};

TEST_F(SelectedLine, HasItsVolumeSet) {
    EXPECT_TRUE(Find());
    EXPECT_EQ(SecondLine().Value(), 65535);
    EXPECT_EQ(Card->Destinations[0].Sources[0].Controls[0].Value(), 1000);
    EXPECT_EQ(Pause.LevelMultiplier, 147);
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(SelectedLine, IsSetAsTheFirstOneToo) {
    Recording().Controls[0] = MixerSelector({11, 12}, 0);
    SecondLine().Value() = 65535;  // which is what gives the sound
    EXPECT_TRUE(Find());
    EXPECT_EQ(Card->Destinations[0].Sources[0].Controls[0].Value(), 65535);
}

TEST_F(SelectedLine, WaitsUntilTheHistoryIsFull) {
    Inputs.CloseDevice();
    Signal.History = LevelHistory();
    EXPECT_FALSE(Find());
    EXPECT_THAT(Cards.Sets, IsEmpty());
}

TEST_F(SelectedLine, IsTurnedDownWhereItIsTooStrong) {
    Card->Destinations[0].Sources[1].Controls = {MixerVolume(65535)};
    AddSound("B", [this] { return 60000.0 * SecondLine().Value() / 65535.0; });
    Card->WaveInId = "B";
    Options.InputDevice = 1;
    ASSERT_TRUE(Inputs.FillInputDevices());
    RunFor(1);
    EXPECT_TRUE(Find());
    EXPECT_NEAR(SecondLine().Value(), 32213, 64);
}

TEST_F(SelectedLine, WithoutASelectorIsNotFound) {
    Pause.LevelMultiplier = 200;
    Recording().Controls = {MixerMute(0)};
    EXPECT_FALSE(Find());
    Recording().Controls = {MixerSelector({77, 78}, 0)};  // of lines that are not there
    EXPECT_FALSE(Find());
    Recording().Controls = {MixerSelector({11, 12}, 2)};  // with all items off
    EXPECT_FALSE(Find());
    Card->Destinations.clear();
    EXPECT_FALSE(Find());
    Cards.Cards.clear();
    EXPECT_FALSE(Find());
    EXPECT_EQ(Pause.LevelMultiplier, 200);
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(SelectedLine, OnTheNewerStackTheRecordingLineIsSetInstead) {
    EXPECT_FALSE(Make(NewerStack).AutoGainLine());  // it has no volume
    Recording().Controls.push_back(MixerVolume(9));
    SecondLine().Value() = 65535;
    EXPECT_TRUE(Make(NewerStack).AutoGainLine());
    EXPECT_EQ(Recording().Of(MIXERCONTROL_CONTROLTYPE_VOLUME).Value(), 65535);
}

}  // namespace
}  // namespace Corvetape::Test
