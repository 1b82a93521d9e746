#include "mixer/mixer_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mixer/search_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* RescuePath = "/home/user/.config/before.ini";
constexpr SystemVersion OlderStack{2, 5, 1, 0};
constexpr SystemVersion NewerStack{2, 6, 0, 0};

/// The buttons of the mixer on one of the two stacks.
class PageTest : public testing::Test, protected SearchRig {
 protected:
    explicit PageTest(const SystemVersion& version = NewerStack)
        : Gain({Mixers, Inputs, Pause, Signal, Wait}, version),
          Asking({Form, Inputs, Search, GainAsking, Guard, Computer.Dialogs, Texts}, version),
          Page({Form, Mixers, Sound, Asking, GainAsking, Guard}, version) {
        Computer.Files.Put(Computer.Folders.Program + "/english.lang",
                           "815=search?\n816=nothing found\n817=found %1\n818=is it %1?\n819=settings?\n"
                           "820=gain?\n821=good, save?\n822=bad, save?\n901=changed\n902=none\n"
                           "1500=no settings\n1501=%1 *\n");
        Texts.Load("english");
        Computer.Dialogs.WhileOpen = [this](const ShownBox&) { EnabledInBox.push_back(Form.Enabled()); };
        Computer.Desktop.WhileAsked = [this](const std::string& what) {
            News.push_back(what == "BusyPointer" ? "busy" : what);
        };
        Asking.SearchBegins.Connect([this] { News.emplace_back("begins"); });
        Asking.SearchEnds.Connect([this] { News.emplace_back("ends"); });
        Sound.SetUrl.Connect([this](const std::string& page) { News.push_back(page); });
    }

    /// Answers the question for the sound settings and that for the search.
    void AnswerToBegin() { Answers = {false, true}; }

    std::vector<bool> EnabledInBox;
    std::vector<std::string> News;
    OpenForms Opened;
    InputSearch Search{{Mixers, Inputs, Pause, Signal, Media, Options, Wait}, Computer.Dialogs, Texts};
    MixerRescue Rescue{Cards, Computer.Files, RescuePath};
    SearchGuard Guard{Computer.Desktop, Rescue, Wait};
    AutoGain Gain;
    GainDialogue GainAsking{{Form, Pause, Mixers, Gain, Guard, Computer.Dialogs, Texts}};
    InputDialogue Asking;
    SoundSettings Sound{{Form, Lifecycle, Opened, Guard, Computer.Processes, Computer.Dialogs, Texts}};
    MixerPage Page;
};

class OlderPage : public PageTest {
 protected:
    OlderPage() : PageTest(OlderStack) {}
};

using AutoInput = PageTest;
using AutomaticGain = PageTest;
using MixerButtons = PageTest;

TEST_F(AutoInput, FindsAnInputChoosesItAndOffersTheGain) {
    AddInput("A", 0);
    AddInput("B", 5000);
    Answers = {false, true, true, false};
    Form.cmdAutoInput.Press();
    EXPECT_THAT(Questions(), ElementsAre("settings?", "search?", "is it Input B?", "found Input B"));
    const std::vector<ShownBox>& boxes = Computer.Dialogs.Boxes;
    EXPECT_EQ(boxes[0].Kind, BoxKind::NoYes);
    EXPECT_EQ(boxes[0].Icon, DialogIcon::Information);
    EXPECT_EQ(boxes[1].Kind, BoxKind::OkCancel);
    EXPECT_EQ(boxes[1].Icon, DialogIcon::Question);
    EXPECT_EQ(boxes[3].Kind, BoxKind::YesNo);
    EXPECT_EQ(boxes[3].Icon, DialogIcon::Information);
    EXPECT_THAT(EnabledInBox, ElementsAre(true, false, false, false));
    EXPECT_TRUE(Form.Enabled());
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 1);
    EXPECT_EQ(Options.InputDevice, 1);
    EXPECT_EQ(Store.ReadProviderText("Mixer", "InputDevice"), "1");
    EXPECT_TRUE(Input.IsOpen());
    EXPECT_TRUE(Form.chkStartStop[1].Enabled());
    EXPECT_THAT(News, ElementsAre("begins", "busy", "ends", "normal pointer"));
}

TEST_F(AutoInput, GoesOnWithTheGainIfTheUserWants) {
    AddInput("A", 16384);
    Answers = {false, true, true, true, true, false};
    Form.cmdAutoInput.Press();
    EXPECT_THAT(Questions(), ElementsAre("settings?", "search?", "is it Input A?", "found Input A", "gain?",
                                         "good, save?"));
    EXPECT_EQ(Form.vscMultiplier.Value(), 180);
    EXPECT_TRUE(Form.Enabled());
}

TEST_F(AutoInput, ReportsThatNothingWasFound) {
    AddInput("A", 0);
    AnswerToBegin();
    Form.cmdAutoInput.Press();
    EXPECT_THAT(Questions(), ElementsAre("settings?", "search?", "nothing found"));
    EXPECT_EQ(Computer.Dialogs.Boxes[2].Kind, BoxKind::Message);
    EXPECT_EQ(Computer.Dialogs.Boxes[2].Icon, DialogIcon::Exclamation);
    EXPECT_TRUE(Form.Enabled());
    EXPECT_THAT(News, ElementsAre("begins", "busy", "ends", "normal pointer"));
}

TEST_F(AutoInput, CancelledDoesNothing) {
    AddInput("A", 5000, 77);
    Answers = {false, false};
    Form.cmdAutoInput.Press();
    EXPECT_THAT(Questions(), ElementsAre("settings?", "search?"));
    EXPECT_TRUE(Form.Enabled());
    EXPECT_THAT(Cards.Sets, IsEmpty());
    EXPECT_FALSE(Input.IsOpen());
    EXPECT_THAT(News, IsEmpty());
}

TEST_F(AutoInput, WithoutAnyInputLeavesTheWindowDisabled) {
    AnswerToBegin();
    Form.cmdAutoInput.Press();
    EXPECT_THAT(Questions(), ElementsAre("settings?", "search?", "none"));
    EXPECT_FALSE(Form.Enabled());
}

TEST_F(AutoInput, ListsTheInputsAnewAndChoosesByTheirNewOrder) {
    AddInput("A", 0);
    ASSERT_TRUE(Inputs.FillInputDevices());
    AddInput("B", 5000);
    Options.InputDeviceNames = "Input A;";
    Answers = {false, true, true, false};
    Form.cmdAutoInput.Press();
    EXPECT_THAT(Questions(),
                ElementsAre("settings?", "search?", "changed", "is it Input B?", "found Input B"));
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 1);
}

TEST_F(AutoInput, KeepsTheUsersVolumesOnTheDiskWhileItRuns) {
    AddInput("A", 5000, 77);
    bool there = false;
    Computer.Dialogs.WhileOpen = [&](const ShownBox& box) {
        if (box.Text == "is it Input A?") there = Computer.Files.Exists(RescuePath);
    };
    AnswerToBegin();
    Form.cmdAutoInput.Press();
    EXPECT_TRUE(there);
    EXPECT_FALSE(Computer.Files.Exists(RescuePath));
}

TEST_F(AutoInput, AProgramThatEndsInTheMiddleHasTheUsersVolumesAndAsksNothingMore) {
    SimCard& first = AddInput("A", 5000, 77, 1);
    SimCard& second = AddInput("B", 5000, 88);
    Computer.Dialogs.WhileOpen = [&](const ShownBox& box) {
        if (box.Text != "is it Input B?") return;
        Page.End();
        EXPECT_EQ(VolumeOf(first), 77);
        EXPECT_EQ(VolumeOf(second), 88);
        EXPECT_EQ(Pause.SilenceAmplitude, 100);
    };
    Answers = {false, true, false, true};
    Form.cmdAutoInput.Press();
    EXPECT_EQ(Questions().back(), "is it Input B?");
    EXPECT_EQ(VolumeOf(first), 77);
    EXPECT_EQ(ValueOf(first, MIXERCONTROL_CONTROLTYPE_MUTE), 1);
    EXPECT_EQ(VolumeOf(second), 88);
    EXPECT_TRUE(Form.Enabled());
    EXPECT_FALSE(Computer.Files.Exists(RescuePath));
}

TEST_F(AutoInput, AProgramThatEndsAtTheBoxForChangedInputsDoesNotSearch) {
    SimCard& card = AddInput("A", 5000, 77, 1);
    Options.InputDeviceNames = "others;";
    Computer.Dialogs.WhileOpen = [&](const ShownBox& box) {
        if (box.Text == "changed") Page.End();
    };
    AnswerToBegin();
    Form.cmdAutoInput.Press();
    EXPECT_EQ(Questions().back(), "changed");
    EXPECT_EQ(VolumeOf(card), 77);
    EXPECT_THAT(Cards.Sets, IsEmpty());
    EXPECT_FALSE(Computer.Files.Exists(RescuePath));
}

TEST_F(OlderPage, AProgramThatEndsAtTheBoxForChangedInputsDoesNotSearch) {
    Cards.Add(CardWithSelector("A"));
    AddSound("A", [] { return 5000.0; });
    Options.InputDeviceNames = "others;";
    Computer.Dialogs.WhileOpen = [&](const ShownBox& box) {
        if (box.Text == "changed") Page.End();
    };
    Answers = {true, true};
    Form.cmdAutoInput.Press();
    EXPECT_THAT(Cards.Sets, IsEmpty());
    EXPECT_FALSE(Computer.Files.Exists(RescuePath));
}

TEST_F(AutoInput, TakesTheNumberOfTheDeviceForItsPlaceInTheList) {
    Computer.WaveIn.AddDevice({"mono", "mono", WaveInKind::Input, 0}, [](uint32_t rate) {
        return std::make_unique<SteadySound>(rate, [] { return 0.0; });
    });
    AddInput("A", 5000);
    AddInput("B", 0);
    Options.InputDeviceNames = "mono;Input A;Input B;";
    Answers = {false, true, true, false};
    Form.cmdAutoInput.Press();
    EXPECT_EQ(Questions().back(), "found Input A");
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 1);  // which is input B
}

TEST_F(AutoInput, PressedAgainInTheMiddleDoesNothing) {
    AddInput("A", 5000);
    Computer.Dialogs.WhileOpen = [this](const ShownBox& box) {
        if (box.Text != "is it Input A?") return;
        Form.cmdAutoInput.Click.Raise();
        Form.cmdAGC.Click.Raise();
    };
    AnswerToBegin();
    Form.cmdAutoInput.Press();
    EXPECT_THAT(Questions(), ElementsAre("settings?", "search?", "is it Input A?", "nothing found"));
}

TEST_F(AutoInput, OpensTheSoundSettingsAndTheAssistantsPageAndWaitsForItsEnd) {
    AddInput("A", 0);
    Corvetape::Form assistant("frmWizard", "Assistant");
    const Connection open = Opened.Open(assistant);
    const auto closes = Computer.Loop.NewTimer([this] {
        EXPECT_FALSE(Form.Enabled());
        Lifecycle.WizardRequested = false;
    });
    closes->Start(std::chrono::seconds(7), TimerPrecision::Coarse);
    Answers = {true, false};
    const int64_t begun = Computer.Clock.MonotonicNanoseconds();
    Form.cmdAutoInput.Press();
    EXPECT_NEAR(static_cast<double>(Computer.Clock.MonotonicNanoseconds() - begun) / 1e9, 7, 0.4);
    EXPECT_THAT(News, ElementsAre("vista.htm"));
    EXPECT_THAT(Computer.Processes.ShellCalls, ElementsAre(ShellCall{"pavucontrol", "--tab=4", ""}));
    EXPECT_THAT(Questions(), ElementsAre("settings?", "search?"));
    EXPECT_TRUE(Form.Enabled());
}

TEST_F(AutoInput, WithoutAnAssistantDoesNotWaitForIt) {
    Answers = {true, false};
    Form.cmdAutoInput.Press();
    EXPECT_EQ(Computer.Clock.MonotonicNanoseconds(), 0);
    EXPECT_FALSE(Lifecycle.WizardRequested);
    EXPECT_THAT(Questions(), ElementsAre("settings?", "search?"));
}

TEST_F(OlderPage, SearchesTheLinesOfTheChosenInputWithoutTheFirstQuestion) {
    Cards.Add(CardWithSelector("A"));
    AddSound("A", [] { return 5000.0; });
    Answers = {true, true, false};
    Form.cmdAutoInput.Press();
    EXPECT_THAT(Questions(), ElementsAre("search?", "is it Microphone?", "found Microphone"));
    EXPECT_TRUE(Form.Enabled());
    EXPECT_EQ(Options.InputDevice, 0);
}

TEST_F(AutomaticGain, IsShownAndSavedWithTheMixerIfTheUserWants) {
    AddInput("A", 16384, 20000);
    ASSERT_TRUE(Inputs.FillInputDevices());
    Media.MixerSectionName = "MixerRadio";
    Form.vscMultiplier.Change.Connect([this] {  // as the program does
        Store.WriteSetting("MixerRadio", "LevelMultiplier", Form.vscMultiplier.Value());
    });
    Answers = {true, true};
    Form.cmdAGC.Press();
    EXPECT_THAT(Questions(), ElementsAre("gain?", "good, save?"));
    EXPECT_EQ(Computer.Dialogs.Boxes[0].Kind, BoxKind::OkCancel);
    EXPECT_EQ(Computer.Dialogs.Boxes[0].Icon, DialogIcon::Question);
    EXPECT_EQ(Computer.Dialogs.Boxes[1].Icon, DialogIcon::Information);
    EXPECT_EQ(Form.vscMultiplier.Value(), 180);
    EXPECT_THAT(Section("MixerRadio"), ElementsAre("C000000=65535", "C000001=0", "LevelMultiplier=180"));
    EXPECT_THAT(EnabledInBox, ElementsAre(false, false));
    EXPECT_THAT(News, ElementsAre("busy", "normal pointer"));
    EXPECT_TRUE(Form.Enabled());
}

TEST_F(AutomaticGain, ThatIsNotReachedIsReportedAndCanBeSavedAllTheSame) {
    AddInput("A", 2000);
    ASSERT_TRUE(Inputs.FillInputDevices());
    Answers = {true, true};
    Form.cmdAGC.Press();
    EXPECT_THAT(Questions(), ElementsAre("gain?", "bad, save?"));
    EXPECT_EQ(Computer.Dialogs.Boxes[1].Kind, BoxKind::YesNo);
    EXPECT_EQ(Computer.Dialogs.Boxes[1].Icon, DialogIcon::Exclamation);
    EXPECT_EQ(Form.vscMultiplier.Value(), 1000);
    EXPECT_THAT(Section("Mixer"), testing::Contains("C000000=65535"));
}

TEST_F(AutomaticGain, WithoutAWishToSaveSavesNothing) {
    AddInput("A", 16384);
    ASSERT_TRUE(Inputs.FillInputDevices());
    Answers = {true, false};
    Form.cmdAGC.Press();
    EXPECT_THAT(Section("Mixer"), testing::Not(testing::Contains("C000000=65535")));
}

TEST_F(AutomaticGain, CancelledDoesNothing) {
    AddInput("A", 16384, 5);
    ASSERT_TRUE(Inputs.FillInputDevices());
    Form.cmdAGC.Press();
    EXPECT_THAT(Questions(), ElementsAre("gain?"));
    EXPECT_THAT(News, IsEmpty());
    EXPECT_THAT(Cards.Sets, IsEmpty());
    EXPECT_TRUE(Form.Enabled());
}

TEST_F(AutomaticGain, WithoutAnInputOffersToSaveAndLeavesTheGain) {
    Pause.LevelMultiplier = 250;
    Answers = {true, false};
    Form.cmdAGC.Press();
    EXPECT_THAT(Questions(), ElementsAre("gain?", "bad, save?"));
    EXPECT_EQ(Pause.LevelMultiplier, 250);
    EXPECT_TRUE(Form.Enabled());
}

TEST_F(AutomaticGain, AProgramThatEndsInTheMiddleHasVolumeAndGainOfTheUser) {
    SimCard& card = AddInput("A", 60000, 40000);
    ASSERT_TRUE(Inputs.FillInputDevices());
    Pause.LevelMultiplier = 250;
    const auto ends = Computer.Loop.NewTimer([this] { Page.End(); });
    ends->Start(std::chrono::seconds(18), TimerPrecision::Coarse);
    Answers = {true, true};
    Form.cmdAGC.Press();
    EXPECT_THAT(Questions(), ElementsAre("gain?"));
    EXPECT_EQ(VolumeOf(card), 40000);
    EXPECT_EQ(Pause.LevelMultiplier, 250);
    EXPECT_FALSE(Computer.Files.Exists(RescuePath));
}

TEST_F(MixerButtons, SaveAndResetWorkOnTheSectionInForce) {
    SimCard& card = AddInput("A", 0, 100);
    Media.MixerSectionName = "MixerRadio";
    Mixers.MixerAction(MixerMode::TakeSnapshot);
    card.Destinations[0].Line.Controls[0].Value() = 200;
    Form.cmdSaveMixerSettings.Press();
    EXPECT_THAT(Section("MixerRadio"), ElementsAre("C000000=200", "C000001=0"));
    Form.cmdResetMixerSettings.Press();
    EXPECT_THAT(Section("MixerRadio"), IsEmpty());
    EXPECT_EQ(VolumeOf(card), 100);
}

TEST_F(MixerButtons, ASwitchOfThePlainSectionIsWrittenAgainWhenItIsClicked) {
    Form.chk48kHz.Press();
    Form.cmdResetMixerSettings.Press();
    EXPECT_THAT(Section("Mixer"), IsEmpty());
    Form.chk48kHz.Press();
    EXPECT_THAT(Section("Mixer"), ElementsAre("SPDIF48kHz=0"));
}

TEST_F(MixerButtons, AnInputThatIsSearchedIsOpenedAtTheOpticalRate) {
    AddInput("A", 5000);
    Form.chk48kHz.Press();
    Answers = {false, true, true, false};
    Form.cmdAutoInput.Press();
    EXPECT_EQ(Input.Format().nSamplesPerSec, 48000U);
}

TEST_F(MixerButtons, TheFirstProgramForSoundSettingsThatIsThereIsOpened) {
    Computer.Processes.OnShellOpen = [](const ShellCall& call) {
        return call.Path == "gnome-control-center" ? 33 : 2;
    };
    Form.cmdOpenMixer.Press();
    ASSERT_EQ(Computer.Processes.ShellCalls.size(), 3U);
    EXPECT_EQ(Computer.Processes.ShellCalls[1], (ShellCall{"pavucontrol-qt", "--tab 4", ""}));
    EXPECT_EQ(Computer.Processes.ShellCalls[2], (ShellCall{"gnome-control-center", "sound", ""}));
    EXPECT_THAT(Questions(), IsEmpty());
}

TEST_F(MixerButtons, WithoutAnySuchProgramABoxSaysSo) {
    Computer.Processes.OnShellOpen = [](const ShellCall&) { return 2; };
    Form.cmdOpenMixer.Press();
    EXPECT_THAT(Questions(), ElementsAre("no settings"));
    EXPECT_EQ(Computer.Dialogs.Boxes[0].Icon, DialogIcon::Exclamation);
}

}  // namespace
}  // namespace Corvetape::Test
