#include "forms/dlg_provider.h"
#include "core/version.h"

namespace Corvetape {

dlgProvider::dlgProvider()
    : Form("dlgProvider", ProgramTitle, "50000"),
      lblInfo(*this, "lblInfo"),
      Label1(*this, "Label1", -1, "50001"),
      cboProvider(*this, "cboProvider"),
      cmdOK(*this, "cmdOK", -1, "50002"),
      cmdCancel(*this, "cmdCancel", -1, "50003") {
    lblInfo.Caption(
        "Corvetape has determined that you are trying to record from a source for which no settings have yet "
        "been made on the \"Audio Devices\" and \"Pause Recognition\" tabs. To free you from making all "
        "these "
        "settings again you can take over the settings of another source (provider) now. Each setting can "
        "still be changed later.");
    Label1.Caption("Please select a provider to take the settings from");
    cmdOK.Caption("OK");
    cmdCancel.Caption("Cancel");
}

}  // namespace Corvetape
