#include "recording/song_age.h"

#include <limits>

#include "core/controls/message_texts.h"
#include "core/text/artist_and_title.h"

namespace Corvetape {

namespace {

/// Highest age of a song in seconds, nine hours.
constexpr int16_t OldestAge = std::numeric_limits<int16_t>::max();

}  // namespace

void SongAge::Tick() {
    if (!Parts.Media.StationDataEnabled) return;
    if (Parts.Cut.SongBoundary) {
        Parts.Cut.SongBoundary = false;
        Age = 0;
        SongDataTaken = false;
    } else if (Age < OldestAge) {
        ++Age;
    } else {
        // A running number must not wrap to a young song, and every tenth of its values must still come.
        Age = OldestAge - 9;
    }
}

bool SongAge::IsDue() const {
    const MediaState& media = Parts.Media;
    if (!media.StationDataEnabled || SongDataTaken) return false;
    if (Age <= Parts.Options.EncodeDelay / 1000 + 1) return false;
    // Up to its cut the file holds the song before, which needs its record and its flags.
    if (Parts.Cut.CutPending) return false;
    if (Parts.Form.tmrEncodeFile.Running() || media.CurrentMedia.Song.empty()) return false;
    return media.CurrentMedia.Artist != media.SongMedia.Artist ||
           media.CurrentMedia.Song != media.SongMedia.Song;
}

void SongAge::TakeSongData() {
    if (!IsDue()) return;
    MediaState& media = Parts.Media;
    media.SongMedia = media.CurrentMedia;
    SongDataTaken = true;
    const std::string name = WatchedName(Parts.Options.MusicFileTemplate[1], media.CurrentMedia);
    if (!Parts.Flags.RecordCurrentSong || !Parts.Lists.IsSongExcluded(name)) return;
    Parts.Flags.WishNextSong(true);
    Excluded.Raise(media.SongMedia);
    Say.WriteAndShow(ReportKind::Info,
                     Say.Text(Message::IsOnExcludeList.Key, {ArtistAndTitle(media.SongMedia)}));
}

}  // namespace Corvetape
