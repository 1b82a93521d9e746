#pragma once

#include "core/control_array.h"

namespace Corvetape {

/// Tabs "White List" and "Blacklist": index 0 Include, 1 Exclude.
struct WatchPage {
    explicit WatchPage(Form& form)
        : lstWatch(form, "lstWatch"),
          txtWatch(form, "txtWatch"),
          cmdAddToWatchList(form, "cmdAddToWatchList"),
          cmdDeleteFromWatchList(form, "cmdDeleteFromWatchList"),
          cmdEditWatchList(form, "cmdEditWatchList"),
          chkAutoExclude(form, "chkAutoExclude") {}

    ControlArray<MultiListBox, 2> lstWatch;
    ControlArray<TextBox, 2> txtWatch;
    ControlArray<CommandButton, 2> cmdAddToWatchList;
    ControlArray<CommandButton, 2> cmdDeleteFromWatchList;
    ControlArray<CommandButton, 2> cmdEditWatchList;
    CheckBox chkAutoExclude;
};

}  // namespace Corvetape
