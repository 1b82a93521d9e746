#include "platform/linux/browser/x11_windows.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace Corvetape {

namespace {

constexpr size_t LongestText = 255;         // in characters
constexpr uint32_t LongestTextWords = 256;  // of four bytes, as long as a character can be
constexpr uint32_t MostWindows = 4096;

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

/// The beginning of a UTF-8 text.
std::string Cut(std::string_view text) {
    size_t characters = 0;
    size_t end = 0;
    while (end < text.size()) {
        const bool begins = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
        if (begins && characters++ == LongestText) break;
        ++end;
    }
    return std::string(text.substr(0, end));
}

/// Titles without a UTF-8 property are Latin-1.
std::string FromLatin1(std::string_view text) {
    std::string result;
    for (char each : text) {
        const auto byte = static_cast<unsigned char>(each);
        if (byte < 0x80) {
            result += each;
        } else {
            result += static_cast<char>(0xC0 | byte >> 6);
            result += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return result;
}

/// What was asked of one window, and is still to come: all questions go out before the first answer.
struct Question {
    xcb_window_t Window;
    xcb_get_property_cookie_t Utf8Name;
    xcb_get_property_cookie_t Name;
    xcb_get_property_cookie_t Class;
};

}  // namespace

struct X11Windows::Server {
    xcb_connection_t* Connection = nullptr;
    xcb_window_t Root = 0;
    xcb_atom_t ClientList = 0;
    xcb_atom_t Utf8Name = 0;

    ~Server() { xcb_disconnect(Connection); }

    bool Works() const { return xcb_connection_has_error(Connection) == 0 && Root != 0; }

    xcb_atom_t Atom(std::string_view name) const {
        const auto cookie = xcb_intern_atom(Connection, 0, static_cast<uint16_t>(name.size()), name.data());
        const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(Connection, cookie, nullptr));
        return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    xcb_get_property_cookie_t Ask(xcb_window_t window, xcb_atom_t property, uint32_t words) const {
        return xcb_get_property(Connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, words);
    }

    /// The bytes of a property; empty if it is not there.
    std::string Bytes(xcb_get_property_cookie_t cookie) const {
        const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(Connection, cookie, nullptr));
        if (!reply) return {};
        const auto length = static_cast<size_t>(xcb_get_property_value_length(reply.get()));
        return {static_cast<const char*>(xcb_get_property_value(reply.get())), length};
    }

    Question AskWindow(xcb_window_t window) const {
        return {window, Ask(window, Utf8Name, LongestTextWords),
                Ask(window, XCB_ATOM_WM_NAME, LongestTextWords),
                Ask(window, XCB_ATOM_WM_CLASS, LongestTextWords)};
    }

    WindowInfo Take(const Question& question) const {
        const std::string utf8 = Bytes(question.Utf8Name);
        const std::string latin1 = Bytes(question.Name);
        const std::string names = Bytes(question.Class);  // the instance, a zero, the class, a zero
        WindowInfo window;
        window.Handle = question.Window;
        window.Text = Cut(utf8.empty() ? FromLatin1(latin1) : utf8);
        const size_t instanceEnd = names.find('\0');
        if (instanceEnd != std::string::npos) {
            window.Class = Cut(FromLatin1(names.substr(instanceEnd + 1).c_str()));
        }
        return window;
    }

    std::vector<WindowInfo> Read(const std::vector<xcb_window_t>& windows) const {
        std::vector<Question> questions;
        questions.reserve(windows.size());
        for (xcb_window_t window : windows) questions.push_back(AskWindow(window));
        std::vector<WindowInfo> result;
        result.reserve(windows.size());
        for (const Question& question : questions) result.push_back(Take(question));
        return result;
    }

    /// Bottom to top.
    std::vector<xcb_window_t> Children(xcb_window_t window) const {
        const auto cookie = xcb_query_tree(Connection, window);
        const Owned<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(Connection, cookie, nullptr));
        if (!reply) return {};
        const xcb_window_t* const first = xcb_query_tree_children(reply.get());
        return {first, first + xcb_query_tree_children_length(reply.get())};
    }

    /// Bottom to top, as the window manager reports; nothing without one.
    std::vector<xcb_window_t> Managed() const {
        const std::string bytes = Bytes(Ask(Root, ClientList, MostWindows));
        std::vector<xcb_window_t> windows(bytes.size() / sizeof(xcb_window_t));
        std::copy_n(bytes.data(), windows.size() * sizeof(xcb_window_t),
                    reinterpret_cast<char*>(windows.data()));
        return windows;
    }

    void AddDescendants(xcb_window_t window, std::vector<xcb_window_t>& to) const {
        std::vector<xcb_window_t> children = Children(window);
        std::ranges::reverse(children);
        for (xcb_window_t child : children) {
            if (to.size() >= MostWindows) return;
            to.push_back(child);
            AddDescendants(child, to);
        }
    }
};

X11Windows::X11Windows(const char* display) : X(std::make_unique<Server>()) {
    int screen = 0;
    X->Connection = xcb_connect(display, &screen);
    if (xcb_connection_has_error(X->Connection) != 0) return;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(X->Connection));
    for (; screen > 0 && screens.rem > 0; --screen) xcb_screen_next(&screens);
    if (screens.rem == 0) return;
    X->Root = screens.data->root;
    X->ClientList = X->Atom("_NET_CLIENT_LIST_STACKING");
    X->Utf8Name = X->Atom("_NET_WM_NAME");
}

X11Windows::~X11Windows() = default;

bool X11Windows::Available() {
    return X->Works();
}

std::vector<WindowInfo> X11Windows::TopLevel() {
    if (!X->Works()) return {};
    std::vector<xcb_window_t> windows = X->Managed();
    if (windows.empty()) windows = X->Children(X->Root);
    std::ranges::reverse(windows);
    return X->Read(windows);
}

std::vector<WindowInfo> X11Windows::Descendants(uint64_t handle) {
    if (!X->Works()) return {};
    std::vector<xcb_window_t> windows;
    X->AddDescendants(static_cast<xcb_window_t>(handle), windows);
    return X->Read(windows);
}

std::string X11Windows::Text(uint64_t handle) {
    if (!X->Works()) return {};
    return X->Take(X->AskWindow(static_cast<xcb_window_t>(handle))).Text;
}

}  // namespace Corvetape
