// What a box that is open in the middle of a second changes, and the order of what the second does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/tick_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

/// The pages of the assistant that were opened in the last second.
std::vector<std::string> OpenedPages(const TickRig& rig) {
    std::vector<std::string> pages;
    for (const std::string& each : rig.Asked) {
        if (each.starts_with("OpenAssistant ")) pages.push_back(each.substr(14));
    }
    return pages;
}

TEST(FirstRun, TheFirstPageIsNoReasonToOpenTheAssistantOnceMore) {
    TickRig rig;
    rig.Form.chkNoStartupInfo.Value(0);
    rig.Form.tbsMain.Select("TAB_ABOUT");
    rig.Ticks(2);
    EXPECT_THAT(OpenedPages(rig), ElementsAre("1st.htm"));
    EXPECT_EQ(rig.Form.tbsMain.SelectedKey(), "TAB_RECORDING");
}

TEST(FirstRun, TheAssistantThatWasAskedForIsOpenedAheadOfTheFirstPage) {
    TickRig rig;
    rig.Form.chkNoStartupInfo.Value(0);
    rig.Lifecycle.WizardRequested = true;
    rig.Ticks(2);
    EXPECT_THAT(OpenedPages(rig), ElementsAre("wizard.htm", "1st.htm"));
}

/// A rig in whose next second the recording ends after a long silence, with a box.
void BeSilent(TickRig& rig) {
    rig.Form.tmr1Second.Running(true);
    rig.Ticks(59);
    rig.Pause.QuitAfterSilence = 300;
    rig.Signal.SilenceSeconds = 300;
}

TEST(TickBox, TheEndAfterSilenceIsDoneOnlyWhenItsBoxIsClosed) {
    TickRig rig;
    BeSilent(rig);
    int boxes = 0;
    rig.WhileBoxIsOpen = [&] {
        ++boxes;
        rig.Tick();
        EXPECT_FALSE(rig.WasAsked("Box #708 5")) << "its step waits";
    };
    rig.Tick();
    EXPECT_EQ(boxes, 1);
    rig.Tick();
    EXPECT_EQ(boxes, 1);
}

TEST(TickBox, TheRecordingIsSwitchedOffOnlyWhenItsBoxIsClosed) {
    TickRig rig;
    BeSilent(rig);
    rig.Form.chkStartStop[0].Value(1);
    int32_t meanwhile = 0;
    rig.WhileBoxIsOpen = [&] { meanwhile = rig.Form.chkStartStop[0].Value(); };
    rig.Tick();
    EXPECT_EQ(meanwhile, 1);
    EXPECT_EQ(rig.Form.chkStartStop[0].Value(), 0);
}

TEST(TickBox, AProgramThatEndedDuringABoxDoesNothingMoreInThatSecond) {
    TickRig rig;
    BeSilent(rig);
    // The last step of that second would end the program.
    rig.Machine.Files.AddFault({.Pattern = "*music", .Operation = FileOperation::FreeSpace});
    rig.WhileBoxIsOpen = [&] { rig.Form.tmr1Second.Running(false); };
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Unload"));
}

TEST(TickBox, AProgramThatGoesOnDuringABoxFinishesItsSecond) {
    TickRig rig;
    BeSilent(rig);
    rig.Machine.Files.AddFault({.Pattern = "*music", .Operation = FileOperation::FreeSpace});
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Box #708 5"));
    EXPECT_TRUE(rig.WasAsked("Unload"));
}

}  // namespace
}  // namespace Corvetape::Test
