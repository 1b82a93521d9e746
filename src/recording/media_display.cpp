#include "recording/media_display.h"

#include <string>

#include "core/controls/message_texts.h"
#include "core/text/text.h"
#include "core/version.h"

namespace Corvetape {

namespace {

/// Shown in place of a provider's name while there is none.
constexpr const char* NoProviderText = " \xE2\x80\xA2 ";

}  // namespace

void MediaDisplay::ShowProvider() {
    const std::string& name = Parts.Media.ProviderName;
    const std::string shown = name.empty() || name == NoStationData ? NoProviderText : " " + name + " ";
    for (Label& label : Parts.Form.lblProvider) label.Caption(shown);
}

void MediaDisplay::ShowMedia() {
    const STATIONANDSONGDATA& media = Parts.Media.CurrentMedia;
    if (Parts.Form.txtStation.Text() == media.StationName && Parts.Form.txtArtist.Text() == media.Artist &&
        Parts.Form.txtSong.Text() == media.Song && Parts.Form.txtAlbum.Text() == media.Album) {
        return;
    }
    Parts.Form.txtStation.Text(media.StationName);
    Parts.Form.txtArtist.Text(media.Artist);
    Parts.Form.txtSong.Text(media.Song);
    Parts.Form.txtAlbum.Text(media.Album);
    if (media.Song.empty()) {
        ShowNoMedia();
    } else {
        ShowMediaTexts();
    }
}

void MediaDisplay::ShowNoMedia() {
    Parts.Form.txtTimeRemaining.Text("");
    Parts.Form.lblStatus[3].Caption("");
    Parts.CoverBar.lblArtist.Caption(frmCoverButtons::NoTitleText);
    Parts.CoverBar.lblSong.Caption(frmCoverButtons::NoTitleText);
    const std::string text = Say.Text(Message::NothingPlays.Key);
    Parts.Form.Caption(text);
    Parts.PlainBar.Caption(text);
    Parts.Screen.ShowTrayTip(text);
}

void MediaDisplay::ShowMediaTexts() {
    const STATIONANDSONGDATA& media = Parts.Media.CurrentMedia;
    Parts.Form.Caption(std::string(ProgramTitle) + " \xC2\xB7 " + media.Artist + " \xC2\xB7 " + media.Song);
    const std::string artist = media.Artist.empty() ? "" : media.Artist + " \xC2\xB7 ";
    Parts.PlainBar.Caption(artist + media.Song);
    Parts.CoverBar.lblArtist.Caption(media.Artist);
    Parts.CoverBar.lblSong.Caption(media.Song);
    // A tray tip takes an ampersand for a mark of the next letter; three of them show one.
    const auto shown = [](const std::string& field) { return ReplaceAll(field, "&", "&&&"); };
    Parts.Screen.ShowTrayTip(shown(media.Artist) + ":\n" + shown(media.Song) + "\n" + shown(media.Album));
}

void MediaDisplay::ShowState() {
    TrayState state = TrayState::Idle;
    if (Parts.Flags.RecordCurrentSong) {
        state = TrayState::Recording;
    } else if (Parts.Flags.RecordNextSong) {
        state = TrayState::Waiting;
    }
    if (state == Shown) return;
    Shown = state;
    Parts.Screen.ShowTrayState(state);
}

}  // namespace Corvetape
