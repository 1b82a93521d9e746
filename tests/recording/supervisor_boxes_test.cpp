// What a box that is open in the middle of a second changes, and the order of what the second does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "supervisor_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

/// The pages of the assistant that were opened in the last second.
std::vector<std::string> OpenedPages(const SupervisorRig& rig) {
    std::vector<std::string> pages;
    for (const std::string& each : rig.Asked) {
        if (each.starts_with("OpenAssistant ")) pages.push_back(each.substr(14));
    }
    return pages;
}

TEST(SupervisorFirstRun, TheFirstPageIsNoReasonToOpenTheAssistantOnceMore) {
    SupervisorRig rig;
    rig.Form.chkNoStartupInfo.Value(0);
    rig.Form.tbsMain.Select("TAB_ABOUT");
    rig.Ticks(2);
    EXPECT_THAT(OpenedPages(rig), ElementsAre("1st.htm"));
    EXPECT_EQ(rig.Form.tbsMain.SelectedKey(), "TAB_RECORDING");
}

TEST(SupervisorFirstRun, TheAssistantThatWasAskedForIsOpenedAheadOfTheFirstPage) {
    SupervisorRig rig;
    rig.Form.chkNoStartupInfo.Value(0);
    rig.Lifecycle.WizardRequested = true;
    rig.Ticks(2);
    EXPECT_THAT(OpenedPages(rig), ElementsAre("wizard.htm", "1st.htm"));
}

/// A rig in whose next second the recording ends after a long silence, with a box.
void BeSilent(SupervisorRig& rig) {
    rig.Form.tmr1Second.Running(true);
    rig.Ticks(3);
    rig.Pause.QuitAfterSilence = 300;
    rig.Signal.SilenceSeconds = 300;
}

TEST(SupervisorBox, TheEndAfterSilenceIsDoneOnlyWhenItsBoxIsClosed) {
    SupervisorRig rig;
    BeSilent(rig);
    int boxes = 0;
    rig.WhileBoxIsOpen = [&] {
        if (++boxes > 1) return;
        rig.AdvanceSecond();
        rig.Watch.TimerFired();
    };
    rig.Tick();
    EXPECT_EQ(boxes, 2);
    rig.Tick();
    EXPECT_EQ(boxes, 2);
}

TEST(SupervisorBox, TheRecordingIsSwitchedOffOnlyWhenItsBoxIsClosed) {
    SupervisorRig rig;
    BeSilent(rig);
    rig.Form.chkStartStop[0].Value(1);
    int32_t meanwhile = 0;
    rig.WhileBoxIsOpen = [&] { meanwhile = rig.Form.chkStartStop[0].Value(); };
    rig.Tick();
    EXPECT_EQ(meanwhile, 1);
    EXPECT_EQ(rig.Form.chkStartStop[0].Value(), 0);
}

TEST(SupervisorBox, AProgramThatEndedBehindABoxDoesNothingMoreInThatSecond) {
    SupervisorRig rig;
    BeSilent(rig);
    rig.WhileBoxIsOpen = [&] { rig.Form.tmr1Second.Running(false); };
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("DrainAudioRing"));
    EXPECT_FALSE(rig.WasAsked("CheckReserve"));
}

TEST(SupervisorBox, AProgramThatGoesOnBehindABoxFinishesItsSecond) {
    SupervisorRig rig;
    BeSilent(rig);
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Box #708 5"));
    EXPECT_TRUE(rig.WasAsked("DrainAudioRing"));
    EXPECT_TRUE(rig.WasAsked("CheckReserve"));
}

}  // namespace
}  // namespace Corvetape::Test
