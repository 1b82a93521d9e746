#include "recording/silence_watch.h"

#include <cstdint>
#include <string>

#include "core/controls/message_texts.h"

namespace Corvetape {

bool SilenceWatch::Tick() {
    const bool launching = Actors.Radio.Loading();
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
    if (Actors.Radio.RestartIfDue(Facts.Signal.SilenceSeconds)) BreakOff();
    // A song that the silence broke off is not kept; the next one is.
    if (flags.RecordCurrentSong && plays) BreakOff();
    // By time the piece is given up again every second, which the notice says already.
    if (!recorded || !flags.RecordNextSong) return;
    Say.WriteAndShow(ReportKind::Info, Say.Text(Message::BrokenOffBySilence.Key,
                                                {std::to_string(Facts.Signal.SilenceSeconds)}));
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
