#include "recording/media_keys.h"

namespace Corvetape {

namespace {

// Items of the menu of the notification area.
constexpr size_t ShowWindowItem = 10;
constexpr size_t QuitItem = 90;

}  // namespace

MediaKeys::MediaKeys(frmMain& form, const RecordingFlags& flags, const MediaState& media,
                     MediaControls& controls)
    : Form(form), Flags(flags), Media(media), Controls(controls) {
    Tick = Form.tmr1Second.Timer.Listen([this] { Refresh(); });
    Controls.Follow(this);
    Refresh();
}

MediaKeys::~MediaKeys() {
    Controls.Follow(nullptr);
}

void MediaKeys::Refresh() {
    PlayerDisplay display;
    if (Flags.RecordingEnabled) {
        display.Status = Flags.RecordCurrentSong ? RecorderStatus::Recording : RecorderStatus::Listening;
    }
    const STATIONANDSONGDATA& song = Media.CurrentMedia;
    display.Artist = song.Artist;
    display.Title = song.Song;
    display.Album = song.Album;
    display.Cover = song.Cover;
    Controls.Show(display);
}

void MediaKeys::Keep(bool wanted) {
    // Both wishes end: whoever presses Stop does not expect the next song to be kept.
    if (!wanted) Form.chkStartStop[1].Value(0);
    Form.chkStartStop[0].Value(wanted ? 1 : 0);
}

void MediaKeys::Pressed(MediaButton button) {
    switch (button) {
        case MediaButton::Play:
            Keep(true);
            break;
        case MediaButton::Pause:
        case MediaButton::Stop:
            Keep(false);
            break;
        case MediaButton::PlayPause:
            Keep(!Flags.RecordCurrentSong);
            break;
        case MediaButton::Next:
            Form.cmdSkipThisRecording.Press();
            break;
        case MediaButton::Raise:
            Form.mnuTaskbarItem[ShowWindowItem].Press();
            break;
        case MediaButton::Quit:
            Form.mnuTaskbarItem[QuitItem].Press();
            break;
    }
    Refresh();
}

}  // namespace Corvetape
