#include "forms/frm_wizard.h"

namespace Corvetape {

frmWizard::frmWizard()
    : Form("frmWizard", "Assistant", "1400"),
      picTop(*this, "picTop"),
      cmdMove(*this, "cmdMove"),
      imgMove(*this, "imgMove"),
      cmdOnOffline(*this, "cmdOnOffline"),
      cmdWizard(*this, "cmdWizard"),
      cmdPrint(*this, "cmdPrint"),
      picTopRight(*this, "picTopRight"),
      txtSearch(*this, "txtSearch"),
      cmdSearch(*this, "cmdSearch"),
      objWebBrowser1(*this, "objWebBrowser1"),
      objWebBrowser2(*this, "objWebBrowser2"),
      objScriptControl(*this, "objScriptControl"),
      tmrUnload(*this, "tmrUnload", 1000) {
    cmdMove[0].Wording("1401", "Back to last page");
    cmdMove[1].Wording("1402", "Forward to next page");
    cmdWizard.Wording("1403", "Assistant");
    cmdPrint.Wording("1404", "Print");
    txtSearch.TextKey("1405");
    cmdSearch.Wording("1406", "Search");
    cmdMove[0].Enabled(false);
    cmdMove[1].Enabled(false);
    cmdSearch.Enabled(false);
    cmdOnOffline.Enabled(false);
    cmdOnOffline.Visible(false);
    objWebBrowser2.Visible(false);
    objScriptControl.Visible(false);
}

}  // namespace Corvetape
