#include "forms/watch_page.h"

namespace Corvetape {

WatchPage::WatchPage(Form& form)
    : lblWatch(form, "lblWatch"),
      lstWatch(form, "lstWatch"),
      lblNewWatch(form, "lblNewWatch"),
      txtWatch(form, "txtWatch"),
      cmdAddToWatchList(form, "cmdAddToWatchList"),
      cmdDeleteFromWatchList(form, "cmdDeleteFromWatchList"),
      cmdEditWatchList(form, "cmdEditWatchList"),
      chkAutoExclude(form, "chkAutoExclude") {
    lblWatch[0].Wording("1210", "Songs on this list are always recorded:");
    lblWatch[1].Wording("1211", "Songs on this list are not recorded:");
    lstWatch[0].TextKey("1212");
    lstWatch[1].TextKey("1213");
    lblNewWatch[0].Wording("1214", "New entry:");
    lblNewWatch[1].Wording("1215", "New entry:");
    txtWatch[0].TextKey("1216");
    txtWatch[1].TextKey("1217");
    cmdAddToWatchList[0].Wording("1218", "Add");
    cmdAddToWatchList[1].Wording("1219", "Add");
    cmdDeleteFromWatchList[0].Wording("1220", "Delete");
    cmdDeleteFromWatchList[1].Wording("1221", "Delete");
    cmdEditWatchList[0].Wording("1222", "Edit file...");
    cmdEditWatchList[1].Wording("1223", "Edit file...");
    chkAutoExclude.Wording("1224", "Add every recorded song to this list");
}

}  // namespace Corvetape
