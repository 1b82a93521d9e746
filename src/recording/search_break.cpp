#include "recording/search_break.h"

#include <utility>

#include "core/controls/message_texts.h"

namespace Corvetape {

void SearchBreak::Begin() {
    RecordingFlags& flags = Parts.Flags;
    Parts.Input.EmptyRing();
    if (flags.RecordCurrentSong && Parts.Song.SongFileOpen()) {
        Parts.Say.WriteAndShow(ReportKind::Info, Parts.Say.Text(Message::EndedBySearch.Key));
        Parts.Song.EndWithoutPause();
        Parts.Song.CloseSongFile();
    }
    Wanted = flags.RecordCurrentSong || flags.RecordNextSong;
    flags.WishNothing();
    Parts.Recording.ShowFlags();
}

void SearchBreak::End() {
    if (std::exchange(Wanted, false)) Parts.Recording.GoOnWithNext();
}

}  // namespace Corvetape
