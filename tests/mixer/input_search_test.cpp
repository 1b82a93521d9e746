#include "mixer/input_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mixer/search_test.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr uint32_t Mux = MIXERCONTROL_CONTROLTYPE_MUX;
constexpr uint32_t Mute = MIXERCONTROL_CONTROLTYPE_MUTE;
constexpr uint32_t OnOff = MIXERCONTROL_CONTROLTYPE_ONOFF;
constexpr uint32_t Volume = MIXERCONTROL_CONTROLTYPE_VOLUME;

/// One card whose selector chooses among lines, of which some carry sound.
class LineSearch : public SearchTest {
 protected:
    LineSearch() {
        SimDestination recording;
        recording.Line = {"Recording", 100, {MixerMute(1), MixerSwitch(1), MixerSelector({12, 13, 14}, 2)}};
        recording.Sources = {{"CD", 11, {MixerVolume(100)}},
                             {"Line", 12, {MixerVolume(200)}},
                             {"Mic", 13, {MixerVolume(300)}},
                             {"Mix", 14, {MixerVolume(400)}}};
        Card = &Cards.Add({"card", "card", {recording}});
        AddSound("card", [this] { return Heard(); });
    }

    /// What the selected line gives: its level, at its volume, unless the recording line is muted.
    double Heard() {
        if (Value(Mute) != 0) return 0;
        const auto chosen = static_cast<size_t>(Recording().Of(Mux).Chosen());
        SimLine& line = Card->Destinations[0].Sources[chosen + 1];
        return Levels[line.Name] * line.Of(Volume).Value() / 65535.0;
    }

    SimLine& Recording() { return Card->Destinations[0].Line; }
    int32_t Value(uint32_t type) { return Recording().Of(type).Value(); }
    std::vector<int32_t> Volumes() {
        std::vector<int32_t> volumes;
        for (SimLine& source : Card->Destinations[0].Sources) volumes.push_back(source.Of(Volume).Value());
        return volumes;
    }

    std::string Run() {
        EXPECT_TRUE(Inputs.FillInputDevices());
        return Search.SearchInputLine();
    }

    SimCard* Card = nullptr;
    std::map<std::string, double> Levels;
};

using Listening = DeviceSearch;

TEST_F(LineSearch, OffersTheFirstLineWithSoundAndLeavesItSelectedAtFullVolume) {
    Levels = {{"Mic", 5000}, {"Mix", 5000}};
    Answers = {true};
    EXPECT_EQ(Run(), "Mic");
    EXPECT_THAT(Questions(), ElementsAre("is it Mic?"));
    EXPECT_EQ(Computer.Dialogs.Boxes[0].Kind, BoxKind::YesNo);
    EXPECT_EQ(Computer.Dialogs.Boxes[0].Icon, DialogIcon::Information);
    EXPECT_EQ(Recording().Of(Mux).Chosen(), 1);
    EXPECT_EQ(Volumes()[2], 65535);
    EXPECT_EQ(Value(Mute), 0);
    EXPECT_EQ(Value(OnOff), 0);
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(LineSearch, SkipsALineThatTheSelectorDoesNotList) {
    Levels = {{"CD", 30000}};
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Volumes()[0], 100);
    for (const SimMixerSet& set : Cards.Sets) EXPECT_NE(set.Line, "CD");
}

TEST_F(LineSearch, SetsTheVolumeOfALineBeforeItSelectsIt) {
    Run();
    ASSERT_GE(Cards.Sets.size(), 4U);
    EXPECT_EQ(Cards.Sets[2], (SimMixerSet{"card", "Line", Volume, 65535}));
    EXPECT_EQ(Cards.Sets[3], (SimMixerSet{"card", "Recording", Mux, 0}));
}

TEST_F(LineSearch, PassesOverALineWhoseItemHasNoSlot) {
    std::vector<uint32_t> ids(60, 1);
    ids[0] = 12;
    ids[55] = 13;
    Recording().Of(Mux) = MixerSelector(ids, 0);
    Levels = {{"Line", 5000}};
    Answers = {false, true};
    EXPECT_EQ(Run(), "");
    EXPECT_THAT(Questions(), ElementsAre("is it Line?"));
    EXPECT_EQ(Volumes()[2], 300);
}

TEST_F(LineSearch, AfterANoGoesOnAndOffersTheNextLineWithSound) {
    Levels = {{"Line", 5000}, {"Mix", 5000}};
    Answers = {false, true};
    EXPECT_EQ(Run(), "Mix");
    EXPECT_THAT(Questions(), ElementsAre("is it Line?", "is it Mix?"));
}

TEST_F(LineSearch, WithAllLinesSilentAsksNothingAndFindsNothing) {
    EXPECT_EQ(Run(), "");
    EXPECT_THAT(Questions(), IsEmpty());
    EXPECT_TRUE(UsersValuesAreBack());
}

TEST_F(LineSearch, SilentLinesGetTheirVolumeBackAndRefusedOnesEndAtZero) {
    Levels = {{"Line", 5000}, {"Mix", 5000}};
    Answers = {false, true};
    Run();
    EXPECT_EQ(Volumes(), (std::vector<int32_t>{100, 0, 300, 65535}));
}

TEST_F(LineSearch, WithoutKeepingAllProbedLinesEndAtZeroAndTheSelectorAtTheLastOne) {
    Options.KeepRejectedInputs = false;
    Recording().Of(Mux) = MixerSelector({12, 13, 14}, 0);
    Run();
    EXPECT_EQ(Volumes(), (std::vector<int32_t>{100, 0, 0, 0}));
    EXPECT_EQ(Recording().Of(Mux).Chosen(), 2);
    EXPECT_EQ(Value(Mute), 0);
}

TEST_F(LineSearch, ThatFindsNothingPutsSelectorAndSwitchesBack) {
    Recording().Of(Mux) = MixerSelector({12, 13, 14}, 0);
    Run();
    EXPECT_EQ(Volumes(), (std::vector<int32_t>{100, 200, 300, 400}));
    EXPECT_EQ(Recording().Of(Mux).Chosen(), 0);
    EXPECT_EQ(Value(Mute), 1);
    EXPECT_EQ(Value(OnOff), 1);
}

TEST_F(LineSearch, ListensFor200MillisecondsToEachLine) {
    ASSERT_TRUE(Inputs.FillInputDevices());
    const int64_t begun = Computer.Clock.MonotonicNanoseconds();
    Search.SearchInputLine();
    const int64_t took = (Computer.Clock.MonotonicNanoseconds() - begun) / 1'000'000;
    EXPECT_GE(took, 3 * 200);
    EXPECT_LE(took, 3 * 230);
}

TEST_F(LineSearch, LeavesTheInputOpen) {
    Run();
    EXPECT_TRUE(Input.IsOpen());
    const uint64_t frames = Signal.FramesReceived;
    RunFor(1);
    EXPECT_GT(Signal.FramesReceived, frames);
}

TEST_F(LineSearch, WithoutARecordingLineFindsNothing) {
    Card->Destinations[0].Type = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
    Levels = {{"Line", 5000}};
    EXPECT_EQ(Run(), "");
    EXPECT_THAT(Cards.Sets, IsEmpty());
    EXPECT_TRUE(UsersValuesAreBack());
}

TEST_F(LineSearch, WithoutAMixerFindsNothing) {
    Cards.Cards.clear();
    AddSound("other", [] { return 5000.0; });
    EXPECT_EQ(Run(), "");
    EXPECT_TRUE(UsersValuesAreBack());
}

TEST_F(LineSearch, ALineWithTwoVolumesIsServedByTheFirst) {
    Card->Destinations[0].Sources[1].Controls = {MixerVolume(200), MixerVolume(7)};
    Levels = {{"Line", 5000}};
    Answers = {true};
    EXPECT_EQ(Run(), "Line");
    EXPECT_EQ(Card->Destinations[0].Sources[1].Controls[1].Value(), 7);
}

TEST_F(LineSearch, ARecordingLineWithoutControlsHasEveryLineProbed) {
    Card->Destinations[0].Line.Controls.clear();
    Computer.WaveIn.Vanish("card");
    AddSound("loud", [] { return 9000.0; });
    Card->WaveInId = "loud";
    Options.InputDeviceNames = "Input loud;";
    Answers = {true};
    EXPECT_EQ(Run(), "CD");  // each answers as the first item of a selector that is not there
}

TEST_F(LineSearch, ADeviceThatVanishesEndsQuietlyWithTheUsersValues) {
    Levels = {{"Mix", 5000}};
    Cards.BeforeSet = [this](const SimMixerSet& set) {
        if (set.Line == "Mic") Card->Gone = true;
    };
    EXPECT_EQ(Run(), "");
    EXPECT_TRUE(UsersValuesAreBack());
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(LineSearch, GivesUpWhenTheProgramEndsInTheMiddle) {
    Levels = {{"Mix", 5000}};
    const auto ends = Computer.Loop.NewTimer([this] {
        Wait.End();
        Search.End();
        EXPECT_TRUE(UsersValuesAreBack());
    });
    ASSERT_TRUE(Inputs.FillInputDevices());
    ends->Start(std::chrono::milliseconds(300), TimerPrecision::Coarse);
    EXPECT_EQ(Search.SearchInputLine(), "");
    EXPECT_TRUE(UsersValuesAreBack());
    EXPECT_THAT(Questions(), IsEmpty());
    EXPECT_LE(Computer.Clock.MonotonicNanoseconds(), 400'000'000);
}

TEST_F(DeviceSearch, OffersTheFirstInputWithSoundAndChoosesIt) {
    AddInput("A", 0);
    SimCard& found = AddInput("B", 5000, 100, 1);
    AddInput("C", 5000);
    Answers = {true};
    EXPECT_EQ(Run(), "Input B");
    EXPECT_THAT(Questions(), ElementsAre("is it Input B?"));
    EXPECT_EQ(Inputs.WaveInDeviceId(), 1);
    EXPECT_EQ(VolumeOf(found), 65535);
    EXPECT_EQ(ValueOf(found, Mute), 0);
    EXPECT_TRUE(UsersValuesAreBack());
    EXPECT_EQ(Cards.Opened, 0U);
}

TEST_F(DeviceSearch, OpensTheChosenInputAgainWhenNothingIsFound) {
    AddInput("A", 0);
    AddInput("B", 0);
    Options.InputDevice = 1;
    EXPECT_EQ(Run(), "");
    EXPECT_TRUE(Input.IsOpen());
    EXPECT_EQ(Inputs.WaveInDeviceId(), 1);
    EXPECT_TRUE(Form.chkStartStop[0].Enabled());
    EXPECT_THAT(Questions(), IsEmpty());
}

TEST_F(DeviceSearch, RecordsFromTheInputThatWasFound) {
    AddInput("A", 0);
    AddInput("B", 5000);
    Answers = {true};
    Run();
    RunFor(0.5);
    EXPECT_EQ(Signal.History[Signal.History.Size() - 1], 15000);  // with the user's gain of 300
}

TEST_F(DeviceSearch, SilentInputsGetVolumeAndMuteBackAndRefusedOnesEndAtZero) {
    SimCard& silent = AddInput("A", 0, 1234, 1);
    SimCard& refused = AddInput("B", 5000, 2345, 1);
    SimCard& found = AddInput("C", 5000, 3456);
    Answers = {false, true};
    EXPECT_EQ(Run(), "Input C");
    EXPECT_EQ(VolumeOf(silent), 1234);
    EXPECT_EQ(ValueOf(silent, Mute), 1);
    EXPECT_EQ(VolumeOf(refused), 0);
    EXPECT_EQ(VolumeOf(found), 65535);
}

TEST_F(DeviceSearch, WithoutKeepingEveryRejectedInputEndsAtZero) {
    Options.KeepRejectedInputs = false;
    SimCard& silent = AddInput("A", 0, 1234, 1);
    SimCard& refused = AddInput("B", 5000, 2345);
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(VolumeOf(silent), 0);
    EXPECT_EQ(ValueOf(silent, Mute), 0);
    EXPECT_EQ(VolumeOf(refused), 0);
}

TEST_F(DeviceSearch, PassesOverAnInputThatCannotBeOpenedWithoutTouchingIt) {
    AddInput("A", 0);
    SimCard& refused = AddInput("B", 5000, 111);
    Computer.WaveIn.Refuse("B");
    AddInput("C", 5000);
    Answers = {true};
    EXPECT_EQ(Run(), "Input C");
    EXPECT_EQ(VolumeOf(refused), 111);
}

TEST_F(DeviceSearch, PassesOverAnInputWithoutAVolume) {
    SimCard& card = AddInput("A", 5000);
    card.Destinations[0].Line.Controls = {MixerMute(1)};
    Computer.WaveIn.Vanish("A");
    AddInput("B", 0);
    AddSound("C", [] { return 5000.0; });
    SimDestination mute;
    mute.Line = {"C", 1, {MixerMute(1)}};
    SimCard& without = Cards.Add({"C", "C", {mute}});
    Options.InputDeviceNames = "Input B;Input C;";
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(ValueOf(without, Mute), 1);
    EXPECT_THAT(Questions(), IsEmpty());
    Options.KeepRejectedInputs = false;
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(ValueOf(without, Mute), 0);
}

TEST_F(DeviceSearch, AnInputWithoutAMixerIsNotProbed) {
    AddSound("A", [] { return 5000.0; });
    EXPECT_EQ(Run(), "");
    EXPECT_THAT(Questions(), IsEmpty());
    EXPECT_TRUE(Input.IsOpen());
}

TEST_F(DeviceSearch, HandlesEachRecordingLineOfADevice) {
    SimDestination first;
    first.Line = {"first", 1, {MixerVolume(10)}};
    SimDestination speakers;
    speakers.Type = MIXERLINE_COMPONENTTYPE_DST_SPEAKERS;
    speakers.Line = {"speakers", 2, {MixerVolume(20)}};
    SimDestination second;
    second.Line = {"second", 3, {MixerVolume(30)}};
    SimCard& card = Cards.Add({"A", "A", {first, speakers, second}});
    AddSound("A", [&card] { return card.Destinations[2].Line.Controls[0].Value() == 65535 ? 5000.0 : 0.0; });
    Answers = {true};
    EXPECT_EQ(Run(), "Input A");
    EXPECT_EQ(card.Destinations[0].Line.Controls[0].Value(), 10);
    EXPECT_EQ(card.Destinations[1].Line.Controls[0].Value(), 20);
    EXPECT_EQ(card.Destinations[2].Line.Controls[0].Value(), 65535);
}

TEST_F(DeviceSearch, ADeviceThatVanishesInTheMiddleIsPassedOver) {
    SimCard& gone = AddInput("A", 5000, 50);
    AddInput("B", 5000);
    Cards.BeforeSet = [&](const SimMixerSet& set) {
        if (set.Card == "A") {
            gone.Gone = true;
            Computer.WaveIn.Vanish("A");
        }
    };
    Answers = {true};
    EXPECT_EQ(Run(), "Input B");
    EXPECT_TRUE(UsersValuesAreBack());
}

TEST_F(DeviceSearch, TheUsersValuesComeBackAfterANoToAllQuestions) {
    AddInput("A", 5000);
    AddInput("B", 5000);
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Questions().size(), 2U);
    EXPECT_TRUE(UsersValuesAreBack());
}

TEST_F(DeviceSearch, GivesUpWhenTheProgramEndsWhileAQuestionIsOpen) {
    SimCard& card = AddInput("A", 5000, 50);
    AddInput("B", 5000);
    Computer.Dialogs.WhileOpen = [this](const ShownBox&) {
        Wait.End();
        Search.End();
        Inputs.End();
        Input.CloseWaveIn();
        EXPECT_TRUE(UsersValuesAreBack());
    };
    Answers = {true};
    EXPECT_EQ(Run(), "");
    EXPECT_EQ(Questions().size(), 1U);
    EXPECT_FALSE(Input.IsOpen());
    EXPECT_TRUE(UsersValuesAreBack());
    EXPECT_EQ(VolumeOf(card), 65535);  // whoever has ended the program puts the inputs back
}

TEST_F(DeviceSearch, ASourceThatComesInTheMiddleKeepsItsOwnValues) {
    AddInput("A", 5000);
    AddInput("B", 1500);  // silent for the search, not for the source
    Computer.Dialogs.WhileOpen = [this](const ShownBox& box) {
        if (box.Text != "is it Input A?") return;
        Media.ProviderName = "Another";
        Pause.LevelMultiplier = 100;
        Pause.SilenceAmplitude = 33;
        Signal.ActiveThreshold = 33;
        Pause.DetectSilenceByPeak = true;
        Pause.PauseBuffers = 7;
        Pause.EndOfSilenceAmplitude = 44;
    };
    Run();
    EXPECT_EQ(Questions().size(), 1U);
    EXPECT_EQ(Pause.LevelMultiplier, 100);
    EXPECT_EQ(Pause.SilenceAmplitude, 33);
    EXPECT_EQ(Signal.ActiveThreshold, 33);
    EXPECT_EQ(Pause.PauseBuffers, 7);
    EXPECT_EQ(Pause.EndOfSilenceAmplitude, 44);
}

TEST_F(DeviceSearch, ASourceThatComesAfterTheLastProbeKeepsItsOwnValues) {
    AddInput("A", 5000);
    Computer.Dialogs.WhileOpen = [this](const ShownBox&) {
        Media.ProviderName = "Another";
        Pause.LevelMultiplier = 111;
    };
    Run();
    EXPECT_EQ(Pause.LevelMultiplier, 111);
}

TEST_F(DeviceSearch, ShowsTheNameOfAnInputInOneLine) {
    Cards.AddInput("A");
    Computer.WaveIn.AddDevice({"100 % <b>\r\n[A]; %1", "A", WaveInKind::Input}, [](uint32_t rate) {
        return std::make_unique<SteadySound>(rate, [] { return 5000.0; });
    });
    Answers = {true};
    Search.SearchInputDevice();
    EXPECT_TRUE(Inputs.FillInputDevices());
    Computer.Dialogs.Boxes.clear();
    Answers = {true};
    EXPECT_EQ(Search.SearchInputDevice(), "100 % <b>  [A]; %1");
    EXPECT_THAT(Questions(), ElementsAre("is it 100 % <b>  [A]; %1?"));
}

TEST_F(Listening, AnAverageOf2000IsNoSoundAndOneAboveItIs) {
    AddInput("A", 2000);
    EXPECT_EQ(Run(), "");
    EXPECT_THAT(Questions(), IsEmpty());
    AddInput("B", 2001);
    EXPECT_EQ(Run(), "");
    EXPECT_THAT(Questions(), Contains("is it Input B?"));
    EXPECT_THAT(Questions(), Not(Contains("is it Input A?")));
}

TEST_F(Listening, GoesByValuesOfItsOwn) {
    AddInput("A", 5000);
    Computer.Dialogs.WhileOpen = [this](const ShownBox&) {
        EXPECT_EQ(Pause.LevelMultiplier, 100);
        EXPECT_EQ(Pause.SilenceAmplitude, 2000);
        EXPECT_EQ(Signal.ActiveThreshold, 2000);
        EXPECT_FALSE(Pause.DetectSilenceByPeak);
        EXPECT_EQ(Pause.PauseBuffers, 200 / 50);
        EXPECT_EQ(Pause.EndOfSilenceAmplitude, 2000);
    };
    Run();
    EXPECT_EQ(Questions().size(), 1U);
}

TEST_F(Listening, AnInputThatGivesNothingIsSilentAlsoAfterALoudOne) {
    AddInput("A", 5000);
    AddInput("B", 5000);
    Cards.BeforeSet = [this](const SimMixerSet& set) {
        if (set.Card == "B") Computer.WaveIn.Vanish("B");
    };
    Run();
    EXPECT_THAT(Questions(), ElementsAre("is it Input A?"));
}

TEST_F(Listening, ThePeaksOfASignalDoNotCount) {
    Cards.AddInput("A");
    size_t call = 0;
    Computer.WaveIn.AddDevice({"Input A", "A", WaveInKind::Input}, [&call](uint32_t rate) {
        // One buffer of many is at full scale for a moment.
        return std::make_unique<SteadySound>(rate, [&call] { return ++call % 20 == 0 ? 30000.0 : 0.0; });
    });
    Options.InputDeviceNames = "Input A;";
    EXPECT_EQ(Run(), "");
}

TEST_F(Listening, GoesByTheSignalWithoutTheUsersGain) {
    AddInput("A", 1500);  // 4500 with the gain of 300
    EXPECT_EQ(Run(), "");
    EXPECT_THAT(Questions(), IsEmpty());
}

}  // namespace
}  // namespace Corvetape::Test
