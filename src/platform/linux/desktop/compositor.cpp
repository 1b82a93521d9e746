#include "platform/linux/desktop/compositor.h"

#include "platform/linux/desktop/screen_selections.h"

namespace Corvetape {

bool CompositorRuns() {
    return IsScreenSelectionOwned("_NET_WM_CM");
}

}  // namespace Corvetape
