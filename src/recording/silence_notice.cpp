#include "recording/silence_notice.h"

#include <string>
#include <utility>

#include "core/controls/message_texts.h"

namespace Corvetape {

void SilenceNotice::Give() {
    Show();
    if (std::exchange(IsGiven, true)) return;
    Say.Write(ReportKind::Info, Say.Text(Message::NoSound.Key, {std::to_string(Signal.SilenceSeconds)}));
}

void SilenceNotice::Show() {
    const bool waits = !Flags.RecordingEnabled && (Flags.RecordCurrentSong || Flags.RecordNextSong);
    Say.Show(Say.Text(waits ? Message::SoundIsAwaited.Key : Message::NoSound.Key,
                      {std::to_string(Signal.SilenceSeconds)}));
}

void SilenceNotice::TakeBack() {
    Say.Show("");
    Say.Write(ReportKind::Info, Say.Text(Message::SoundIsBack.Key));
    IsGiven = false;
}

}  // namespace Corvetape
