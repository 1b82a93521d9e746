#include "app/search_break.h"

#include <utility>

#include "app/program_parts.h"
#include "app/wiring.h"
#include "core/controls/message_texts.h"

namespace Corvetape {

void SearchBreak::Begin() {
    RecordingFlags& flags = Parts.Memory.Flags;
    EmptyRing(Parts);
    if (flags.RecordCurrentSong && Parts.Writer.SongFileOpen()) {
        const std::string text = Parts.Messages.FormatMsg(Message::EndedBySearch.Key);
        Parts.Journal.WriteLog({"INFO", text});
        Parts.Memory.Form.lblStatus[1].Caption(text);
        Parts.Writer.EndWithoutPause();
        Parts.Writer.CloseSongFile();
    }
    Wanted = flags.RecordCurrentSong || flags.RecordNextSong;
    flags.RecordCurrentSong = false;
    flags.RecordNextSong = false;
    Parts.Recording.ShowFlags();
}

void SearchBreak::End() {
    if (!std::exchange(Wanted, false)) return;
    // By fixed time no other song will come, so the next piece begins at once.
    const bool byTime = Parts.Memory.Pause.EndOfSongDetection == EndOfSong::FixedTime;
    Parts.Memory.Form.chkStartStop[byTime ? 0 : 1].Value(1);
}

}  // namespace Corvetape
