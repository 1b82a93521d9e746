#pragma once

#include "core/controls/control_array.h"

namespace Corvetape {

/// Tabs "White List" and "Blacklist": index 0 Include, 1 Exclude.
struct WatchPage {
    explicit WatchPage(Form& form);

    ControlArray<Label, 2> lblWatch;  ///< what the list is for
    ControlArray<MultiListBox, 2> lstWatch;
    ControlArray<Label, 2> lblNewWatch;  ///< names the text box
    ControlArray<TextBox, 2> txtWatch;
    ControlArray<CommandButton, 2> cmdAddToWatchList;
    ControlArray<CommandButton, 2> cmdDeleteFromWatchList;
    ControlArray<CommandButton, 2> cmdEditWatchList;
    CheckBox chkAutoExclude;
};

}  // namespace Corvetape
