#include "forms/dlg_language.h"
#include "core/version.h"

namespace Corvetape {

dlgLanguage::dlgLanguage()
    : Form("dlgLanguage", ProgramTitle),
      Label1(*this, "Label1"),
      cboLanguage(*this, "cboLanguage"),
      flist(*this, "flist"),
      cmdOK(*this, "cmdOK", -1, "1430") {
    Label1.Caption("Please select your language! Bitte w\xC3\xA4hlen Sie Ihre Sprache!");
    cmdOK.Caption("OK");
    flist.Visible(false);
}

}  // namespace Corvetape
