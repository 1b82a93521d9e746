// The recording as one state machine: every state, every event, in all three modes.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <optional>
#include <string>

#include "watched_rig.h"

namespace Corvetape::Test {
namespace {

enum class UserState { Watching, Waiting, Recording, LastSong };

enum class UserEvent {
    TickCurrent,
    UntickCurrent,
    TickNext,
    UntickNext,
    TickStop,
    UntickStop,
    PressStartStop,
    PressQuickRecord,
    PressSkip,
    SongEnds,
    ShortSongEnds,
    TickMinutes,
    UntickMinutes,
    MinutesRunOut,
    SongIsExcluded,
    LongSilence,
};

const char* NameOf(UserState state) {
    switch (state) {
        case UserState::Watching:
            return "Watching";
        case UserState::Waiting:
            return "Waiting";
        case UserState::Recording:
            return "Recording";
        case UserState::LastSong:
            return "LastSong";
    }
    return "";
}

/// What the flags say; a text for combinations that are no state.
std::string StateOf(const RecordingFlags& flags) {
    const int bits =
        (flags.RecordCurrentSong ? 4 : 0) + (flags.RecordNextSong ? 2 : 0) + (flags.StopAtEndOfSong ? 1 : 0);
    switch (bits) {
        case 0:
            return NameOf(UserState::Watching);
        case 2:
            return NameOf(UserState::Waiting);
        case 4:
            return NameOf(UserState::Recording);
        case 5:
            return NameOf(UserState::LastSong);
        default:
            return "none (" + std::to_string(bits) + ")";
    }
}

void Bring(SessionRig& rig, UserState state) {
    if (state == UserState::Waiting) rig.Form.chkStartStop[1].Value(1);
    if (state == UserState::Recording || state == UserState::LastSong) rig.Form.chkStartStop[0].Value(1);
    if (state == UserState::LastSong) rig.Form.chkStopRecording[0].Value(1);
}

void Tick(CheckBox& box, bool wanted) {
    if ((box.Value() != 0) != wanted) box.Press();  // a disabled box cannot be pressed
}

/// What no control is pressed for.
void HappenByItself(WatchedRig& rig, UserEvent event) {
    switch (event) {
        case UserEvent::SongEnds:
        case UserEvent::ShortSongEnds:
            rig.EndSong();
            break;
        case UserEvent::MinutesRunOut:
            rig.Form.txtRecordingPeriod.Text("2");
            Tick(rig.Form.chkStopRecording[1], true);
            rig.Seconds(120);
            break;
        case UserEvent::SongIsExcluded:
            rig.Media.CurrentMedia.Song = "unloved";
            rig.Exclude("unloved");
            rig.Seconds(3);
            break;
        case UserEvent::LongSilence:
            // By silence the song has ended long before.
            if (rig.Pause.EndOfSongDetection == EndOfSong::Silence) rig.EndSong();
            rig.Signal.SilenceSeconds = 300;
            rig.Seconds(1);
            EXPECT_FALSE(rig.Flags.RecordingEnabled);
            EXPECT_FALSE(rig.Writer.SongFileOpen());
            break;
        default:
            ADD_FAILURE() << "no such event";
    }
}

void Happen(WatchedRig& rig, UserEvent event) {
    frmMain& form = rig.Form;
    switch (event) {
        case UserEvent::TickCurrent:
            form.chkStartStop[0].Value(1);
            break;
        case UserEvent::UntickCurrent:
            form.chkStartStop[0].Value(0);
            break;
        case UserEvent::TickNext:
            form.chkStartStop[1].Value(1);
            break;
        case UserEvent::UntickNext:
            form.chkStartStop[1].Value(0);
            break;
        case UserEvent::TickStop:
            Tick(form.chkStopRecording[0], true);
            break;
        case UserEvent::UntickStop:
            Tick(form.chkStopRecording[0], false);
            break;
        case UserEvent::TickMinutes:
            Tick(form.chkStopRecording[1], true);
            break;
        case UserEvent::UntickMinutes:
            Tick(form.chkStopRecording[1], true);
            Tick(form.chkStopRecording[1], false);
            break;
        case UserEvent::PressStartStop:
            form.cmdStartStop.Press();
            break;
        case UserEvent::PressQuickRecord:
            form.cmdQuickRecord.Press();
            break;
        case UserEvent::PressSkip:
            form.cmdSkipThisRecording.Press();
            break;
        default:
            HappenByItself(rig, event);
    }
}

using enum UserState;

struct Row {
    UserEvent Event;
    const char* Name;
    UserState To[4];  ///< from Watching, Waiting, Recording, LastSong
    bool BySilence = true;
    bool InOtherModes = true;
    std::optional<bool> ByTime{};  ///< where it differs from the other modes
};

constexpr Row Table[] = {
    {UserEvent::TickCurrent, "TickCurrent", {Recording, Recording, Recording, LastSong}},
    {UserEvent::UntickCurrent, "UntickCurrent", {Watching, Waiting, Watching, Watching}},
    {UserEvent::TickNext, "TickNext", {Waiting, Waiting, Waiting, Waiting}},
    {UserEvent::UntickNext, "UntickNext", {Watching, Watching, Recording, LastSong}},
    {UserEvent::TickStop, "TickStop", {Watching, Waiting, LastSong, LastSong}},
    {UserEvent::UntickStop, "UntickStop", {Watching, Waiting, Recording, Recording}},
    {UserEvent::PressStartStop, "PressStartStop", {Recording, Recording, Watching, Watching}},
    {UserEvent::PressQuickRecord, "PressQuickRecord", {LastSong, LastSong, LastSong, LastSong}},
    {UserEvent::PressSkip, "PressSkip", {Watching, Waiting, Waiting, Waiting}},
    {UserEvent::SongEnds, "SongEnds", {Watching, Recording, Recording, Watching}},
    {UserEvent::ShortSongEnds, "ShortSongEnds", {Watching, Recording, Recording, Watching}},
    {UserEvent::TickMinutes, "TickMinutes", {Watching, Waiting, Recording, Recording}},
    {UserEvent::UntickMinutes, "UntickMinutes", {Watching, Waiting, Recording, Recording}},
    {UserEvent::MinutesRunOut, "MinutesRunOut", {Watching, Waiting, LastSong, LastSong}},
    {UserEvent::SongIsExcluded, "SongIsExcluded", {Watching, Waiting, Waiting, Waiting}},
    {UserEvent::LongSilence, "LongSilence", {Watching, Watching, Watching, Watching}, true, false},
    // A song that the silence has broken off passes its wish on to the next one.
    {UserEvent::LongSilence, "LongSilence", {Watching, Waiting, Waiting, Waiting}, false, true, false},
    // By time no other song comes, so the wish ends with the recording.
    {UserEvent::LongSilence, "LongSilence", {Watching, Waiting, Watching, Watching}, false, false, true},
};

class SessionStates : public testing::TestWithParam<EndOfSong> {};

TEST_P(SessionStates, FollowTheTable) {
    const bool bySilence = GetParam() == EndOfSong::Silence;
    for (const Row& row : Table) {
        const bool byTime = GetParam() == EndOfSong::FixedTime;
        const bool otherwise = byTime ? row.ByTime.value_or(row.InOtherModes) : row.InOtherModes;
        if (!(bySilence ? row.BySilence : otherwise)) continue;
        for (const UserState from : {Watching, Waiting, Recording, LastSong}) {
            WatchedRig rig;
            rig.Pause.EndOfSongDetection = GetParam();
            if (row.Event == UserEvent::ShortSongEnds) rig.Pause.IgnoreShortSongs = 120;
            Bring(rig, from);
            rig.Play(300);
            Happen(rig, row.Event);
            EXPECT_EQ(StateOf(rig.Flags), NameOf(row.To[static_cast<size_t>(from)]))
                << row.Name << " in " << NameOf(from);
        }
    }
}

TEST_P(SessionStates, DecideAtTheCloseWhatIsKept) {
    for (const UserState state : {Watching, Waiting, Recording, LastSong}) {
        SessionRig rig;
        rig.Pause.EndOfSongDetection = GetParam();
        Bring(rig, state);
        rig.Closed.clear();
        rig.Play(300);
        rig.EndSong();
        ASSERT_EQ(rig.Closed.size(), 1u) << NameOf(state);
        const bool kept = state == Recording || state == LastSong;
        EXPECT_EQ(rig.Closed[0], kept ? SongFate::Kept : SongFate::Unwanted) << NameOf(state);
    }
}

INSTANTIATE_TEST_SUITE_P(AllModes, SessionStates,
                         testing::Values(EndOfSong::Silence, EndOfSong::MediaData, EndOfSong::FixedTime));

TEST(SessionControls, PressingRecordTwiceWithinASongLosesNothing) {
    SessionRig rig;
    rig.Form.chkStartStop[0].Value(1);
    rig.Play(100);
    rig.Form.cmdStartStop.Press();
    rig.Form.cmdStartStop.Press();
    rig.Play(100);
    rig.EndSong();
    ASSERT_EQ(rig.Closed.size(), 1u);
    EXPECT_EQ(rig.Closed[0], SongFate::Kept);
}

TEST(SessionControls, ASongIsKeptFromItsBeginningIfRecordIsPressedInItsMiddle) {
    SessionRig rig;
    rig.Play(100);
    rig.Form.cmdStartStop.Press();
    rig.Play(100);
    EXPECT_EQ(rig.Writer.SongBytes(), int64_t{200} * SessionRig::FramesPerBuffer * 4);
}

TEST(SessionControls, StopAtTheEndIsForARunningRecordingOnly) {
    SessionRig rig;
    EXPECT_FALSE(rig.Form.chkStopRecording[0].Enabled());
    rig.Form.chkStartStop[1].Value(1);
    EXPECT_FALSE(rig.Form.chkStopRecording[0].Enabled());
    EXPECT_TRUE(rig.Form.chkStopRecording[1].Enabled());
    EXPECT_TRUE(rig.Form.lblStopRecording.Enabled());
    rig.Form.chkStartStop[0].Value(1);
    EXPECT_TRUE(rig.Form.chkStopRecording[0].Enabled());
    rig.Form.chkStopRecording[0].Value(1);
    rig.Form.chkStartStop[0].Value(0);
    EXPECT_EQ(rig.Form.chkStopRecording[0].Value(), 0);
    EXPECT_FALSE(rig.Form.chkStopRecording[1].Enabled());
}

TEST(SessionControls, SkipNeedsMediaDataAndARecording) {
    SessionRig rig;
    rig.Form.chkStartStop[0].Value(1);
    EXPECT_TRUE(rig.Form.cmdSkipThisRecording.Enabled());
    rig.Form.chkStartStop[0].Value(0);
    EXPECT_FALSE(rig.Form.cmdSkipThisRecording.Enabled());
    rig.Media.StationDataEnabled = false;
    rig.Form.chkStartStop[0].Value(1);
    EXPECT_FALSE(rig.Form.cmdSkipThisRecording.Enabled());
}

TEST(SessionControls, ASongThatIsBrokenOffPassesTheWishOnWhateverEndsSongsButTheClock) {
    for (const EndOfSong mode : {EndOfSong::Silence, EndOfSong::MediaData}) {
        SessionRig rig;
        rig.Pause.EndOfSongDetection = mode;
        rig.Form.chkStartStop[0].Value(1);
        rig.Recording.BreakOff();
        EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 1);
        EXPECT_TRUE(rig.Flags.RecordNextSong);
        EXPECT_FALSE(rig.Flags.RecordCurrentSong);
    }
}

TEST(SessionControls, ATimedRecordingTakesItsMinutesFromTheBox) {
    SessionRig rig;
    rig.Form.chkStartStop[0].Value(1);
    rig.Form.txtRecordingPeriod.Text("90");
    rig.Form.chkStopRecording[1].Value(1);
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 5400);
    EXPECT_FALSE(rig.Form.txtRecordingPeriod.Enabled());
    rig.Form.chkStopRecording[1].Value(0);
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 0);
    EXPECT_TRUE(rig.Form.txtRecordingPeriod.Enabled());
}

TEST(SessionControls, APeriodMeansTheNumberThatItsCheckSees) {
    for (const char* text : {"90", " 90", "+90", "9e1", "90.0", "0090 "}) {
        SessionRig rig;
        rig.Form.txtRecordingPeriod.Text(text);
        EXPECT_FALSE(rig.Form.txtRecordingPeriod.RunValidate());
        EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 5400) << text;
        EXPECT_EQ(rig.Options.StopAfter, 90) << text;
        rig.Form.chkStopRecording[1].Value(1);
        EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 5400) << text;
    }
}

TEST(SessionControls, APeriodFromTheFileMayBeLongerThanAnyRecording) {
    SessionRig rig;
    rig.Form.txtRecordingPeriod.Text("99999999999");
    rig.Form.chkStopRecording[1].Value(1);
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, std::numeric_limits<int32_t>::max());
}

TEST(SessionControls, ATimedRecordingOfNoMinutesIsRefused) {
    for (const char* text : {"0", "", "abc", "-5"}) {
        SessionRig rig;
        rig.Form.chkStartStop[0].Value(1);
        rig.Form.txtRecordingPeriod.Text(text);
        rig.Form.chkStopRecording[1].Value(1);
        EXPECT_EQ(rig.Machine.Dialogs.Boxes.size(), 1U) << text;
        EXPECT_EQ(rig.Form.chkStopRecording[1].Value(), 0) << text;
    }
}

TEST(SessionControls, TheTwoWaysToStopExcludeEachOther) {
    SessionRig rig;
    rig.Form.chkStartStop[0].Value(1);
    rig.Form.chkStopRecording[0].Value(1);
    rig.Form.chkStopRecording[1].Value(1);
    EXPECT_EQ(rig.Form.chkStopRecording[0].Value(), 0);
    EXPECT_FALSE(rig.Flags.StopAtEndOfSong);
    rig.Form.chkStopRecording[0].Value(1);
    EXPECT_EQ(rig.Form.chkStopRecording[1].Value(), 0);
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 0);
}

TEST(SessionControls, AGoodPeriodCountsAtOnceAndARefusedOneNot) {
    SessionRig rig;
    rig.Form.txtRecordingPeriod.Text("2");
    EXPECT_FALSE(rig.Form.txtRecordingPeriod.RunValidate());
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 120);
    EXPECT_EQ(rig.Options.StopAfter, 2);
    rig.Form.txtRecordingPeriod.Text("9999");
    EXPECT_TRUE(rig.Form.txtRecordingPeriod.RunValidate());
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 120);
    EXPECT_EQ(rig.Options.StopAfter, 2);
}

TEST(SessionControls, TheEndOfAnyRecordingClearsTheTimedStop) {
    SessionRig rig;
    rig.Form.chkStartStop[0].Value(1);
    rig.Form.chkStopRecording[1].Value(1);
    rig.Form.chkStartStop[0].Value(0);
    EXPECT_EQ(rig.Form.chkStopRecording[1].Value(), 0);
    EXPECT_EQ(rig.Flags.RecordingSecondsLeft, 0);
}

TEST(SessionControls, TheBoxesFollowTheFlags) {
    SessionRig rig;
    rig.Flags.RecordNextSong = true;
    rig.Recording.ShowFlags();
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 1);
    EXPECT_EQ(rig.Form.chkStartStop[0].Value(), 0);
    rig.Flags = {.RecordingEnabled = true, .RecordCurrentSong = true, .StopAtEndOfSong = true};
    rig.Recording.ShowFlags();
    EXPECT_EQ(rig.Form.chkStartStop[0].Value(), 1);
    EXPECT_EQ(rig.Form.chkStartStop[1].Value(), 0);
    EXPECT_EQ(rig.Form.chkStopRecording[0].Value(), 1);
    rig.Flags.StopAtEndOfSong = false;
    rig.Recording.ShowFlags();
    EXPECT_EQ(rig.Form.chkStopRecording[0].Value(), 0);
}

TEST(SessionControls, TheBoxesExcludeEachOtherAlsoWhileTheyLagBehindTheFlags) {
    SessionRig rig;
    rig.Form.chkStartStop[1].Value(1);
    rig.Flags.RecordCurrentSong = true;  // a song has ended, and nobody has shown it yet
    rig.Flags.RecordNextSong = false;
    rig.Form.chkStartStop[1].Value(0);
    rig.Form.chkStartStop[1].Value(1);
    EXPECT_EQ(StateOf(rig.Flags), "Waiting");
    rig.Form.chkStartStop[1].Value(0);
    rig.Flags.RecordNextSong = true;
    rig.Form.chkStartStop[0].Value(1);
    EXPECT_EQ(StateOf(rig.Flags), "Recording");
}

TEST(SessionControls, AClickThatWantsARecordingWhileNothingIsWrittenAsksForIt) {
    SessionRig rig;
    rig.Media.StationDataEnabled = false;
    rig.Form.chkStartStop[1].Value(1);
    EXPECT_FALSE(rig.WasRefused()) << "it is written anyway";
    rig.Flags.RecordingEnabled = false;
    rig.Form.chkStartStop[0].Value(1);
    EXPECT_TRUE(rig.WasRefused());
    rig.Form.chkStartStop[0].Value(0);
    EXPECT_FALSE(rig.WasRefused()) << "nothing is wanted any more";
    rig.Flags.RecordNextSong = true;
    rig.Recording.ShowFlags();
    EXPECT_FALSE(rig.WasRefused()) << "nobody has clicked";
}

TEST(SessionControls, TheStateIsShownWhenTheCurrentSongsBoxChanges) {
    SessionRig rig;
    rig.Look.ShowRecording();
    rig.Form.chkStartStop[1].Value(1);
    EXPECT_FALSE(rig.Form.picStop.Visible());
    rig.Form.chkStartStop[0].Value(1);
    EXPECT_TRUE(rig.Form.picStop.Visible());
    rig.Form.chkStartStop[1].Value(1);
    EXPECT_FALSE(rig.Form.picStop.Visible());
}

TEST(SessionControls, ThePeriodCanBeTypedUnlessItRuns) {
    SessionRig rig;
    TextBox& period = rig.Form.txtRecordingPeriod;
    rig.Form.chkStartStop[0].Value(1);
    rig.Form.chkStopRecording[1].Value(1);
    EXPECT_FALSE(period.Enabled());
    period.Enabled(true);
    rig.Form.chkStartStop[1].Value(1);
    EXPECT_FALSE(period.Enabled()) << "a click on the recording boxes brings it into line";
    rig.Form.chkStartStop[0].Value(1);
    rig.Form.chkStopRecording[0].Value(1);
    EXPECT_TRUE(period.Enabled());
    period.Enabled(false);
    rig.Form.chkStopRecording[0].Value(0);
    EXPECT_TRUE(period.Enabled()) << "and so does one on the box of the last song";
}

TEST(SessionByTime, TurningRecordingOnBeginsANewFileNow) {
    SessionRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Cut.FixedTimeSeconds = 100;
    rig.Play(300);
    ASSERT_TRUE(rig.Writer.SongFileOpen());
    rig.Form.chkStartStop[0].Value(1);
    ASSERT_EQ(rig.Closed.size(), 1u);
    EXPECT_EQ(rig.Closed[0], SongFate::Unwanted);
    EXPECT_FALSE(rig.Writer.SongFileOpen());
    EXPECT_EQ(rig.Ring.AudioReadIndex, rig.Ring.AudioWriteIndex);
    EXPECT_EQ(rig.Cut.FixedTimeSeconds, 0);
    EXPECT_TRUE(rig.Flags.RecordCurrentSong);
}

TEST(SessionByTime, TurningItOffKeepsThePieceUpToNow) {
    SessionRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Form.chkStartStop[0].Value(1);
    rig.Closed.clear();
    rig.Play(300);
    rig.Form.chkStartStop[0].Value(0);
    ASSERT_EQ(rig.Closed.size(), 1u);
    EXPECT_EQ(rig.Closed[0], SongFate::Kept);
    EXPECT_FALSE(rig.Flags.RecordCurrentSong);
    EXPECT_EQ(rig.Cut.CutIndex, rig.Ring.AudioWriteIndex);
}

TEST(SessionByTime, BoxesThatFollowTheFlagsCutNothing) {
    SessionRig rig;
    rig.Pause.EndOfSongDetection = EndOfSong::FixedTime;
    rig.Play(300);
    rig.Flags.RecordCurrentSong = true;
    rig.Recording.ShowFlags();
    EXPECT_EQ(rig.Form.chkStartStop[0].Value(), 1);
    EXPECT_TRUE(rig.Closed.empty());
    EXPECT_TRUE(rig.Writer.SongFileOpen());
    rig.Form.chkStartStop[0].Value(0);
    EXPECT_EQ(rig.Closed.size(), 1u) << "a click cuts as ever";
}

TEST(SessionBySilence, TurningRecordingOffDropsTheRunningSongAtItsEnd) {
    SessionRig rig;
    rig.Form.chkStartStop[0].Value(1);
    rig.Play(100);
    rig.Form.chkStartStop[0].Value(0);
    EXPECT_TRUE(rig.Closed.empty());
    rig.EndSong();
    ASSERT_EQ(rig.Closed.size(), 1u);
    EXPECT_EQ(rig.Closed[0], SongFate::Unwanted);
}

}  // namespace
}  // namespace Corvetape::Test
