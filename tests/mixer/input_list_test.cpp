#include "mixer/input_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/settings/registry.h"
#include "core/text/placeholders.h"
#include "sim/sim_machine.h"
#include "support/noted_reports.h"
#include "support/signal_chain.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// Inputs that are listed, opened and closed, and never give a buffer.
class ListedInputs : public WaveIn {
 public:
    WaveInList Devices() override {
        WaveInList list(Present);
        list.Reason = ServerSays;
        return list;
    }
    OpenedWaveIn Open(size_t device, const WaveFormat&, BufferReturn, WaveInEvents) override {
        Asked.push_back("open " + std::to_string(device));
        if (!OpensDevices) return OpenedWaveIn::Refused(ServerSays);
        return std::make_unique<Stream>(*this);
    }

    void Add(const std::string& name, uint32_t formats = WAVE_FORMAT_4S16) {
        Present.push_back({name, "id of " + name, WaveInKind::Input, formats, false});
    }

    std::vector<WaveInDevice> Present;
    bool OpensDevices = true;
    std::string ServerSays;
    std::vector<std::string> Asked;
    std::function<void()> WhileClosing = [] {};

 private:
    class Stream : public WaveInStream {
     public:
        explicit Stream(ListedInputs& owner) : Owner(owner) {}
        void AddBuffer(WaveHeader&) override {}
        bool Start() override { return true; }
        void Reset() override {
            Owner.Asked.emplace_back("close");
            Owner.WhileClosing();
        }
        void Deliver() override {}

     private:
        ListedInputs& Owner;
    };
};

/// The list of inputs with a settings file, and notes of what it opened.
class InputListTest : public testing::Test {
 protected:
    InputListTest() {
        const std::string& path = Store.Ini().Path();
        Computer.Files.MakeFolders(path.substr(0, path.rfind('/')));
        Options.InputDevice = 0;
        Choice.Changed.Connect(
            [this] { Asked.push_back("changed to " + std::to_string(Options.InputDevice)); });
    }

    /// The devices A, B and C, known from the last run, B chosen.
    void KnowThreeDevices() {
        for (const char* name : {"A", "B", "C"}) Inputs.Add(name);
        Options.InputDeviceNames = "A;B;C;";
        Options.InputDevice = 1;
    }

    std::vector<std::string> Listed() const {
        std::vector<std::string> texts;
        for (const ListItem& item : Form.cmbInputDevices.Items()) {
            texts.push_back(item.Text + "=" + std::to_string(item.Data));
        }
        return texts;
    }

    std::string Stored(const std::string& key) const { return Store.ReadProviderText("Mixer", key, "-"); }

    SimMachine Computer;
    RegistryBranches Registry{Computer.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    Placeholders Expansion{Computer.Clock, Computer.Folders, Registry};
    SettingsStore Store{Computer.Files, Computer.Folders, Registry, Expansion, Computer.System.Version()};
    Settings Options;
    PauseSettings Pause;
    SignalState Signal;
    MediaState Media;
    frmMain Form;
    NotedReports Reports{Computer, Form,
                         "901=devices changed\n902=no device\n1501=%1 (default)\n"
                         "61730=%1 not opened.\n61731=%1 Server: %2.\n"};
    LifecycleFlags& Lifecycle = Reports.Lifecycle;
    ListedInputs Inputs;
    SignalChain Chain{Computer, Inputs, Signal, Pause, Media};

    bool& OpensDevices = Inputs.OpensDevices;
    std::vector<std::string>& Asked = Inputs.Asked;
    std::vector<std::string>& Logged = Reports.Lines;
    std::vector<ShownBox>& Boxes = Computer.Dialogs.Boxes;

    InputList Choice{{Form, Inputs, Options, Store, Lifecycle}, Chain.Device, Reports.Say};
};

using FillInputDevices = InputListTest;
using ClickOnADevice = InputListTest;
using AudioPageBoxes = InputListTest;

TEST_F(FillInputDevices, ListsTheDevicesInTheOrderOfTheMachineWithTheirNumbers) {
    for (const char* name : {"Monitor of Speakers", "Microphone", "Line"}) Inputs.Add(name);
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Listed(), ElementsAre("Monitor of Speakers=0", "Microphone=1", "Line=2"));
}

TEST_F(FillInputDevices, ListsADeviceThatGivesEitherRateAndNoOther) {
    Inputs.Add("neither", 0);
    Inputs.Add("44", WAVE_FORMAT_4S16);
    Inputs.Add("mono", 0x400);
    Inputs.Add("48", WAVE_FORMAT_48S16);
    Inputs.Add("both", WAVE_FORMAT_4S16 | WAVE_FORMAT_48S16);
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Listed(), ElementsAre("44=1", "48=3", "both=4"));
}

TEST_F(FillInputDevices, CutsANameAtItsFirstNul) {
    Inputs.Add(std::string("Line\0rest", 9));
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Listed(), ElementsAre("Line=0"));
    EXPECT_EQ(Options.InputDeviceNames, "Line;");
}

TEST_F(FillInputDevices, ANameOfTwoLinesIsTheSameAtTheNextStart) {
    Inputs.Add("Line\r\nOne");
    Inputs.Add("Other");
    EXPECT_TRUE(Choice.FillInputDevices());
    Form.cmbInputDevices.Select(1);
    EXPECT_THAT(Listed(), ElementsAre("Line  One=0", "Other=1"));
    Options.InputDeviceNames = Stored("InputDeviceNames");
    Logged.clear();
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Logged, IsEmpty());
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 1);
}

TEST_F(FillInputDevices, ListsAnewWhatWasListedBefore) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Listed(), ElementsAre("A=0", "B=1", "C=2"));
}

TEST_F(FillInputDevices, SelectsTheDeviceOfTheLastRunIfNothingHasChanged) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 1);
    EXPECT_EQ(Choice.WaveInDeviceId(), 1);
    EXPECT_THAT(Asked, ElementsAre("open 1"));
    EXPECT_THAT(Logged, IsEmpty());
    EXPECT_THAT(Boxes, IsEmpty());
    EXPECT_EQ(Form.tbsMain.SelectedKey(), "TAB_RECORDING");
}

TEST_F(FillInputDevices, TheDeviceOfAnEntryIsItsItemDataAndNotItsIndex) {
    Inputs.Add("mono", 0);
    Inputs.Add("Line");
    Options.InputDeviceNames = "mono;Line;";
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Options.InputDevice, 0);
    EXPECT_EQ(Choice.WaveInDeviceId(), 1);
    EXPECT_THAT(Asked, ElementsAre("open 1"));
}

TEST_F(FillInputDevices, ComparesTheNamesOfTheDevicesThatAreNotListedToo) {
    Inputs.Add("Line");
    Inputs.Add("mono", 0);
    Options.InputDeviceNames = "Line;";
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Logged, ElementsAre("INFO devices changed"));
    EXPECT_EQ(Options.InputDeviceNames, "Line;mono;");
}

TEST_F(FillInputDevices, SelectsTheFirstDeviceIfTheyHaveChangedAndReportsIt) {
    KnowThreeDevices();
    Options.InputDeviceNames = "A;B;";
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 0);
    EXPECT_EQ(Options.InputDevice, 0);
    EXPECT_EQ(Choice.WaveInDeviceId(), 0);
    EXPECT_EQ(Stored("InputDevice"), "0");
    EXPECT_EQ(Stored("InputDeviceNames"), "A;B;C;");
    EXPECT_EQ(Form.tbsMain.SelectedKey(), "TAB_AUDIO");
    EXPECT_THAT(Logged, ElementsAre("INFO devices changed"));
    EXPECT_EQ(
        Boxes,
        (std::vector<ShownBox>{{BoxKind::Message, "devices changed", DialogIcon::Exclamation, "", ""}}));
}

TEST_F(FillInputDevices, TheSameNamesInAnotherOrderAreAChange) {
    KnowThreeDevices();
    std::swap(Inputs.Present[0], Inputs.Present[2]);
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 0);
    EXPECT_THAT(Logged, ElementsAre("INFO devices changed"));
}

TEST_F(FillInputDevices, AStoredIndexBeyondTheListSelectsTheFirstDeviceAndWarns) {
    KnowThreeDevices();
    for (const int32_t index : {5, 3, -1}) {
        Options.InputDevice = index;
        Logged.clear();
        EXPECT_TRUE(Choice.FillInputDevices());
        EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 0) << index;
        EXPECT_THAT(Logged, ElementsAre("INFO devices changed")) << index;
    }
}

TEST_F(FillInputDevices, MarksTheDefaultDeviceWhereItStands) {
    KnowThreeDevices();
    Inputs.Present[2].IsDefault = true;
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Listed(), ElementsAre("A=0", "B=1", "C (default)=2"));
    EXPECT_EQ(Options.InputDeviceNames, "A;B;C;");
}

TEST_F(FillInputDevices, AnotherDefaultDeviceIsNoChange) {
    KnowThreeDevices();
    Inputs.Present[0].IsDefault = true;
    EXPECT_TRUE(Choice.FillInputDevices());
    Inputs.Present[0].IsDefault = false;
    Inputs.Present[2].IsDefault = true;
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 1);
    EXPECT_THAT(Logged, IsEmpty());
    EXPECT_THAT(Boxes, IsEmpty());
}

TEST_F(FillInputDevices, SelectsTheDefaultDeviceIfTheyHaveChanged) {
    KnowThreeDevices();
    Inputs.Add("mono", 0);
    Inputs.Add("D");
    Inputs.Present[4].IsDefault = true;
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 3);
    EXPECT_EQ(Choice.WaveInDeviceId(), 4);
    EXPECT_EQ(Stored("InputDevice"), "3");
    EXPECT_THAT(Logged, ElementsAre("INFO devices changed"));
}

TEST_F(FillInputDevices, TheFirstStartReportsThatTheDevicesAreNew) {
    Inputs.Add("A");
    Options.InputDevice = 1;
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Logged, ElementsAre("INFO devices changed"));
}

TEST_F(FillInputDevices, UnattendedTheChangeGoesToTheLogOnly) {
    Inputs.Add("A");
    Lifecycle.DontAsk = true;
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Logged, ElementsAre("INFO devices changed"));
    EXPECT_THAT(Boxes, IsEmpty());
}

TEST_F(FillInputDevices, WithTheAssistantTheChangeGoesToTheLogOnly) {
    Inputs.Add("A");
    Lifecycle.WizardRequested = true;
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Logged, ElementsAre("INFO devices changed"));
    EXPECT_THAT(Boxes, IsEmpty());
}

TEST_F(FillInputDevices, WithoutADeviceNothingIsSelectedAndTheChoiceStays) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    Asked.clear();
    Inputs.Present.clear();
    EXPECT_FALSE(Choice.FillInputDevices());
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), -1);
    EXPECT_THAT(Asked, IsEmpty());
    EXPECT_EQ(Options.InputDevice, 1);
    EXPECT_EQ(Choice.WaveInDeviceId(), 1);
    EXPECT_EQ(Options.InputDeviceNames, "A;B;C;");
    EXPECT_THAT(Logged, ElementsAre("INFO no device"));
    EXPECT_EQ(Boxes, (std::vector<ShownBox>{{BoxKind::Message, "no device", DialogIcon::Critical, "", ""}}));
}

TEST_F(FillInputDevices, ADeviceThatComesWhileItsAbsenceIsReportedIsTaken) {
    Computer.Dialogs.WhileOpen = [this](const ShownBox& box) {
        if (box.Text == "no device") Inputs.Add("A");
    };
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Listed(), (std::vector<std::string>{"A=0"}));
    EXPECT_EQ(Options.InputDevice, 0);
}

TEST_F(FillInputDevices, DevicesOfOtherFormatsAreNoDevice) {
    Inputs.Add("mono", 0x400);
    EXPECT_FALSE(Choice.FillInputDevices());
    EXPECT_THAT(Logged, ElementsAre("INFO no device"));
    Choice.WaveInDeviceId(1);
    EXPECT_EQ(Choice.WaveInDeviceName(), "");
    Choice.WaveInDeviceId(-1);
    EXPECT_EQ(Choice.WaveInDeviceName(), "");
}

TEST_F(FillInputDevices, UnattendedTheLackOfDevicesGoesToTheLogOnly) {
    Lifecycle.DontAsk = true;
    EXPECT_FALSE(Choice.FillInputDevices());
    EXPECT_THAT(Logged, ElementsAre("INFO no device"));
    EXPECT_THAT(Boxes, IsEmpty());
}

TEST_F(FillInputDevices, WithTheAssistantTheLackOfDevicesIsStillShown) {
    Lifecycle.WizardRequested = true;
    EXPECT_FALSE(Choice.FillInputDevices());
    EXPECT_EQ(Boxes.size(), 1U);
}

TEST_F(FillInputDevices, ManyDevicesAreRecognisedThoughTheirNamesComeBackCut) {
    std::string names;
    for (int i = 0; i < 9; ++i) {
        const std::string name = "Monitor of a sound card with a long name " + std::to_string(i);
        Inputs.Add(name);
        names += name + ";";
    }
    Options.InputDevice = 4;
    Options.InputDeviceNames = names.substr(0, 254);
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Form.cmbInputDevices.ListIndex(), 4);
    EXPECT_THAT(Logged, IsEmpty());
}

TEST_F(FillInputDevices, ADeviceAfterACutTextOfNamesIsAChange) {
    Inputs.Add(std::string(252, 'x'));
    Options.InputDeviceNames = Inputs.Present[0].Name + ";";
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Logged, IsEmpty());
    Inputs.Add("new");
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Logged, ElementsAre("INFO devices changed"));
}

TEST_F(ClickOnADevice, OpensItAndLetsRecordingsBegin) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_TRUE(Chain.Device.IsOpen());
    EXPECT_TRUE(Form.chkStartStop[0].Enabled());
    EXPECT_TRUE(Form.chkStartStop[1].Enabled());
}

TEST_F(ClickOnADevice, ClosesTheOpenDeviceFirst) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    Asked.clear();
    Form.cmbInputDevices.Select(2);
    EXPECT_THAT(Asked, ElementsAre("close", "open 2", "changed to 2"));
}

TEST_F(ClickOnADevice, DisablesTheRecordingWhileNoDeviceIsOpen) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    OpensDevices = false;
    Form.cmbInputDevices.Select(2);
    EXPECT_FALSE(Form.chkStartStop[0].Enabled());
    EXPECT_FALSE(Form.chkStartStop[1].Enabled());
    OpensDevices = true;
    Form.cmbInputDevices.Select(1);
    EXPECT_TRUE(Form.chkStartStop[0].Enabled());
}

TEST_F(ClickOnADevice, ThatCannotBeOpenedIsSaidInTheStatusLineWithTheServersWords) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    OpensDevices = false;
    Inputs.ServerSays = "Device or resource busy";
    const std::vector<std::string> before = Logged;
    Form.cmbInputDevices.Select(2);
    EXPECT_EQ(Form.lblStatus[1].Caption(), "C not opened. Server: Device or resource busy.");
    EXPECT_EQ(Logged, before);
}

TEST_F(ClickOnADevice, ThatCannotBeOpenedIsChosenAllTheSame) {
    KnowThreeDevices();
    OpensDevices = false;
    EXPECT_TRUE(Choice.FillInputDevices());
    Form.cmbInputDevices.Select(2);
    EXPECT_EQ(Options.InputDevice, 2);
    EXPECT_EQ(Choice.WaveInDeviceId(), 2);
    EXPECT_EQ(Stored("InputDevice"), "2");
}

TEST_F(ClickOnADevice, OnAnotherOneStoresTheChoice) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Stored("InputDevice"), "-");
    Form.cmbInputDevices.Select(2);
    EXPECT_EQ(Options.InputDevice, 2);
    EXPECT_EQ(Choice.WaveInDeviceId(), 2);
    EXPECT_EQ(Stored("InputDevice"), "2");
}

TEST_F(ClickOnADevice, TakesTheNumberOfTheDeviceAndNotTheIndexOfTheEntry) {
    Inputs.Add("mono", 0);
    Inputs.Add("A");
    Inputs.Add("B");
    EXPECT_TRUE(Choice.FillInputDevices());
    Form.cmbInputDevices.Select(1);
    EXPECT_EQ(Options.InputDevice, 1);
    EXPECT_EQ(Choice.WaveInDeviceId(), 2);
    EXPECT_THAT(Asked, Contains("open 2"));
}

TEST_F(ClickOnADevice, OnTheSameOneOpensItAgainAndStoresNoIndex) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    Asked.clear();
    Form.cmbInputDevices.Select(1);
    EXPECT_THAT(Asked, ElementsAre("close", "open 1"));
    EXPECT_EQ(Stored("InputDevice"), "-");
}

TEST_F(ClickOnADevice, StoresTheNamesInEveryCase) {
    KnowThreeDevices();
    OpensDevices = false;
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_EQ(Stored("InputDeviceNames"), "A;B;C;");
}

TEST_F(ClickOnADevice, OnAnotherOneIsReportedOnceTheChoiceIsStored) {
    KnowThreeDevices();
    EXPECT_TRUE(Choice.FillInputDevices());
    EXPECT_THAT(Asked, ElementsAre("open 1"));
    Form.cmbInputDevices.Select(2);
    EXPECT_THAT(Asked, ElementsAre("open 1", "close", "open 2", "changed to 2"));
}

TEST_F(ClickOnADevice, OnAnEmptyListOpensNothing) {
    Form.cmbInputDevices.Click.Raise();
    EXPECT_THAT(Asked, IsEmpty());
}

TEST_F(AudioPageBoxes, TheOpticalRateIsStoredAtOnceAndOpensNothing) {
    Form.chk48kHz.Press();
    EXPECT_TRUE(Options.SPDIF48kHz);
    EXPECT_EQ(Stored("SPDIF48kHz"), "1");
    Form.chk48kHz.Press();
    EXPECT_FALSE(Options.SPDIF48kHz);
    EXPECT_EQ(Stored("SPDIF48kHz"), "0");
    EXPECT_THAT(Asked, IsEmpty());
}

TEST_F(AudioPageBoxes, TheUseOfSavedMixerSettingsIsStoredAtOnce) {
    Form.chkMixerAutoUpdate.Press();
    EXPECT_TRUE(Options.AutoUpdate);
    EXPECT_EQ(Stored("AutoUpdate"), "1");
    Form.chkMixerAutoUpdate.Press();
    EXPECT_FALSE(Options.AutoUpdate);
    EXPECT_EQ(Stored("AutoUpdate"), "0");
}

TEST_F(InputListTest, OpensNothingIfTheProgramEndsWhileTheOldInputCloses) {
    KnowThreeDevices();
    ASSERT_TRUE(Choice.FillInputDevices());
    Inputs.WhileClosing = [this] { Choice.End(); };
    Asked.clear();
    Form.cmbInputDevices.Select(2);
    EXPECT_THAT(Asked, ElementsAre("close"));
    EXPECT_EQ(Options.InputDevice, 1);
}

}  // namespace
}  // namespace Corvetape::Test
