#include "recording/session.h"

namespace Corvetape {

Session::Session(SessionParts parts) : Parts(parts) {
    frmMain& form = Parts.Form;
    for (size_t index : {size_t{0}, size_t{1}}) {
        form.chkStartStop[index].Click.Connect([this, index] { StartStopClicked(index); });
    }
    form.chkStopRecording[0].Click.Connect([this] { StopAtEndOfSongClicked(); });
    form.cmdQuickRecord.Click.Connect([&form] {
        form.chkStartStop[0].Value(1);
        form.chkStopRecording[0].Value(1);
    });
    form.cmdStartStop.Click.Connect(
        [&form] { form.chkStartStop[0].Value(1 - form.chkStartStop[0].Value()); });
    form.cmdSkipThisRecording.Click.Connect([&form] { form.chkStartStop[1].Value(1); });
}

void Session::ShowFlags() {
    Following = true;
    Parts.Form.chkStartStop[0].Value(Parts.Flags.RecordCurrentSong ? 1 : 0);
    Parts.Form.chkStartStop[1].Value(Parts.Flags.RecordNextSong ? 1 : 0);
    Parts.Form.chkStopRecording[0].Value(Parts.Flags.StopAtEndOfSong ? 1 : 0);
    Following = false;
}

void Session::BreakOff() {
    if (Parts.Pieces.Active()) {
        Parts.Pieces.BreakOff();
        return;
    }
    BreakingOff = true;
    Parts.Form.chkStartStop[1].Value(1);
    BreakingOff = false;
}

void Session::GoOnWithNext() {
    Parts.Form.chkStartStop[Parts.Pieces.Active() ? 0 : 1].Value(1);
}

void Session::StartStopClicked(size_t index) {
    frmMain& form = Parts.Form;
    const bool ticked = form.chkStartStop[index].Value() != 0;
    ++Depth;
    if (index == 1) {
        Parts.Flags.WishNextSong(ticked);
        if (ticked) form.chkStartStop[0].Value(0);
    } else {
        Parts.Flags.WishThisSong(ticked);
        if (ticked) form.chkStartStop[1].Value(0);
        Parts.Look.ShowRecording();
    }
    FollowFlags();
    --Depth;
    const bool clicked = !Following && Depth == 0;
    const bool asksToRecord = clicked && ticked && !BreakingOff;
    if (asksToRecord && !Parts.Flags.RecordingEnabled) Parts.Resumption.Resume();
    // The boxes clear one another: one click cuts once, however many handlers it runs.
    if (Parts.Pieces.Active() && clicked) Parts.Pieces.CutAtOnce();
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

void Session::StopAtEndOfSongClicked() {
    const bool ticked = Parts.Form.chkStopRecording[0].Value() != 0;
    Parts.Flags.StopAtEndOfSong = ticked;
    if (ticked) Parts.Form.chkStopRecording[1].Value(0);
    Parts.Form.txtRecordingPeriod.Enabled(Parts.Form.chkStopRecording[1].Value() == 0);
}

}  // namespace Corvetape
