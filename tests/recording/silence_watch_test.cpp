#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/tick_rig.h"

namespace Corvetape::Test {
namespace {

TEST(SilenceWatch, IsNoticedAfterItsTimeAndLoggedOnce) {
    TickRig rig;
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

TEST(SilenceWatch, TheReturnOfSoundIsLoggedAndEnablesTheRecording) {
    TickRig rig;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    rig.Signal.SilenceSeconds = 0;
    rig.Flags.RecordingEnabled = false;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Log INFO #706"));
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "");
    EXPECT_TRUE(rig.Flags.RecordingEnabled);
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Log INFO #706"));
}

TEST(SilenceWatch, APageThatJustStartsHoldsNoticeAndReturnBack) {
    TickRig rig;
    rig.Launch();
    rig.Signal.SilenceSeconds = 90;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Log INFO #705 90"));
    rig.PageHasCome();
    rig.Tick();
    rig.Launch();
    rig.Signal.SilenceSeconds = 0;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Log INFO #706"));
}

TEST(SilenceWatch, IsNotNoticedIfSilenceIsIgnoredButItsEndIs) {
    TickRig rig;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    rig.Pause.IgnoreSilence = true;
    rig.Signal.SilenceSeconds = 400;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Log INFO #706"));
    EXPECT_FALSE(rig.WasAsked("recording ends"));
}

TEST(SilenceWatch, RestartsTheRadioAtEachMultipleOfTheNoticeTime) {
    TickRig rig;
    rig.Options.RestartRadioIfSilent = true;
    rig.Flags.RecordNextSong = true;
    for (const int32_t seconds : {60, 61, 119, 120}) {
        rig.Signal.SilenceSeconds = seconds;
        rig.Tick();
        EXPECT_EQ(rig.WasAsked("RestartRadio"), seconds % 60 == 0) << seconds;
    }
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 1);
}

TEST(SilenceWatch, RestartsTheRadioOnlyForARecordingWithMediaDataAndWithoutTheAssistant) {
    const auto restarted = [](auto change) {
        TickRig rig;
        rig.Options.RestartRadioIfSilent = true;
        rig.Flags.RecordCurrentSong = true;
        rig.Signal.SilenceSeconds = 60;
        change(rig);
        rig.Tick();
        return rig.WasAsked("RestartRadio");
    };
    EXPECT_TRUE(restarted([](TickRig&) {}));
    EXPECT_FALSE(restarted([](TickRig& rig) { rig.Options.RestartRadioIfSilent = false; }));
    EXPECT_FALSE(restarted([](TickRig& rig) { rig.Lifecycle.WizardRequested = true; }));
    EXPECT_FALSE(restarted([](TickRig& rig) { rig.Media.StationDataEnabled = false; }));
    EXPECT_FALSE(restarted([](TickRig& rig) { rig.Flags.RecordCurrentSong = false; }));
}

TEST(SilenceWatch, ASongThatTheSilenceBrokeOffPassesItsWishToTheNextOne) {
    TickRig rig;
    rig.Flags.RecordCurrentSong = true;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 0);
    rig.Writer.CreateSongFile();
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 1);
}

TEST(SilenceWatch, ReportsASongThatItBrokeOffInLogAndWindow) {
    for (const bool restarts : {false, true}) {
        TickRig rig;
        rig.Options.RestartRadioIfSilent = restarts;
        rig.Flags.RecordCurrentSong = true;
        rig.Writer.CreateSongFile();
        rig.Signal.SilenceSeconds = 60;
        rig.Tick();
        EXPECT_TRUE(rig.WasAsked("Log INFO #862 60")) << restarts;
        EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#862 60") << restarts;
        rig.Tick();
        EXPECT_FALSE(rig.WasAsked("Log INFO #862 60")) << "reported once";
    }
}

TEST(SilenceWatch, ReportsNoSongWhereNoneIsLost) {
    TickRig rig;
    rig.Options.RestartRadioIfSilent = true;
    rig.Flags.RecordCurrentSong = true;
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Log INFO #862 60"));

    TickRig byTime;
    byTime.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    byTime.Flags.RecordCurrentSong = true;
    byTime.Signal.SilenceSeconds = 60;
    byTime.Tick();
    EXPECT_FALSE(byTime.WasAsked("Log INFO #862 60"));
}

TEST(SilenceWatch, APieceByTimeIsBrokenOffBeforeItsSilenceIsInAFile) {
    TickRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Flags.RecordCurrentSong = true;
    rig.Signal.SilenceSeconds = 60;
    rig.Ring.AudioWriteIndex = 50;
    rig.Tick();
    EXPECT_EQ(rig.Ring.AudioReadIndex, 50);
    EXPECT_TRUE(rig.Flags.RecordCurrentSong) << "the next piece begins at once";
}

TEST(SilenceWatch, ASongThatNobodyWantsPassesNoWishOn) {
    TickRig rig;
    rig.Writer.CreateSongFile();
    rig.Signal.SilenceSeconds = 60;
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 0);
}

TEST(SilenceWatch, WithANoticeTimeOfZeroOnlyMakesEachSecondDue) {
    TickRig rig;
    rig.Options.InfoAfterSilence = 0;
    rig.Options.RestartRadioIfSilent = true;
    rig.Flags.RecordNextSong = true;
    for (const int32_t seconds : {0, 7}) {
        rig.Signal.SilenceSeconds = seconds;
        rig.Tick();
        EXPECT_TRUE(rig.WasAsked("RestartRadio")) << seconds;
    }
}

TEST(SilenceWatch, EndsTheRecordingOnceAfterItsTime) {
    TickRig rig;
    rig.Ticks(3);
    rig.Form.chkStartStop[0].Value(1);
    rig.Pause.QuitAfterSilence = 300;
    rig.Signal.SilenceSeconds = 299;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("recording ends"));
    rig.Signal.SilenceSeconds = 300;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("recording ends"));
    EXPECT_TRUE(rig.WasAsked("Log ERROR #707 5"));
    EXPECT_TRUE(rig.WasAsked("Box #708 5"));
    EXPECT_EQ(rig.Form.chkStartStop[0].Value(), 0);
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("recording ends"));
}

TEST(SilenceWatch, EndsAnUnattendedProgramWithoutABox) {
    TickRig rig;
    rig.Lifecycle.DontAsk = true;
    rig.Signal.SilenceSeconds = 300;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Unload"));
    EXPECT_FALSE(rig.WasAsked("Box #708 5"));
}

TEST(SilenceWatch, ShowsNoBoxIfSoundCameBackInThisVerySecond) {
    TickRig rig;
    rig.Signal.SilenceSeconds = 300;
    rig.Signal.SilenceStartSecond = 1;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Box #708 5"));
    EXPECT_TRUE(rig.WasAsked("recording ends"));
}

TEST(SilenceWatch, MayEndARecordingAgainAfterSoundReturned) {
    TickRig rig;
    rig.Signal.SilenceSeconds = 300;
    rig.Tick();
    rig.Signal.SilenceSeconds = 0;
    rig.Tick();
    rig.Signal.SilenceSeconds = 300;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("recording ends"));
}

}  // namespace
}  // namespace Corvetape::Test
