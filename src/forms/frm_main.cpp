#include "forms/frm_main.h"

namespace Corvetape {

frmMain::frmMain()
    : Form("frmMain", "Corvetape"),
      RecordingPage(static_cast<Form&>(*this)),
      AudioPage(static_cast<Form&>(*this)),
      PausePage(static_cast<Form&>(*this)),
      EncoderPage(static_cast<Form&>(*this)),
      Options1Page(static_cast<Form&>(*this)),
      Options2Page(static_cast<Form&>(*this)),
      FoldersPage(static_cast<Form&>(*this)),
      LogPage(static_cast<Form&>(*this)),
      WatchPage(static_cast<Form&>(*this)),
      tbsMain(*this, "tbsMain"),
      lblStatus(*this, "lblStatus"),
      lblVersion(*this, "lblVersion"),
      chkQuickButtons(*this, "chkQuickButtons"),
      tmr1Second(*this, "tmr1Second", 500),
      tmrGetMediaData(*this, "tmrGetMediaData", 500),
      tmrEncodeFile(*this, "tmrEncodeFile", 0),
      tmrVU(*this, "tmrVU", 200),
      tmrMsgBox(*this, "tmrMsgBox", 1000) {
    for (const char* key :
         {"TAB_RECORDING", "TAB_AUDIO", "TAB_PAUSE", "TAB_MP3_WMA", "TAB_OPTIONS1", "TAB_OPTIONS2",
          "TAB_FOLDERS", "TAB_LOGFILE", "TAB_INCLUDE", "TAB_EXCLUDE", "TAB_ABOUT"}) {
        tbsMain.AddTab(key);
    }
    tbsMain.Select("TAB_RECORDING");
}

}  // namespace Corvetape
