#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/tick_rig.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;

TEST(SecondTick, TwoTimerEventsWithinOneClockSecondGiveOneRun) {
    TickRig rig;
    rig.AdvanceSecond();
    rig.Watch.TimerFired();
    rig.Time.Now.Millisecond = 500;
    rig.Watch.TimerFired();
    EXPECT_EQ(rig.Lifecycle.Ticks, 1);
}

TEST(SecondTick, AJumpOfSeveralSecondsIsOneRun) {
    TickRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Tick();
    rig.Time.Now.Minute += 7;
    rig.Watch.TimerFired();
    EXPECT_EQ(rig.Lifecycle.Ticks, 2);
    EXPECT_EQ(rig.Cut.FixedTimeSeconds, 2);
}

TEST(SecondTick, MidnightIsJustAnotherSecond) {
    TickRig rig;
    rig.Time.Now = {2026, 3, 1, 23, 59, 58, 0};
    rig.Ticks(3);
    EXPECT_EQ(rig.Lifecycle.Ticks, 3);
}

TEST(SecondTick, ListsTheInputsOnTheSecondRunOnly) {
    TickRig rig;
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("FillInputDevices"));
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("FillInputDevices"));
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("FillInputDevices"));
}

TEST(SecondTick, EndsTheProgramWithoutAnyInput) {
    TickRig rig;
    rig.DevicesThere = false;
    rig.Tick();
    rig.Tick();
    EXPECT_THAT(rig.Asked, Contains("Unload"));
}

TEST(SecondTick, OpensTheAssistantOnTheSecondRunIfItWasAskedFor) {
    TickRig rig;
    rig.Lifecycle.WizardRequested = true;
    rig.Form.tbsMain.Select("TAB_ABOUT");
    rig.Ticks(2);
    EXPECT_TRUE(rig.WasAsked("OpenAssistant wizard.htm"));
    EXPECT_EQ(rig.Form.tbsMain.SelectedKey(), "TAB_ABOUT");
}

TEST(SecondTick, LeavesTheAboutPageAndNoOtherOnTheSecondRun) {
    for (const auto& [before, after] :
         {std::pair{"TAB_ABOUT", "TAB_RECORDING"}, {"TAB_AUDIO", "TAB_AUDIO"}}) {
        TickRig rig;
        rig.Form.tbsMain.Select(before);
        rig.Ticks(2);
        EXPECT_EQ(rig.Form.tbsMain.SelectedKey(), after);
    }
}

TEST(SecondTick, ShowsTheFirstPageUntilTheUserHasHadEnoughOfIt) {
    TickRig rig;
    rig.Form.chkNoStartupInfo.Value(0);
    rig.Ticks(2);
    EXPECT_TRUE(rig.WasAsked("Open COR1st.bat"));
    EXPECT_TRUE(rig.WasAsked("OpenAssistant 1st.htm"));
    EXPECT_TRUE(rig.Lifecycle.WizardRequested);
}

TEST(SecondTick, TheTimeSinceTheStartIsNoSilence) {
    TickRig rig;
    rig.Time.Nanoseconds = 10'000'900'000'000;
    rig.Ticks(2);
    EXPECT_EQ(rig.Signal.SilenceStartSecond, 10'002);
}

TEST(SecondTick, LooksForAProviderWhileThereIsNone) {
    TickRig rig;
    rig.Media.ProviderName = "";
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("ChooseProvider"));
    rig.Tick();
    EXPECT_FALSE(rig.WasAsked("ChooseProvider"));
}

TEST(SecondTick, WithoutMediaDataNothingIsAskedOfAProvider) {
    TickRig rig;
    rig.Media.ProviderName = "";
    rig.Media.StationDataEnabled = false;
    rig.Ticks(3);
    EXPECT_FALSE(rig.WasAsked("ChooseProvider"));
    EXPECT_FALSE(rig.WasAsked("GetStationData"));
    EXPECT_EQ(rig.Age.Seconds(), 0);
}

TEST(SecondTick, PollsEverySecondOfAYoungSongAndEveryTenthLater) {
    TickRig rig;
    int polls = 0;
    for (int i = 0; i < 40; ++i) {
        rig.Tick();
        if (rig.WasAsked("GetStationData")) ++polls;
    }
    // The age is 0 to 9 in the first ten runs, then 10, 20 and 30 are asked.
    EXPECT_EQ(polls, 13);
}

TEST(SecondTick, PollsEveryTenthSecondAlsoOfASongOfMoreThanNineHours) {
    TickRig rig;
    rig.Ticks(35'000);
    EXPECT_GT(rig.Age.Seconds(), 32'000) << "it does not become a young song again";
    for (int tens = 0; tens < 5; ++tens) {
        int polls = 0;
        for (int i = 0; i < 10; ++i) {
            rig.Tick();
            if (rig.WasAsked("GetStationData")) ++polls;
        }
        EXPECT_EQ(polls, 1);
    }
}

TEST(SecondTick, LeavesThePollsToTheirOwnTimerInMediaDataMode) {
    TickRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::MediaData;
    rig.Ticks(3);
    EXPECT_FALSE(rig.WasAsked("GetStationData"));
}

TEST(SecondTick, EachPollHandsTheCoverOn) {
    TickRig rig;
    rig.Media.CurrentMedia.Cover = "http://127.0.0.1/c.jpg";
    rig.Tick();
    EXPECT_TRUE(rig.WasAsked("LoadImage http://127.0.0.1/c.jpg"));
}

TEST(SecondTick, ABoundaryMakesTheSongYoungAgain) {
    TickRig rig;
    rig.Ticks(5);
    EXPECT_EQ(rig.Age.Seconds(), 5);
    rig.Cut.SongBoundary = true;
    rig.Tick();
    EXPECT_EQ(rig.Age.Seconds(), 0);
    EXPECT_FALSE(rig.Cut.SongBoundary);
}

TEST(SecondTick, TakesTheSongDataOverWhenTheSongIsOlderThanTheEncodeDelayAndASecond) {
    TickRig rig;
    rig.Media.CurrentMedia.Song = "New";
    rig.Ticks(6);
    EXPECT_EQ(rig.Media.SongMedia.Song, "");
    rig.Tick();
    EXPECT_EQ(rig.Media.SongMedia.Song, "New");
}

TEST(SecondTick, TheWaitForTheSongDataIsTheEncodeDelayInWholeSecondsAndOneMore) {
    struct Row {
        int32_t EncodeDelay;
        int Runs;  ///< the song's age then exceeds the wait
    };
    for (const Row row : {Row{0, 2}, Row{999, 2}, Row{1000, 3}, Row{5999, 7}, Row{30'000, 32}}) {
        TickRig rig;
        rig.Options.EncodeDelay = row.EncodeDelay;
        rig.Media.CurrentMedia.Song = "New";
        rig.Ticks(row.Runs - 1);
        EXPECT_EQ(rig.Media.SongMedia.Song, "") << row.EncodeDelay;
        rig.Tick();
        EXPECT_EQ(rig.Media.SongMedia.Song, "New") << row.EncodeDelay;
    }
}

TEST(SecondTick, TakesTheWholeRecordOverWhenArtistOrTitleDiffer) {
    for (const bool artist : {true, false}) {
        TickRig rig;
        STATIONANDSONGDATA& now = rig.Media.CurrentMedia;
        now.StationName = now.StationDescr = now.Artist = now.Song = now.Album = now.Cover = "new";
        rig.Media.SongMedia.Artist = artist ? "old" : "new";
        rig.Media.SongMedia.Song = artist ? "new" : "old";
        rig.Media.SongMedia.TempFileName = "file";
        rig.Ticks(7);
        EXPECT_EQ(rig.Media.SongMedia, now);
    }
}

TEST(SecondTick, TakesNothingOverOfTheSongThatIsInTheFile) {
    TickRig rig;
    rig.Media.CurrentMedia.Artist = rig.Media.SongMedia.Artist = "A";
    rig.Media.CurrentMedia.Song = rig.Media.SongMedia.Song = "S";
    rig.Media.CurrentMedia.Album = "late";
    rig.Exclude("S");
    rig.Flags.RecordCurrentSong = true;
    rig.Ticks(20);
    EXPECT_EQ(rig.Media.SongMedia.Album, "");
    EXPECT_TRUE(rig.Flags.RecordCurrentSong);
    rig.Media.CurrentMedia.Song = "Next";  // nothing was taken over for this song yet
    rig.Tick();
    EXPECT_EQ(rig.Media.SongMedia.Song, "Next");
}

TEST(SecondTick, TakesNothingOverWhileASongWaitsForItsTransfer) {
    TickRig rig;
    rig.Media.CurrentMedia.Song = "New";
    rig.Form.tmrEncodeFile.Running(true);
    rig.Ticks(20);
    EXPECT_EQ(rig.Media.SongMedia.Song, "");
    rig.Form.tmrEncodeFile.Running(false);
    rig.Tick();
    EXPECT_EQ(rig.Media.SongMedia.Song, "New");
}

TEST(SecondTick, TakesAnEmptyReadingNeverOver) {
    TickRig rig;
    rig.Media.SongMedia.Song = "Old";
    rig.Media.CurrentMedia.Artist = "Somebody";
    rig.Ticks(20);
    EXPECT_EQ(rig.Media.SongMedia.Song, "Old");
}

TEST(SecondTick, TakesOnePieceOverOnceASong) {
    TickRig rig;
    rig.Media.CurrentMedia.Song = "First";
    rig.Ticks(7);
    rig.Media.CurrentMedia.Song = "Second";
    rig.Ticks(20);
    EXPECT_EQ(rig.Media.SongMedia.Song, "First");
    rig.Cut.SongBoundary = true;
    rig.Ticks(8);
    EXPECT_EQ(rig.Media.SongMedia.Song, "Second");
}

TEST(SecondTick, AnExcludedSongIsGivenUpWhileItPlays) {
    TickRig rig;
    rig.Exclude("Unloved");
    rig.Flags.RecordCurrentSong = true;
    rig.Media.CurrentMedia.Song = "Unloved";
    rig.Ticks(7);
    EXPECT_FALSE(rig.Flags.RecordCurrentSong);
    EXPECT_TRUE(rig.Flags.RecordNextSong);
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#860 Unloved");
}

TEST(SecondTick, TheListsAreAskedOnlyForASongThatIsKept) {
    TickRig rig;
    rig.Exclude("Unloved");
    rig.Media.CurrentMedia.Song = "Unloved";
    rig.Ticks(7);
    EXPECT_FALSE(rig.Flags.RecordNextSong);
}

TEST(SecondTick, ShowsTheProvidersNameBetweenBlanksAndABulletForNone) {
    TickRig rig;
    rig.SourceThere = false;
    rig.Media.ProviderName = "";
    rig.Tick();
    EXPECT_EQ(rig.Form.lblProvider[0].Caption(), " \xE2\x80\xA2 ");
    EXPECT_EQ(rig.Media.ProviderName, NoStationData);
    rig.Tick();
    EXPECT_EQ(rig.Form.lblProvider[1].Caption(), " \xE2\x80\xA2 ");
    rig.Media.ProviderName = "Demo radio";
    rig.Tick();
    for (Label& label : rig.Form.lblProvider) EXPECT_EQ(label.Caption(), " Demo radio ");
}

TEST(SecondTick, ShowsTheMediaDataWhenOneOfThemDiffers) {
    TickRig rig;
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

TEST(SecondTick, WithoutATitleTheDefaultTextsAreShown) {
    TickRig rig;
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

TEST(SecondTick, ShowsTheThreeStatesWhenTheyChange) {
    TickRig rig;
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

TEST(SecondTick, ATimedRecordingCountsDownOnlyWhileItRecords) {
    TickRig rig;
    rig.Form.chkStopRecording[1].Value(1);
    rig.Flags.RecordingSecondsLeft = 120;
    rig.Tick();
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 120);
    rig.Flags.RecordCurrentSong = true;
    rig.Ticks(60);
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 60);
    EXPECT_EQ(rig.Form.txtRecordingPeriod.Text(), "1");
    rig.Form.chkStopRecording[1].Value(0);
    rig.Flags.RecordingSecondsLeft = 60;
    rig.Ticks(5);
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 60);
}

TEST(SecondTick, ATimedRecordingShowsItsMinutesOnlyWhenOneIsFull) {
    TickRig rig;
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

TEST(SecondTick, ATimedRecordingCountsRunsAndNotTheClock) {
    TickRig rig;
    rig.Form.chkStopRecording[1].Value(1);
    rig.Flags.RecordCurrentSong = true;
    rig.Flags.RecordingSecondsLeft = 120;
    rig.Tick();
    rig.Time.Now.Hour += 1;
    rig.Watch.TimerFired();
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 118);
}

TEST(SecondTick, TheEndOfATimedRecordingLetsTheSongFinish) {
    TickRig rig;
    rig.Form.chkStopRecording[1].Value(1);
    rig.Flags.RecordCurrentSong = true;
    rig.Flags.RecordingSecondsLeft = 2;
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStopRecording[0].Value(), 0);
    rig.Tick();
    EXPECT_EQ(rig.Form.chkStopRecording[0].Value(), 1);
    EXPECT_FALSE(rig.Flags.QuitAtEndOfSong);
}

TEST(SecondTick, TheEndOfATimedRecordingEndsTheProgramIfTheUserWantsThat) {
    TickRig rig;
    rig.Options.QuitAfterRecording = true;
    rig.Form.chkStopRecording[1].Value(1);
    rig.Flags.RecordCurrentSong = true;
    rig.Flags.RecordingSecondsLeft = 1;
    rig.Tick();
    EXPECT_TRUE(rig.Flags.QuitAtEndOfSong);
}

TEST(SecondTick, ReportsAnOverrunWhenOneBufferIsLeft) {
    TickRig rig;
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

TEST(SecondTick, SaysThatMusicIsMissingOnlyIfFramesWereLost) {
    TickRig rig;
    rig.MaxBuffersUsed = 29;
    rig.Signal.FramesLost = 441;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#870 29");
    rig.MaxBuffersUsed = 30;
    rig.Tick();
    EXPECT_EQ(rig.Form.lblStatus[1].Caption(), "#814 30") << "that loss was reported the last time";
}

TEST(SecondTick, CutsAtOnceWhenTheTimeIsShortenedBelowWhatHasPassed) {
    TickRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Pause.EndOfSongTimer = 60;
    rig.Ticks(10);
    rig.Pause.EndOfSongTimer = 5;
    rig.Tick();
    EXPECT_TRUE(rig.Cut.CutPending);
    EXPECT_EQ(rig.Cut.FixedTimeSeconds, 0);
}

TEST(SecondTick, WithoutATimeNothingIsCutByTime) {
    TickRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Pause.EndOfSongTimer = 0;
    rig.Ticks(10);
    EXPECT_FALSE(rig.Cut.CutPending);
}

TEST(SecondTick, CutsByTimeWhenTheTimeIsReached) {
    TickRig rig;
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

TEST(SecondTick, CountsTheTimeOfAPieceWhereSongsAreCutByTimeOnly) {
    for (const EndOfSong mode : {EndOfSong::Silence, EndOfSong::MediaData}) {
        TickRig rig;
        rig.Pause.EndOfSongDetection = mode;
        rig.Pause.EndOfSongTimer = 3;
        rig.Ticks(10);
        EXPECT_EQ(rig.Cut.FixedTimeSeconds, 0);
        EXPECT_FALSE(rig.Cut.CutPending);
    }
}

TEST(SecondTick, DrainsEverySecondAndEndsTheProgramIfNoFileCanBeMade) {
    for (const bool fails : {false, true}) {
        TickRig rig;
        rig.Pause.EndOfSongDetection = EndOfSong::MediaData;
        for (int i = 0; i < 300; ++i) rig.Ring.Put(rig.Buffer());
        if (fails) rig.Machine.Files.AddFault({.Pattern = "*.wav", .Operation = FileOperation::Create});
        rig.Tick();
        EXPECT_EQ(rig.WasAsked("Unload"), fails);
        EXPECT_EQ(rig.Writer.SongBytes() > 0, !fails);
    }
}

TEST(SecondTick, ChecksTheDiskOnceAMinuteAndEndsTheProgramIfItCannotBeAsked) {
    TickRig rig;
    rig.Machine.Files.AddFault({.Pattern = "*music", .Operation = FileOperation::FreeSpace});
    for (int i = 1; i <= 60; ++i) {
        rig.Tick();
        EXPECT_EQ(rig.WasAsked("Unload"), i == 60) << i;
    }
}

TEST(SecondTick, LooksAtTheReserveOfTheDiskInAllOtherSeconds) {
    TickRig rig;
    rig.Ticks(3);
    EXPECT_FALSE(rig.Flags.DisableAtEndOfSong);
    rig.Machine.Files.SetFreeSpace("/", 1000);
    rig.Tick();
    EXPECT_TRUE(rig.Flags.DisableAtEndOfSong);
}

}  // namespace
}  // namespace Corvetape::Test
