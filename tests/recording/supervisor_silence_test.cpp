#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "supervisor_rig.h"

namespace Corvetape::Test {
namespace {

TEST(SupervisorSilence, IsNoticedAfterItsTimeAndLoggedOnce) {
    SupervisorRig rig;
    rig.Signal.SilenceSeconds = 59;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "");
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#705 60");
    EXPECT_TRUE(rig.WasAsked("Log INFO #705 60"));
    rig.Signal.SilenceSeconds = 61;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#705 61");
    EXPECT_FALSE(rig.WasAsked("Log INFO #705 61"));
}

TEST(SupervisorSilence, TheReturnOfSoundIsLoggedAndEnablesTheRecording) {
    SupervisorRig rig;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    rig.Signal.SilenceSeconds = 0;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Log INFO #706"));
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "");
    EXPECT_TRUE(rig.Flags.RecordingEnabled);
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Log INFO #706"));
}

TEST(SupervisorSilence, APageThatJustStartsHoldsNoticeAndReturnBack) {
    SupervisorRig rig;
    rig.Launching = true;
    rig.Signal.SilenceSeconds = 90;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Log INFO #705 90"));
    rig.Launching = false;
    rig.Tick();
    rig.Launching = true;
    rig.Signal.SilenceSeconds = 0;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Log INFO #706"));
}

TEST(SupervisorSilence, IsNotNoticedIfSilenceIsIgnoredButItsEndIs) {
    SupervisorRig rig;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    rig.Pause.IgnoreSilence = true;
    rig.Signal.SilenceSeconds = 400;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Log INFO #706"));
    EXPECT_FALSE(rig.WasAsked("AbortSong"));
}

TEST(SupervisorSilence, RestartsTheRadioAtEachMultipleOfTheNoticeTime) {
    SupervisorRig rig;
    rig.Options.RestartRadioIfSilent = true;
    rig.Flags.RecordNextSong = true;
    for (const int32_t seconds : {60, 61, 119, 120}) {
        rig.Signal.SilenceSeconds = seconds;
        rig.Tick();
        EXPECT_EQ(rig.WasAsked("RestartRadio"), seconds % 60 == 0) << seconds;
    }
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 1);
}

TEST(SupervisorSilence, RestartsTheRadioOnlyForARecordingWithMediaDataAndWithoutTheAssistant) {
    const auto restarted = [](auto change) {
        SupervisorRig rig;
        rig.Options.RestartRadioIfSilent = true;
        rig.Flags.RecordCurrentSong = true;
        rig.Signal.SilenceSeconds = 60;
        change(rig);
        rig.Tick();
        return rig.WasAsked("RestartRadio");
    };
    EXPECT_TRUE(restarted([](SupervisorRig&) {}));
    EXPECT_FALSE(restarted([](SupervisorRig& rig) { rig.Options.RestartRadioIfSilent = false; }));
    EXPECT_FALSE(restarted([](SupervisorRig& rig) { rig.Lifecycle.WizardRequested = true; }));
    EXPECT_FALSE(restarted([](SupervisorRig& rig) { rig.Media.StationDataEnabled = false; }));
    EXPECT_FALSE(restarted([](SupervisorRig& rig) { rig.Flags.RecordCurrentSong = false; }));
}

TEST(SupervisorSilence, ASongThatTheSilenceBrokeOffPassesItsWishToTheNextOne) {
    SupervisorRig rig;
    rig.Flags.RecordCurrentSong = true;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 0);
    rig.FileOpen = true;
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 1);
}

TEST(SupervisorSilence, ReportsASongThatItBrokeOffInLogAndWindow) {
    for (const bool restarts : {false, true}) {
        SupervisorRig rig;
        rig.Options.RestartRadioIfSilent = restarts;
        rig.Flags.RecordCurrentSong = true;
        rig.FileOpen = true;
        rig.Signal.SilenceSeconds = 60;
        rig.Tick();
        EXPECT_TRUE(rig.WasAsked("Log INFO #862 60")) << restarts;
        EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#862 60") << restarts;
        rig.Tick();
        EXPECT_FALSE(rig.WasAsked("Log INFO #862 60")) << "reported once";
    }
}

TEST(SupervisorSilence, ReportsNoSongWhereNoneIsLost) {
    SupervisorRig rig;
    rig.Options.RestartRadioIfSilent = true;
    rig.Flags.RecordCurrentSong = true;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Log INFO #862 60"));

    SupervisorRig byTime;
    byTime.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    byTime.Flags.RecordCurrentSong = true;
    byTime.Signal.SilenceSeconds = 60;
    byTime.Tick();
    EXPECT_FALSE(byTime.WasAsked("Log INFO #862 60"));
}

TEST(SupervisorSilence, APieceByTimeIsBrokenOffBeforeItsSilenceIsInAFile) {
    SupervisorRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Flags.RecordCurrentSong = true;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 1);
}

TEST(SupervisorSilence, ASongThatNobodyWantsPassesNoWishOn) {
    SupervisorRig rig;
    rig.FileOpen = true;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 0);
}

TEST(SupervisorSilence, WithANoticeTimeOfZeroOnlyMakesEachSecondDue) {
    SupervisorRig rig;
    rig.Options.InfoAfterSilence = 0;
    rig.Options.RestartRadioIfSilent = true;
    rig.Flags.RecordNextSong = true;
    for (const int32_t seconds : {0, 7}) {
        rig.Signal.SilenceSeconds = seconds;
        rig.Tick();
        EXPECT_TRUE(rig.WasAsked("RestartRadio")) << seconds;
    }
}

TEST(SupervisorSilence, EndsTheRecordingOnceAfterItsTime) {
    SupervisorRig rig;
    rig.Ticks(3);
    rig.Form.chkStartStop[0].Value(1);
    rig.Pause.QuitAfterSilence = 300;
    rig.Signal.SilenceSeconds = 299;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("AbortSong"));
    rig.Signal.SilenceSeconds = 300;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("AbortSong"));
    EXPECT_TRUE(rig.WasAsked("Log ERROR #707 5"));
    EXPECT_TRUE(rig.WasAsked("Box #708 5"));
    EXPECT_EQ(rig.Form.chkStartStop[0].Value(), 0);
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("AbortSong"));
}

TEST(SupervisorSilence, EndsAnUnattendedProgramWithoutABox) {
    SupervisorRig rig;
    rig.Lifecycle.DontAsk = true;
    rig.Signal.SilenceSeconds = 300;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Unload"));
    EXPECT_FALSE(rig.WasAsked("Box #708 5"));
    EXPECT_FALSE(rig.WasAsked("DrainAudioRing"));
}

TEST(SupervisorSilence, ShowsNoBoxIfSoundCameBackInThisVerySecond) {
    SupervisorRig rig;
    rig.Signal.SilenceSeconds = 300;
    rig.Signal.SilenceStartSecond = 1;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Box #708 5"));
    EXPECT_TRUE(rig.WasAsked("AbortSong"));
}

TEST(SupervisorSilence, MayEndARecordingAgainAfterSoundReturned) {
    SupervisorRig rig;
    rig.Signal.SilenceSeconds = 300;
    rig.Tick();
    rig.Signal.SilenceSeconds = 0;
    rig.Tick();
    rig.Signal.SilenceSeconds = 300;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("AbortSong"));
}

}  // namespace
}  // namespace Corvetape::Test
