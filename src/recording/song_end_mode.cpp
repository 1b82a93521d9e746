#include "recording/song_end_mode.h"

namespace Corvetape {

void SongEndMode::Choose(EndOfSong mode) {
    if (Pause.EndOfSongDetection != EndOfSong::Silence && mode != Pause.EndOfSongDetection) LeaveFor(mode);
    ShowControls(mode);
    Pause.EndOfSongDetection = mode;
}

/// What goes through the ring now is noticed another way from here on.
void SongEndMode::LeaveFor(EndOfSong next) {
    const bool byItself = next == EndOfSong::Automatic || Pause.EndOfSongDetection == EndOfSong::Automatic;
    if (next == EndOfSong::Silence || byItself) {
        Input.EmptyRing();  // no buffer of another way may overtake what it holds
    } else {
        Input.FinishCut();  // by time nobody knows of the song whose cut is pending
    }
}

void SongEndMode::ShowControls(EndOfSong mode) {
    const bool byMedia = mode == EndOfSong::MediaData;
    const bool byTime = mode == EndOfSong::FixedTime;
    const bool byItself = mode == EndOfSong::Automatic;
    const bool throughRing = byMedia || byTime;

    // By everything that is known, other lengths count.
    Form.txtLengthOfPause.Enabled(!byItself);
    for (Label& label : Form.lblLengthOfPause) label.Enabled(!byItself);
    Form.chkIgnoreSilence.Enabled(throughRing);
    Form.txtIgnoreSilence.Enabled(throughRing);
    Form.txtEndOfSongTimer.Enabled(byTime);
    Form.optDuplicatePartOfSong[0].Enabled(byMedia);
    Form.optDuplicatePartOfSong[1].Enabled(throughRing);
    if (throughRing) Form.optDuplicatePartOfSong[byTime ? 1 : 0].Value(true);
    for (const size_t side : {size_t{0}, size_t{1}}) Form.sldEndOfSongThreshold(side).Enabled(throughRing);
    for (Label& label : Form.lblEndOfSongThreshold) label.Enabled(throughRing);
    if (byMedia) Form.chkStationDataEnable.Value(1);  // its handler empties the media data
    if (!byTime) Form.chkStationDataEnable.Enabled(!byMedia);
    Form.tmrGetMediaData.Running(byMedia || byItself);
}

}  // namespace Corvetape
