#include "recording/recording_look.h"

#include <gtest/gtest.h>

#include "sim/sim_machine.h"

namespace Corvetape::Test {
namespace {

struct Rig {
    Rig() {
        Computer.Files.Put("/program/test.lang", "1001=Start it\n1002=Stop it\n1304=Go\n1305=Halt\n");
        Texts.Load("test");
    }
    SimMachine Computer;
    clsLocalizeControls Texts{Computer.Files, "/program", Computer.Dialogs};
    frmMain Form;
    frmQuickButtons Quick;
    frmCoverButtons Cover;
    RecordingLook Look{Form, Quick, Cover, Texts};
};

TEST(RecordingLook, TheStartButtonsSayWhatTheyWillDoNext) {
    Rig rig;
    rig.Form.chkStartStop[0].Value(1);
    rig.Look.ShowRecording();
    EXPECT_EQ(rig.Form.cmdStartStop.Caption(), "Stop it");
    EXPECT_EQ(rig.Quick.cmdStartStop.Caption(), "Halt");
    EXPECT_EQ(rig.Form.cmdStartStop.TextKey(), "1002");
    rig.Form.chkStartStop[0].Value(0);
    rig.Look.ShowRecording();
    EXPECT_EQ(rig.Form.cmdStartStop.Caption(), "Start it");
    EXPECT_EQ(rig.Quick.cmdStartStop.Caption(), "Go");
}

TEST(RecordingLook, OfTheTwoPicturesOneIsSeen) {
    Rig rig;
    for (const int32_t value : {1, 0}) {
        rig.Form.chkStartStop[0].Value(value);
        rig.Look.ShowRecording();
        const bool recording = value == 1;
        for (const Picture* start : {&rig.Form.picStart, &rig.Quick.picStart, &rig.Cover.imgStart}) {
            EXPECT_EQ(start->Visible(), !recording) << start->Name();
        }
        for (const Picture* stop : {&rig.Form.picStop, &rig.Quick.picStop, &rig.Cover.imgStop}) {
            EXPECT_EQ(stop->Visible(), recording) << stop->Name();
        }
    }
}

TEST(RecordingLook, TheSkipButtonsFollowTheOneOfTheMainWindow) {
    Rig rig;
    EXPECT_FALSE(rig.Quick.cmdSkipThisRecording.Enabled());
    EXPECT_TRUE(rig.Cover.imgSkip[0].Visible());
    EXPECT_FALSE(rig.Cover.imgSkip[1].Visible());
    rig.Form.cmdSkipThisRecording.Enabled(true);
    EXPECT_TRUE(rig.Quick.cmdSkipThisRecording.Enabled());
    EXPECT_TRUE(rig.Form.picSkip.Enabled());
    EXPECT_FALSE(rig.Cover.imgSkip[0].Visible());
    EXPECT_TRUE(rig.Cover.imgSkip[1].Visible());
}

TEST(RecordingLook, LeavesTheMainWindowAloneOnceItIsGone) {
    Rig rig;
    {
        frmQuickButtons other;
        const RecordingLook look(rig.Form, other, rig.Cover, rig.Texts);
    }
    rig.Form.cmdSkipThisRecording.Enabled(true);
    EXPECT_TRUE(rig.Quick.cmdSkipThisRecording.Enabled());
}

TEST(RecordingLook, WithoutALanguageTheCaptionsStay) {
    Rig rig;
    rig.Texts.Load("");
    rig.Form.chkStartStop[0].Value(1);
    rig.Look.ShowRecording();
    EXPECT_EQ(rig.Form.cmdStartStop.Caption(), "Record");
}

}  // namespace
}  // namespace Corvetape::Test
