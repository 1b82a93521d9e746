#include "recording/session.h"

#include <utility>

#include "core/text/numbers.h"

namespace Corvetape {

namespace {

constexpr int32_t SecondsPerMinute = 60;

/// The minutes in a text box as seconds; 0 for anything that begins with no number.
int32_t SecondsIn(const TextBox& box) {
    return RoundToInt32(LeadingNumber(box.Text()) * SecondsPerMinute);
}

}  // namespace

Session::Session(SessionParts parts, SessionActions actions) : Parts(parts), Actions(std::move(actions)) {
    frmMain& form = Parts.Form;
    for (size_t index : {size_t{0}, size_t{1}}) {
        form.chkStartStop[index].Click.Connect([this, index] { StartStopClicked(index); });
    }
    form.chkStopRecording[0].Click.Connect([this] { StopAtEndOfSongClicked(); });
    form.chkStopRecording[1].Click.Connect([this] { StopAfterMinutesClicked(); });
    form.cmdQuickRecord.Click.Connect([&form] {
        form.chkStartStop[0].Value(1);
        form.chkStopRecording[0].Value(1);
    });
    form.cmdStartStop.Click.Connect(
        [&form] { form.chkStartStop[0].Value(1 - form.chkStartStop[0].Value()); });
    form.cmdSkipThisRecording.Click.Connect([&form] { form.chkStartStop[1].Value(1); });
    form.txtRecordingPeriod.Validate = [this] {
        if (Actions.PeriodRefused()) return true;
        const int32_t seconds = SecondsIn(Parts.Form.txtRecordingPeriod);
        Parts.Flags.RecordingSecondsLeft = seconds;
        if (Actions.StorePeriod) Actions.StorePeriod(seconds / SecondsPerMinute);
        return false;
    };
}

void Session::ShowFlags() {
    Following = true;
    Parts.Form.chkStartStop[0].Value(Parts.Flags.RecordCurrentSong ? 1 : 0);
    Parts.Form.chkStartStop[1].Value(Parts.Flags.RecordNextSong ? 1 : 0);
    Parts.Form.chkStopRecording[0].Value(Parts.Flags.StopAtEndOfSong ? 1 : 0);
    Following = false;
}

void Session::BreakOff() {
    const RecordingFlags& flags = Parts.Flags;
    if (Parts.Pause.EndOfSongDetection != EndOfSong::FixedTime) {
        BreakingOff = true;
        Parts.Form.chkStartStop[1].Value(1);
        BreakingOff = false;
        return;
    }
    if (flags.RecordCurrentSong) BreakOffPiece();
}

void Session::BreakOffPiece() {
    RecordingFlags& flags = Parts.Flags;
    const bool last = flags.StopAtEndOfSong;
    // By position: what was skipped after a pause is silence too, and is not in the ring.
    const int32_t silent = Parts.Ring.UnreadFrom(Parts.Song.SilenceBegin());
    const int32_t heard = Parts.Ring.Unread() - silent;  // that waits in the ring, before the silence
    const bool hasPiece = Parts.Song.SongFileOpen() || heard > 0;
    Parts.Cut.Settle();
    if (heard > 0) {
        Parts.Cut.CutPending = true;
        Parts.Cut.CutIndex = Parts.Ring.Wrapped(int64_t{Parts.Ring.AudioWriteIndex} - silent);
        Actions.CutNow();
        Parts.Cut.Settle();
    } else {
        Parts.Song.TakeSilenceOff();
        Parts.Song.CloseSongFile(SongEnd::Boundary);
    }
    Parts.Cut.FixedTimeSeconds = 0;
    Parts.Ring.AudioReadIndex = Parts.Ring.AudioWriteIndex;
    const bool kept = hasPiece && Parts.Media.SongMedia.TempFileName == Parts.Song.SongBaseName();
    // Where the disk is nearly full, recording has ended with this piece.
    if (kept || !flags.RecordingEnabled) return;
    flags.RecordCurrentSong = true;
    flags.StopAtEndOfSong = last;
}

void Session::StartStopClicked(size_t index) {
    frmMain& form = Parts.Form;
    const bool ticked = form.chkStartStop[index].Value() != 0;
    ++Depth;
    if (index == 1) {
        Parts.Flags.RecordNextSong = ticked;
        if (ticked) {
            form.chkStartStop[0].Value(0);
            Parts.Flags.RecordCurrentSong = false;  // the box may lag behind its flag, and was clear already
        }
    } else {
        Parts.Flags.RecordCurrentSong = ticked;
        if (ticked) {
            form.chkStartStop[1].Value(0);
            Parts.Flags.RecordNextSong = false;
        }
        Actions.ShowRecordingState();
    }
    FollowFlags();
    --Depth;
    const bool clicked = !Following && Depth == 0;
    const bool asksToRecord = clicked && ticked && !BreakingOff;
    if (asksToRecord && !Parts.Flags.RecordingEnabled && Actions.ResumeRecording) {
        Actions.ResumeRecording();
    }
    // The boxes clear one another: one click cuts once, however many handlers it runs.
    if (Parts.Pause.EndOfSongDetection == EndOfSong::FixedTime && clicked) CutAtOnce();
}

void Session::FollowFlags() {
    frmMain& form = Parts.Form;
    const bool current = Parts.Flags.RecordCurrentSong;
    const bool any = current || Parts.Flags.RecordNextSong;
    if (!current) form.chkStopRecording[0].Value(0);
    if (!any) form.chkStopRecording[1].Value(0);
    form.chkStopRecording[0].Enabled(current);
    form.chkStopRecording[1].Enabled(any);
    form.lblStopRecording.Enabled(any);
    form.txtRecordingPeriod.Enabled(form.chkStopRecording[1].Value() == 0);
    form.cmdSkipThisRecording.Enabled(Parts.Media.StationDataEnabled && current);
}

void Session::CutAtOnce() {
    RecordingFlags& flags = Parts.Flags;
    Parts.Cut.Ended.reset();  // the end of song was by media data a moment ago
    if (flags.RecordCurrentSong) {
        flags.RecordCurrentSong = false;
        // What ends here is what nobody wanted, and not the song that recording is to end with.
        const bool last = std::exchange(flags.DisableAtEndOfSong, false);
        Parts.Song.CloseSongFile();
        flags.DisableAtEndOfSong = last;
        Parts.Cut.FixedTimeSeconds = 0;
        Parts.Ring.AudioReadIndex = Parts.Ring.AudioWriteIndex;
        flags.RecordCurrentSong = true;
        return;
    }
    const bool waiting = flags.RecordNextSong;
    flags.RecordCurrentSong = true;
    Parts.Cut.CutPending = true;
    Parts.Cut.CutIndex = Parts.Ring.AudioWriteIndex;
    Actions.CutNow();
    Parts.Cut.FixedTimeSeconds = 0;
    flags.RecordCurrentSong = false;
    flags.RecordNextSong = waiting;  // a discarded short piece must not use up the wish for the next one
}

void Session::StopAtEndOfSongClicked() {
    const bool ticked = Parts.Form.chkStopRecording[0].Value() != 0;
    Parts.Flags.StopAtEndOfSong = ticked;
    if (ticked) Parts.Form.chkStopRecording[1].Value(0);
    Parts.Form.txtRecordingPeriod.Enabled(Parts.Form.chkStopRecording[1].Value() == 0);
}

void Session::StopAfterMinutesClicked() {
    frmMain& form = Parts.Form;
    if (form.chkStopRecording[1].Value() != 0) {
        form.chkStopRecording[0].Value(0);
        Parts.Flags.RecordingSecondsLeft = SecondsIn(form.txtRecordingPeriod);
        if (Parts.Flags.RecordingSecondsLeft <= 0) {
            Actions.RefuseZeroMinutes();
            form.chkStopRecording[1].Value(0);
        }
    } else {
        Parts.Flags.RecordingSecondsLeft = 0;
    }
    form.txtRecordingPeriod.Enabled(form.chkStopRecording[1].Value() == 0);
}

}  // namespace Corvetape
