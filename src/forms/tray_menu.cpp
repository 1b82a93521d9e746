#include "forms/tray_menu.h"

namespace Corvetape {

TrayMenu::TrayMenu(Form& form)
    : picTaskBar(form, "picTaskBar"), mnuTaskbar(form, "mnuTaskbar"), mnuTaskbarItem(form, "mnuTaskbarItem") {
    mnuTaskbar.Caption("Taskbar");
    mnuTaskbarItem[10].Wording("1260", "Restore");
    mnuTaskbarItem[15].Wording("1261", "Quick buttons");
    mnuTaskbarItem[19].Caption(std::string(MenuItem::SeparatorCaption));
    mnuTaskbarItem[20].Wording("1262", "Quick recording");
    mnuTaskbarItem[89].Caption(std::string(MenuItem::SeparatorCaption));
    mnuTaskbarItem[90].Wording("1263", "Quit");
}

}  // namespace Corvetape
