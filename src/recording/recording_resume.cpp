#include "recording/recording_resume.h"

#include "core/controls/message_texts.h"

namespace Corvetape {

void RecordingResume::Resume() {
    if (!Parts.Media.StationDataEnabled) {
        Say.Show(Say.Text(Message::MediaDataAreOff.Key));
        return;
    }
    if (!Parts.Disk.HasRoom()) {
        Say.Show(Say.Text(Message::NoRoomToRecord.Key));
        return;
    }
    // A disk that was nearly full was to end the recording; a switch of the command line still is.
    const bool byDisk = IsDiskMessage(Parts.Messages.PendingInfo) || Parts.Writer.SongFileError() != 0;
    if (byDisk) Parts.Flags.DisableAtEndOfSong = false;
    // A silence that ended the recording is over when there is sound again.
    if (Parts.Silence.Given()) return Parts.Silence.Show();
    Parts.Flags.ResumeForUser();
    Say.Show("");
}

}  // namespace Corvetape
