#include "recording/song_notices.h"

#include "core/controls/message_texts.h"
#include "core/text/placeholders.h"

namespace Corvetape {

namespace {

/// What the song is called: by its media data, else by its file.
std::string NameOf(const TransferredSong& song) {
    const STATIONANDSONGDATA& media = song.Media;
    if (!media.Artist.empty() && !media.Song.empty()) return media.Artist + " - " + media.Song;
    if (!media.Song.empty()) return media.Song;
    return PathPart(song.MusicFile.empty() ? song.TempFile : song.MusicFile, PathPiece::NameWithoutExtension);
}

}  // namespace

void SongNotices::SongTransferred(const TransferredSong& song) {
    if (!Options.NotifySongs) return;
    const MessageText& message = song.Problem.empty() ? Message::SongIsKept : Message::MusicFileNotMade;
    // The name is a title, which is plain text everywhere: in the text some desktops would read it as markup.
    Desktop.Notify({NameOf(song), Texts.FormatMsg(message.Key)});
}

}  // namespace Corvetape
