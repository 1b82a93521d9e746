#include "recording/supervisor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "supervisor_rig.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;

TEST(Supervisor, RunsItsStepsInOneFixedOrder) {
    const auto names = Supervisor::StepNames();
    EXPECT_THAT(std::vector<std::string>(names.begin(), names.end()),
                ElementsAre("FirstRun", "FindProvider", "PollOutsideMediaMode", "AgeSong", "TakeSongData",
                            "ShowProvider", "ShowMedia", "ShowFlags", "ShowState", "CountDown",
                            "WatchSilence", "WatchBuffers", "CutByTime", "Drain", "WatchDisk"));
}

TEST(Supervisor, TwoTimerEventsWithinOneClockSecondGiveOneRun) {
    SupervisorRig rig;
    rig.AdvanceSecond();
    rig.Watch.TimerFired();
    rig.Time.Now.Millisecond = 500;
    rig.Watch.TimerFired();
    EXPECT_EQ(rig.Watch.Ticks(), 1);
}

TEST(Supervisor, AJumpOfSeveralSecondsIsOneRun) {
    SupervisorRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Tick();
    rig.Time.Now.Minute += 7;
    rig.Watch.TimerFired();
    EXPECT_EQ(rig.Watch.Ticks(), 2);
    EXPECT_EQ(rig.Cut.FixedTimeSeconds, 2);
}

TEST(Supervisor, MidnightIsJustAnotherSecond) {
    SupervisorRig rig;
    rig.Time.Now = {2026, 3, 1, 23, 59, 58, 0};
    rig.Ticks(3);
    EXPECT_EQ(rig.Watch.Ticks(), 3);
}

TEST(Supervisor, ListsTheInputsOnTheSecondRunOnly) {
    SupervisorRig rig;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("FillInputDevices"));
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("FillInputDevices"));
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("FillInputDevices"));
}

TEST(Supervisor, EndsTheProgramWithoutAnyInput) {
    SupervisorRig rig;
    rig.DevicesThere = false;
    rig.Tick();
    rig.Tick();
    EXPECT_THAT(rig.Asked, ElementsAre("FillInputDevices", "Unload"));
}

TEST(Supervisor, OpensTheAssistantOnTheSecondRunIfItWasAskedFor) {
    SupervisorRig rig;
    rig.Lifecycle.WizardRequested = true;
    rig.Form.tbsMain.Select("TAB_ABOUT");
    rig.Ticks(2);
    EXPECT_TRUE(rig.WasAsked("OpenAssistant wizard.htm"));
    EXPECT_EQ(rig.Form.tbsMain.SelectedKey(), "TAB_ABOUT");
}

TEST(Supervisor, LeavesTheAboutPageAndNoOtherOnTheSecondRun) {
    for (const auto& [before, behind] :
         {std::pair{"TAB_ABOUT", "TAB_RECORDING"}, {"TAB_AUDIO", "TAB_AUDIO"}}) {
        SupervisorRig rig;
        rig.Form.tbsMain.Select(before);
        rig.Ticks(2);
        EXPECT_EQ(rig.Form.tbsMain.SelectedKey(), behind);
    }
}

TEST(Supervisor, ShowsTheFirstPageUntilTheUserHasHadEnoughOfIt) {
    SupervisorRig rig;
    rig.Form.chkNoStartupInfo.Value(0);
    rig.Ticks(2);
    EXPECT_TRUE(rig.WasAsked("RunFirstBatch"));
    EXPECT_TRUE(rig.WasAsked("OpenAssistant 1st.htm"));
    EXPECT_TRUE(rig.Lifecycle.WizardRequested);
}

TEST(Supervisor, TheTimeSinceTheStartIsNoSilence) {
    SupervisorRig rig;
    rig.Time.Nanoseconds = 10'000'900'000'000;
    rig.Ticks(2);
    EXPECT_EQ(rig.Signal.SilenceStartSecond, 10'002);
}

TEST(Supervisor, LooksForAProviderWhileThereIsNone) {
    SupervisorRig rig;
    rig.NeedsProvider = true;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("ChooseProvider"));
    rig.NeedsProvider = false;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("ChooseProvider"));
}

TEST(Supervisor, WithoutMediaDataNothingIsAskedOfAProvider) {
    SupervisorRig rig;
    rig.NeedsProvider = true;
    rig.Media.StationDataEnabled = false;
    rig.Ticks(3);
    EXPECT_FALSE(rig.WasAsked("ChooseProvider"));
    EXPECT_FALSE(rig.WasAsked("GetStationData"));
    EXPECT_EQ(rig.Watch.SongAgeSeconds(), 0);
}

TEST(Supervisor, PollsEverySecondOfAYoungSongAndEveryTenthLater) {
    SupervisorRig rig;
    int polls = 0;
    for (int i = 0; i < 40; ++i) {
        rig.Tick();
        if (rig.WasAsked("GetStationData")) ++polls;
    }
    // The age is 0 to 9 in the first ten runs, then 10, 20 and 30 are asked.
    EXPECT_EQ(polls, 13);
}

TEST(Supervisor, PollsEveryTenthSecondAlsoOfASongOfMoreThanNineHours) {
    SupervisorRig rig;
    rig.Ticks(35'000);
    EXPECT_GT(rig.Watch.SongAgeSeconds(), 32'000) << "it does not become a young song again";
    for (int tens = 0; tens < 5; ++tens) {
        int polls = 0;
        for (int i = 0; i < 10; ++i) {
            rig.Tick();
            if (rig.WasAsked("GetStationData")) ++polls;
        }
        EXPECT_EQ(polls, 1);
    }
}

TEST(Supervisor, LeavesThePollsToTheirOwnTimerInMediaDataMode) {
    SupervisorRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::MediaData;
    rig.Ticks(3);
    EXPECT_FALSE(rig.WasAsked("GetStationData"));
}

TEST(Supervisor, EachPollHandsTheCoverOn) {
    SupervisorRig rig;
    rig.Media.CurrentMedia.Cover = "http://127.0.0.1/c.jpg";
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("LoadImage http://127.0.0.1/c.jpg"));
}

TEST(Supervisor, ABoundaryMakesTheSongYoungAgain) {
    SupervisorRig rig;
    rig.Ticks(5);
    EXPECT_EQ(rig.Watch.SongAgeSeconds(), 5);
    rig.Cut.SongBoundary = true;
    rig.Tick();
    EXPECT_EQ(rig.Watch.SongAgeSeconds(), 0);
    EXPECT_FALSE(rig.Cut.SongBoundary);
}

TEST(Supervisor, TakesTheSongDataOverWhenTheSongIsOlderThanTheEncodeDelayAndASecond) {
    SupervisorRig rig;
    rig.Media.CurrentMedia.Song = "New";
    rig.Ticks(6);
    EXPECT_EQ(rig.Media.SongMedia.Song, "");
    rig.Tick();
    EXPECT_EQ(rig.Media.SongMedia.Song, "New");
}

TEST(Supervisor, TheWaitForTheSongDataIsTheEncodeDelayInWholeSecondsAndOneMore) {
    struct Row {
        int32_t EncodeDelay;
        int Runs;  ///< the song's age then exceeds the wait
    };
    for (const Row row : {Row{0, 2}, Row{999, 2}, Row{1000, 3}, Row{5999, 7}, Row{30'000, 32}}) {
        SupervisorRig rig;
        rig.Options.EncodeDelay = row.EncodeDelay;
        rig.Media.CurrentMedia.Song = "New";
        rig.Ticks(row.Runs - 1);
        EXPECT_EQ(rig.Media.SongMedia.Song, "") << row.EncodeDelay;
        rig.Tick();
        EXPECT_EQ(rig.Media.SongMedia.Song, "New") << row.EncodeDelay;
    }
}

TEST(Supervisor, TakesTheWholeRecordOverWhenArtistOrTitleDiffer) {
    for (const bool artist : {true, false}) {
        SupervisorRig rig;
        STATIONANDSONGDATA& now = rig.Media.CurrentMedia;
        now.StationName = now.StationDescr = now.Artist = now.Song = now.Album = now.Cover = "new";
        rig.Media.SongMedia.Artist = artist ? "old" : "new";
        rig.Media.SongMedia.Song = artist ? "new" : "old";
        rig.Media.SongMedia.TempFileName = "file";
        rig.Ticks(7);
        EXPECT_EQ(rig.Media.SongMedia, now);
    }
}

TEST(Supervisor, TakesNothingOverOfTheSongThatIsInTheFile) {
    SupervisorRig rig;
    rig.Media.CurrentMedia.Artist = rig.Media.SongMedia.Artist = "A";
    rig.Media.CurrentMedia.Song = rig.Media.SongMedia.Song = "S";
    rig.Media.CurrentMedia.Album = "late";
    rig.Excluded = true;
    rig.Flags.RecordCurrentSong = true;
    rig.Ticks(20);
    EXPECT_EQ(rig.Media.SongMedia.Album, "");
    EXPECT_TRUE(rig.Flags.RecordCurrentSong);
    rig.Media.CurrentMedia.Song = "Next";  // nothing was taken over for this song yet
    rig.Tick();
    EXPECT_EQ(rig.Media.SongMedia.Song, "Next");
}

TEST(Supervisor, TakesNothingOverWhileASongWaitsForItsTransfer) {
    SupervisorRig rig;
    rig.Media.CurrentMedia.Song = "New";
    rig.Form.tmrEncodeFile.Running(true);
    rig.Ticks(20);
    EXPECT_EQ(rig.Media.SongMedia.Song, "");
    rig.Form.tmrEncodeFile.Running(false);
    rig.Tick();
    EXPECT_EQ(rig.Media.SongMedia.Song, "New");
}

TEST(Supervisor, TakesAnEmptyReadingNeverOver) {
    SupervisorRig rig;
    rig.Media.SongMedia.Song = "Old";
    rig.Media.CurrentMedia.Artist = "Somebody";
    rig.Ticks(20);
    EXPECT_EQ(rig.Media.SongMedia.Song, "Old");
}

TEST(Supervisor, TakesOnePieceOverOnceASong) {
    SupervisorRig rig;
    rig.Media.CurrentMedia.Song = "First";
    rig.Ticks(7);
    rig.Media.CurrentMedia.Song = "Second";
    rig.Ticks(20);
    EXPECT_EQ(rig.Media.SongMedia.Song, "First");
    rig.Cut.SongBoundary = true;
    rig.Ticks(8);
    EXPECT_EQ(rig.Media.SongMedia.Song, "Second");
}

TEST(Supervisor, AnExcludedSongIsGivenUpWhileItPlays) {
    SupervisorRig rig;
    rig.Excluded = true;
    rig.Flags.RecordCurrentSong = true;
    rig.Media.CurrentMedia.Song = "Unloved";
    rig.Ticks(7);
    EXPECT_FALSE(rig.Flags.RecordCurrentSong);
    EXPECT_TRUE(rig.Flags.RecordNextSong);
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#860 Unloved");
}

TEST(Supervisor, TheListsAreAskedOnlyForASongThatIsKept) {
    SupervisorRig rig;
    rig.Excluded = true;
    rig.Media.CurrentMedia.Song = "Unloved";
    rig.Ticks(7);
    EXPECT_FALSE(rig.Flags.RecordNextSong);
}

TEST(Supervisor, ShowsTheProvidersNameBetweenBlanksAndABulletForNone) {
    SupervisorRig rig;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblProvider[0].Caption(), " \xE2\x80\xA2 ");
    rig.Media.ProviderName = NoStationData;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblProvider[1].Caption(), " \xE2\x80\xA2 ");
    rig.Media.ProviderName = "Demo radio";
    rig.Tick();
    for (Label& label : rig.Form.lblProvider) EXPECT_EQ(label.Caption(), " Demo radio ");
}

TEST(Supervisor, ShowsTheMediaDataWhenOneOfThemDiffers) {
    SupervisorRig rig;
    rig.Media.CurrentMedia.StationName = "FM";
    rig.Media.CurrentMedia.Artist = "A & B";
    rig.Media.CurrentMedia.Song = "S";
    rig.Media.CurrentMedia.Album = "L";
    rig.Tick();
    EXPECT_EQ(rig.Form.txtStation.Text(), "FM");
    EXPECT_EQ(rig.Form.txtAlbum.Text(), "L");
    EXPECT_EQ(rig.Form.Caption(), "Corvetape \xC2\xB7 A & B \xC2\xB7 S");
    EXPECT_EQ(rig.PlainBar.Caption(), "A & B \xC2\xB7 S");
    EXPECT_EQ(rig.CoverBar.lblArtist.Caption(), "A & B");
    EXPECT_EQ(rig.CoverBar.lblSong.Caption(), "S");
    EXPECT_TRUE(rig.WasAsked("Tip A &&& B:\nS\nL"));
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Tip A &&& B:\nS\nL"));
}

TEST(Supervisor, WithoutATitleTheDefaultTextsAreShown) {
    SupervisorRig rig;
    rig.Media.CurrentMedia.Song = "S";
    rig.Tick();
    rig.Form.txtTimeRemaining.Text("1:00");
    rig.Form.lblStatus[3].Caption("x");
    rig.Media.CurrentMedia.Song = "";
    rig.Tick();
    EXPECT_EQ(rig.Form.Caption(), "#100");
    EXPECT_EQ(rig.Form.txtTimeRemaining.Text(), "");
    EXPECT_EQ(rig.Form.lblStatus[3].Caption(), "");
    EXPECT_EQ(rig.PlainBar.Caption(), rig.Form.Caption());
    EXPECT_EQ(rig.CoverBar.lblArtist.Caption(), "Corvetape");
    EXPECT_EQ(rig.CoverBar.lblSong.Caption(), "Corvetape");
    EXPECT_TRUE(rig.WasAsked("Tip #100"));
}

TEST(Supervisor, ShowsTheThreeStatesWhenTheyChange) {
    SupervisorRig rig;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Tray 0"));
    rig.Flags.RecordCurrentSong = true;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Tray 1"));
    rig.Flags.RecordCurrentSong = false;
    rig.Flags.RecordNextSong = true;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Tray 2"));
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("Tray 2"));
}

TEST(Supervisor, ATimedRecordingCountsDownOnlyWhileItRecords) {
    SupervisorRig rig;
    rig.Form.chkStopRecording[1].Value(1);
    rig.Flags.RecordingSecondsLeft = 120;
    rig.Tick();
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 120);
    rig.Flags.RecordCurrentSong = true;
    rig.Ticks(60);
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 60);
    EXPECT_EQ(rig.Form.txtRecordingPeriod.Text(), "1");
    rig.Form.chkStopRecording[1].Value(0);
    rig.Ticks(5);
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 60);
}

TEST(Supervisor, ATimedRecordingShowsItsMinutesOnlyWhenOneIsFull) {
    SupervisorRig rig;
    rig.Form.chkStopRecording[1].Value(1);
    rig.Form.txtRecordingPeriod.Text("5");
    rig.Flags.RecordCurrentSong = true;
    rig.Flags.RecordingSecondsLeft = 300;
    rig.Ticks(59);
    EXPECT_EQ(rig.Form.txtRecordingPeriod.Text(), "5");
    rig.Tick();
    EXPECT_EQ(rig.Form.txtRecordingPeriod.Text(), "4");
    rig.Ticks(60);
    EXPECT_EQ(rig.Form.txtRecordingPeriod.Text(), "3");
}

TEST(Supervisor, ATimedRecordingCountsRunsAndNotTheClock) {
    SupervisorRig rig;
    rig.Form.chkStopRecording[1].Value(1);
    rig.Flags.RecordCurrentSong = true;
    rig.Flags.RecordingSecondsLeft = 120;
    rig.Tick();
    rig.Time.Now.Hour += 1;
    rig.Watch.TimerFired();
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 118);
}

TEST(Supervisor, TheEndOfATimedRecordingLetsTheSongFinish) {
    SupervisorRig rig;
    rig.Form.chkStopRecording[1].Value(1);
    rig.Flags.RecordCurrentSong = true;
    rig.Flags.RecordingSecondsLeft = 2;
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStopRecording[0].Value(), 0);
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStopRecording[0].Value(), 1);
    EXPECT_FALSE(rig.Flags.QuitAtEndOfSong);
}

TEST(Supervisor, TheEndOfATimedRecordingEndsTheProgramIfTheUserWantsThat) {
    SupervisorRig rig;
    rig.Options.QuitAfterRecording = true;
    rig.Form.chkStopRecording[1].Value(1);
    rig.Flags.RecordCurrentSong = true;
    rig.Flags.RecordingSecondsLeft = 1;
    rig.Tick();
    EXPECT_TRUE(rig.Flags.QuitAtEndOfSong);
}

TEST(Supervisor, ReportsAnOverrunWhenOneBufferIsLeft) {
    SupervisorRig rig;
    rig.MaxBuffersUsed = 28;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblMaxBuffers.Caption(), "28");
    EXPECT_EQ(rig.MaxBuffersUsed, 28);
    rig.MaxBuffersUsed = 29;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Log ERROR #814 29"));
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#814 29");
    EXPECT_EQ(rig.MaxBuffersUsed, 0);
}

TEST(Supervisor, SaysThatMusicIsMissingOnlyIfFramesWereLost) {
    SupervisorRig rig;
    rig.MaxBuffersUsed = 29;
    rig.Signal.FramesLost = 441;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#870 29");
    rig.MaxBuffersUsed = 30;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#814 30") << "that loss was reported the last time";
}

TEST(Supervisor, CutsAtOnceWhenTheTimeIsShortenedBelowWhatHasPassed) {
    SupervisorRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Pause.EndOfSongTimer = 60;
    rig.Ticks(10);
    rig.Pause.EndOfSongTimer = 5;
    rig.Tick();
    EXPECT_TRUE(rig.Cut.CutPending);
    EXPECT_EQ(rig.Cut.FixedTimeSeconds, 0);
}

TEST(Supervisor, WithoutATimeNothingIsCutByTime) {
    SupervisorRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Pause.EndOfSongTimer = 0;
    rig.Ticks(10);
    EXPECT_FALSE(rig.Cut.CutPending);
}

TEST(Supervisor, CutsByTimeWhenTheTimeIsReached) {
    SupervisorRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Pause.EndOfSongTimer = 3;
    rig.Ring.AudioWriteIndex = 77;
    rig.Ticks(2);
    EXPECT_FALSE(rig.Cut.CutPending);
    rig.Tick();
    EXPECT_TRUE(rig.Cut.CutPending);
    EXPECT_TRUE(rig.Cut.SongBoundary);
    EXPECT_EQ(rig.Cut.CutIndex, 77);
    EXPECT_EQ(rig.Cut.FixedTimeSeconds, 0);
}

TEST(Supervisor, CountsTheTimeOfAPieceWhereSongsAreCutByTimeOnly) {
    for (const EndOfSong mode : {EndOfSong::Silence, EndOfSong::MediaData}) {
        SupervisorRig rig;
        rig.Pause.EndOfSongDetection = mode;
        rig.Pause.EndOfSongTimer = 3;
        rig.Ticks(10);
        EXPECT_EQ(rig.Cut.FixedTimeSeconds, 0);
        EXPECT_FALSE(rig.Cut.CutPending);
    }
}

TEST(Supervisor, DrainsEverySecondAndEndsTheProgramIfNoFileCanBeMade) {
    SupervisorRig rig;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("DrainAudioRing"));
    EXPECT_FALSE(rig.WasAsked("Unload"));
    rig.DrainWorks = false;
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("Unload"));
}

TEST(Supervisor, ChecksTheDiskOnceAMinuteAndThenTheUpdate) {
    SupervisorRig rig;
    int checks = 0;
    for (int i = 1; i <= 120; ++i) {
        rig.Tick();
        EXPECT_NE(rig.WasAsked("CheckDisk"), rig.WasAsked("CheckReserve"));
        if (!rig.WasAsked("CheckDisk")) continue;
        ++checks;
        EXPECT_EQ(i % 60, 0);
        EXPECT_TRUE(rig.WasAsked("CheckUpdate"));
    }
    EXPECT_EQ(checks, 2);
}

TEST(Supervisor, ADiskThatCannotBeAskedEndsTheProgram) {
    SupervisorRig rig;
    rig.DiskWorks = false;
    rig.Ticks(60);
    EXPECT_TRUE(rig.WasAsked("Unload"));
    EXPECT_FALSE(rig.WasAsked("CheckUpdate"));
}

}  // namespace
}  // namespace Corvetape::Test
