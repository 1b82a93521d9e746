#include "core/help_keys.h"

#include "core/controls/held.h"

namespace Corvetape {

void HelpKeys::Press(HelpKey key, bool alt, const std::string& tag) {
    if (Busy) return;
    const Held busy(Busy);
    switch (key) {
        case HelpKey::F1:
            return Pages.SetUrl(tag + ".htm", !alt);
        case HelpKey::F2:
            Flags.WizardRequested = true;
            return Pages.SetUrl("wizard.htm", !alt);
        case HelpKey::F3:
            return Pages.SetUrl("search.htm", true);
        case HelpKey::F12:
            return Pages.SetUrl(tag + ".htm", true);
    }
}

}  // namespace Corvetape
