#include "recording/media_poll.h"

#include <utility>

namespace Corvetape {

MediaPoll::MediaPoll(MediaPollParts parts, MediaPollActions actions)
    : Parts(parts), Actions(std::move(actions)) {
    Parts.Form.tmrGetMediaData.Timer.Connect([this] { Tick(); });
}

void MediaPoll::Tick() {
    if (!Actions.Ready()) return;
    MediaState& media = Parts.Media;
    media.PreviousMedia = media.CurrentMedia;
    Actions.GetStationData();

    const STATIONANDSONGDATA& now = media.CurrentMedia;
    const STATIONANDSONGDATA& before = media.PreviousMedia;
    if (now.Song.empty()) return;
    Actions.LoadImage(now.Cover);

    if (now.Artist == before.Artist && now.Song == before.Song) {
        // A late album or cover still reaches the song in the file.
        if (now.Album != before.Album) media.SongMedia.Album = now.Album;
        if (now.Cover != before.Cover) media.SongMedia.Cover = now.Cover;
        return;
    }
    Parts.Signal.History.ReplaceLast(MarkMediaChange);
    Parts.Cut.SongBoundary = true;
    Parts.Cut.CutIndex = Parts.Ring.AudioWriteIndex;
    Parts.Cut.CutPending = true;
}

}  // namespace Corvetape
