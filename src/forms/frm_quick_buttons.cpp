#include "forms/frm_quick_buttons.h"
#include "core/version.h"

namespace Corvetape {

frmQuickButtons::frmQuickButtons()
    : Form("frmQuickButtons", ProgramTitle),
      picButtons(*this, "picButtons"),
      cmdSwitchDesign(*this, "cmdSwitchDesign"),
      cmdMinMax(*this, "cmdMinMax"),
      cmdQuickRecord(*this, "cmdQuickRecord"),
      cmdSkipThisRecording(*this, "cmdSkipThisRecording"),
      cmdStartStop(*this, "cmdStartStop"),
      picStart(*this, "picStart"),
      picStop(*this, "picStop"),
      picSkip(*this, "picSkip"),
      Picture1(*this, "Picture1") {
    Tag("quickbuttons");
    cmdSwitchDesign.TextKey("1300");
    cmdMinMax.TextKey("1301");
    cmdQuickRecord.Wording("1302", "Quick recording");
    cmdSkipThisRecording.Wording("1303", "Skip");
    cmdStartStop.Wording("1304", "Record");
    cmdStartStop.Tag("1304");
    picStop.Visible(false);
    cmdSkipThisRecording.Enabled(false);
    picSkip.Enabled(false);
}

}  // namespace Corvetape
