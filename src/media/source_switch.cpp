#include "media/source_switch.h"

namespace Corvetape {

SourceSwitch::SourceSwitch(frmMain& form, ProviderHost& host, ProviderChoice& choice, SettingsStore& store)
    : Form(form), Host(host), Choice(choice), Store(store) {
    Form.chkStationDataEnable.Click.Connect([this] { Apply(); });
    Form.lblStationDataEnable.Click.Connect([this] { Form.chkStationDataEnable.Press(); });
}

void SourceSwitch::Apply() {
    const bool enabled = Form.chkStationDataEnable.Value() != 0;
    Host.Media.StationDataEnabled = enabled;
    Store.WriteSetting("Providers", "Enable", enabled ? 1 : 0);
    Form.cmdGetStationID.Enabled(enabled);
    for (Label& label : Form.lblMedia) label.Enabled(enabled);
    // Without media data nothing says when the next song begins.
    Form.cmdSkipThisRecording.Enabled(enabled && Host.Flags.RecordCurrentSong);
    Host.Flags.FollowMediaData(enabled);
    ClearMedia(Host.Media.SongMedia);
    if (enabled) {
        Choice.Drop();
        Host.Signal.PauseRecognition = -1;
    } else {
        Choice.SwitchOff();
    }
    for (Label& label : Form.lblProvider) label.Caption(" \xE2\x80\xA2 ");
}

}  // namespace Corvetape
