// The supervisor's reactions to a long silence: notice, restart of the radio, end of the recording.
#include <utility>

#include "recording/supervisor.h"

namespace Corvetape {

Supervisor::Next Supervisor::WatchSilence() {
    const bool launching = Actions.LaunchInProgress();
    const int32_t silent = Parts.Signal.SilenceSeconds;
    if (silent >= Parts.Settings.InfoAfterSilence && !launching && !Parts.Pause.IgnoreSilence) {
        return ReactToSilence();
    }
    if (SilenceNoticeShown && !launching) SoundReturned();
    return Next::Continue;
}

Supervisor::Next Supervisor::ReactToSilence() {
    const int32_t silent = Parts.Signal.SilenceSeconds;
    ShowSilence();
    if (!std::exchange(SilenceNoticeShown, true)) {
        Actions.WriteLog("INFO", Text("705", {std::to_string(silent)}));
    }
    // A piece by time waits for no sound, so its silence is given up every second, before it is in a file.
    const bool plays = Actions.SongFileOpen() || Parts.Pause.EndOfSongDetection == EndOfSong::FixedTime;
    const bool recorded = Parts.Flags.RecordCurrentSong && plays;
    // A hand-edited interval of 0 would divide by zero; every second is then due.
    const int32_t interval = Parts.Settings.InfoAfterSilence;
    const bool due = interval <= 0 || silent % interval == 0;
    const bool wanted = Parts.Flags.RecordNextSong || Parts.Flags.RecordCurrentSong;
    if (due && wanted && Parts.Settings.RestartRadioIfSilent && !Parts.Lifecycle.WizardRequested &&
        Parts.Media.StationDataEnabled) {
        Actions.RestartRadio();
        Actions.BreakOff();
    }
    // A song that the silence broke off is not kept; the next one is.
    if (Parts.Flags.RecordCurrentSong && plays) Actions.BreakOff();
    // By time the piece is given up again every second, which the notice says already.
    if (recorded && Parts.Flags.RecordNextSong) ReportDecision(Text("862", {std::to_string(silent)}));
    if (silent >= Parts.Pause.QuitAfterSilence && !EndAfterSilenceDone) return EndAfterSilence();
    return Next::Continue;
}

void Supervisor::ShowSilence() {
    const RecordingFlags& flags = Parts.Flags;
    const bool waits = !flags.RecordingEnabled && (flags.RecordCurrentSong || flags.RecordNextSong);
    const std::string seconds = std::to_string(Parts.Signal.SilenceSeconds);
    Parts.Form.lblStatus[1].Caption(Text(waits ? "890" : "705", {seconds}));
}

Supervisor::Next Supervisor::EndAfterSilence() {
    frmMain& form = Parts.Form;
    const std::string minutes = form.txtQuitAfterSilence.Text();
    Actions.AbortSong();
    Actions.WriteLog("ERROR", Text("707", {minutes}));
    if (Parts.Lifecycle.DontAsk) {
        Actions.Unload();
        return Next::Stop;
    }
    if (Parts.Signal.SilenceStartSecond < Parts.Clock.TimeGetTime() / 1000) {
        Actions.WarningBox(Text("708", {minutes}));
    }
    form.chkStartStop[0].Value(0);
    EndAfterSilenceDone = true;
    return Next::Continue;
}

void Supervisor::SoundReturned() {
    Parts.Form.lblStatus[1].Caption("");
    Actions.WriteLog("INFO", Text("706"));
    SilenceNoticeShown = false;
    EndAfterSilenceDone = false;
    Parts.Flags.RecordingEnabled = true;
}

}  // namespace Corvetape
