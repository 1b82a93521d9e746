#include "recording/media_poll.h"

#include <utility>

#include "core/controls/held.h"

namespace Corvetape {

MediaPoll::MediaPoll(MediaPollParts parts) : Parts(parts) {
    Parts.Form.tmrGetMediaData.Timer.Connect([this] { Tick(); });
}

void MediaPoll::Tick() {
    if (Parts.Pause.EndOfSongDetection == EndOfSong::Automatic) return;
    if (Busy || Parts.Lifecycle.Ticks < 2) return;  // the first second belongs to the start
    const Held busy(Busy);
    const bool running = Parts.Form.tmrGetMediaData.Running();
    MediaState& media = Parts.Media;
    media.PreviousMedia = media.CurrentMedia;
    // A source that is lost takes what it said of the song with it. Others poll too, before the end of song
    // is by media data.
    const auto forgetLost = [&] {
        if (std::exchange(LastSource, media.ProviderName) != media.ProviderName) LastTitled = {};
    };
    forgetLost();
    if (!media.PreviousMedia.Song.empty()) LastTitled = media.PreviousMedia;
    Parts.Providers.GetStationData();
    forgetLost();
    if (Parts.Media.CurrentMedia.Song.empty()) return;
    Parts.Providers.LoadImage();
    const STATIONANDSONGDATA ended = std::exchange(LastTitled, Parts.Media.CurrentMedia);
    if (!Compare()) return;
    Parts.Change.NoteChange(ended);
    // The settings of another source may have ended the cuts by media data. Nobody would carry this one out
    // before its place in the ring is long gone.
    if (running && !Parts.Form.tmrGetMediaData.Running()) return;
    Parts.Change.EndSong(ended);
}

void TitleCut::NoteChange(const STATIONANDSONGDATA& ended) {
    Parts.Signal.History.ReplaceLast(MarkMediaChange);
    if (ended.Song.empty()) {
        Parts.Cut.NoteFirstTitle();
    } else {
        Parts.Cut.NoteBoundary();
    }
}

void TitleCut::EndSong(const STATIONANDSONGDATA& ended) {
    SettleEarlierCut();
    // A cut that is pending still moves: what is between them goes with the song before.
    std::optional<EndedSong>& song = Parts.Cut.Ended;
    if (!song) song = EndedSong{ended, Parts.Flags.RecordCurrentSong, {}, Parts.Flags.QuitAtEndOfSong};
    Parts.Flags.PassOn();
    Parts.Recording.ShowFlags();
    Parts.Cut.RaiseByTitle(Parts.Ring.AudioWriteIndex);
}

/// Carries out the cut of an earlier change if it is due, or if only the song since then is wanted.
void TitleCut::SettleEarlierCut() {
    const CutState& cut = Parts.Cut;
    // While the input stands still, titles come and go of which nothing was heard.
    if (!cut.CutPending || cut.CutIndex == Parts.Ring.AudioWriteIndex) return;
    const bool onlyThisOne = Parts.Flags.RecordCurrentSong && cut.Ended && !cut.Ended->Wanted;
    if (!Parts.Drain.DrainAudioRing(onlyThisOne)) Requests.End.Raise();
}

bool MediaPoll::Compare() {
    MediaState& media = Parts.Media;
    const STATIONANDSONGDATA& now = media.CurrentMedia;
    const STATIONANDSONGDATA& before = media.PreviousMedia;
    if (now.Artist != before.Artist || now.Song != before.Song) return true;
    // A late album or cover still reaches the song in the file. Up to the cut that is another one, and up to
    // its transfer the record is: what is reported now comes with the take-over.
    const bool taken = !Parts.Cut.CutPending && !Parts.Form.tmrEncodeFile.Running() &&
                       media.SongMedia.Artist == now.Artist && media.SongMedia.Song == now.Song;
    if (!taken) return false;
    if (now.Album != before.Album) media.SongMedia.Album = now.Album;
    if (now.Cover != before.Cover) media.SongMedia.Cover = now.Cover;
    return false;
}

}  // namespace Corvetape
