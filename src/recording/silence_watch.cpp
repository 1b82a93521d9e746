#include "recording/silence_watch.h"

#include <cstdint>
#include <string>

#include "core/controls/message_texts.h"

namespace Corvetape {

bool SilenceWatch::Tick() {
    const bool launching = Actors.Launcher.BrowserLoading();
    const int32_t silent = Facts.Signal.SilenceSeconds;
    if (silent < Facts.Options.InfoAfterSilence || launching || Facts.Pause.IgnoreSilence) {
        if (Notice.Given() && !launching) SoundReturned();
        return true;
    }
    Notice.Give();
    BreakOffSong();
    if (silent >= Facts.Pause.QuitAfterSilence && !RecordingEnded) return EndRecording();
    return true;
}

/// By everything that is known a song ends where a silence begins, and no silence breaks one off.
void SilenceWatch::BreakOff() {
    if (Facts.Pause.EndOfSongDetection != EndOfSong::Automatic) Actors.Recording.BreakOff();
}

void SilenceWatch::BreakOffSong() {
    const RecordingFlags& flags = Actors.Flags;
    // A piece by time waits for no sound, so its silence is given up every second, before it is in a file.
    const bool plays = Actors.Songs.SongFileOpen() || Facts.Pause.EndOfSongDetection == EndOfSong::FixedTime;
    const bool recorded = flags.RecordCurrentSong && plays;
    RestartRadioIfDue();
    // A song that the silence broke off is not kept; the next one is.
    if (flags.RecordCurrentSong && plays) BreakOff();
    // By time the piece is given up again every second, which the notice says already.
    if (!recorded || !flags.RecordNextSong) return;
    Say.WriteAndShow(ReportKind::Info, Say.Text(Message::BrokenOffBySilence.Key,
                                                {std::to_string(Facts.Signal.SilenceSeconds)}));
}

void SilenceWatch::RestartRadioIfDue() {
    // A hand-edited interval of 0 would divide by zero; every second is then due.
    const int32_t interval = Facts.Options.InfoAfterSilence;
    const bool due = interval <= 0 || Facts.Signal.SilenceSeconds % interval == 0;
    const bool wanted = Actors.Flags.RecordNextSong || Actors.Flags.RecordCurrentSong;
    if (!due || !wanted || !Facts.Options.RestartRadioIfSilent || Facts.Lifecycle.WizardRequested ||
        !Facts.Media.StationDataEnabled) {
        return;
    }
    Actors.Providers.RestartRadio();
    BreakOff();
}

bool SilenceWatch::EndRecording() {
    const std::string minutes = Actors.Form.txtQuitAfterSilence.Text();
    const bool aborted = Actors.Songs.AbortSong();
    Say.Write(ReportKind::Error, Say.Text(Message::EndedBySilence.Key, {minutes}));
    if (Facts.Lifecycle.DontAsk) return false;
    if (Facts.Signal.SilenceStartSecond < Facts.Time.TimeGetTime() / 1000) {
        Say.Box(Say.Text(Message::EndedBySilenceHint.Key, {minutes}), DialogIcon::Exclamation);
    }
    Actors.Form.chkStartStop[0].Value(0);
    RecordingEnded = true;
    return aborted;
}

void SilenceWatch::SoundReturned() {
    Notice.TakeBack();
    RecordingEnded = false;
    Actors.Flags.ResumeAfterSilence();
}

}  // namespace Corvetape
