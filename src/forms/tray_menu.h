#pragma once

#include "core/controls/control_array.h"
#include "core/controls/form_parts.h"

namespace Corvetape {

/// The icon in the notification area and its menu.
struct TrayMenu {
    explicit TrayMenu(Form& form);

    /// The pictures of the icon: 0 idle, 1 the current song is recorded, 2 the next one will be.
    ControlArray<Picture, 3> picTaskBar;
    Menu mnuTaskbar;

    /// 10 Restore, 15 Quick buttons, 20 Quick recording, 90 Quit; 19 and 89 are separators.
    SparseControlArray<MenuItem, 10, 15, 19, 20, 89, 90> mnuTaskbarItem;
};

}  // namespace Corvetape
