#include "platform/linux/desktop/screen_selections.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace Corvetape {

namespace {

/// What the library hands out belongs to the caller and is freed as C does it.
struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

template <typename Reply>
using Owned = std::unique_ptr<Reply, FreeReply>;

}  // namespace

bool IsScreenSelectionOwned(const std::string& name) {
    int screen = 0;
    const std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> display(
        xcb_connect(nullptr, &screen), xcb_disconnect);
    if (xcb_connection_has_error(display.get()) != 0) return false;
    const std::string whole = name + "_S" + std::to_string(screen);
    const auto length = static_cast<uint16_t>(whole.size());
    const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        display.get(), xcb_intern_atom(display.get(), 0, length, whole.c_str()), nullptr));
    if (!atom) return false;
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        display.get(), xcb_get_selection_owner(display.get(), atom->atom), nullptr));
    return owner && owner->owner != XCB_NONE;
}

}  // namespace Corvetape
