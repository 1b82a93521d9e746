// Windows of a real X server.
#include "platform/linux/browser/x11_windows.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <fstream>

#include "live/test_process.h"
#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

/// An X server without a screen, and a program that has windows on it.
class X11 : public testing::Test {
 protected:
    void SetUp() override {
        // The server writes the number that it has chosen into a descriptor that a shell opens for it.
        Server = std::make_unique<TestProcess>(TestProcess::Start{
            {"sh", "-c", "exec Xvfb -displayfd 3 -screen 0 640x480x24 -nolisten tcp 3>\"$0\"",
             Folder / "display"},
            {},
            Folder / "output"});
        ASSERT_TRUE(Session.WaitFor(
            [&] {
                int number = 0;
                std::ifstream file(Folder / "display");
                if (!(file >> number) || file.get() != '\n') return false;
                Display = ":" + std::to_string(number);
                return true;
            },
            std::chrono::seconds(60)));
        Connection = xcb_connect(Display.c_str(), nullptr);
        ASSERT_EQ(xcb_connection_has_error(Connection), 0);
        Root = xcb_setup_roots_iterator(xcb_get_setup(Connection)).data->root;
    }
    void TearDown() override {
        if (Connection) xcb_disconnect(Connection);
    }

    xcb_window_t Add(const std::string& title, const std::string& windowClass, xcb_window_t parent = 0) {
        const xcb_window_t window = xcb_generate_id(Connection);
        xcb_create_window(Connection, XCB_COPY_FROM_PARENT, window, parent == 0 ? Root : parent, 0, 0, 50, 50,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        SetTitle(window, title);
        Set(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
            "instance" + std::string(1, '\0') + windowClass + '\0');
        return window;
    }
    void SetTitle(xcb_window_t window, const std::string& title) {
        Set(window, Atom("_NET_WM_NAME"), Atom("UTF8_STRING"), title);
    }
    void Set(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const std::string& value) {
        xcb_change_property(Connection, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                            static_cast<uint32_t>(value.size()), value.data());
        Finish();
    }
    /// Returns when the server has done all that was asked.
    void Finish() { free(xcb_get_input_focus_reply(Connection, xcb_get_input_focus(Connection), nullptr)); }

    xcb_atom_t Atom(const std::string& name) {
        const auto cookie = xcb_intern_atom(Connection, 0, static_cast<uint16_t>(name.size()), name.data());
        xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(Connection, cookie, nullptr);
        EXPECT_NE(reply, nullptr) << "the server has gone";
        const xcb_atom_t atom = reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
        free(reply);
        return atom;
    }

    LiveSession Session;
    TempFolder Folder;
    std::unique_ptr<TestProcess> Server;
    std::string Display;
    xcb_connection_t* Connection = nullptr;
    xcb_window_t Root = 0;
};

TEST_F(X11, WindowsComeInZOrderWithTitleAndClass) {
    const xcb_window_t lower = Add("Künstler – Lied", "Player");
    const xcb_window_t upper = Add("Other", "Editor");
    X11Windows windows(Display.c_str());
    ASSERT_TRUE(windows.Available());
    EXPECT_EQ(windows.TopLevel(),
              (std::vector<WindowInfo>{{upper, "Other", "Editor"}, {lower, "Künstler – Lied", "Player"}}));
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(Connection, lower, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    Finish();
    const std::vector<WindowInfo> turned = windows.TopLevel();
    ASSERT_EQ(turned.size(), 2u);
    EXPECT_EQ(turned[0].Handle, lower);
}

TEST_F(X11, TheListOfTheWindowManagerCountsWhereThereIsOne) {
    const xcb_window_t first = Add("A", "C");
    const xcb_window_t second = Add("B", "C");
    Add("unmanaged", "C");
    const xcb_window_t bottomToTop[] = {second, first};
    xcb_change_property(Connection, XCB_PROP_MODE_REPLACE, Root, Atom("_NET_CLIENT_LIST_STACKING"),
                        XCB_ATOM_WINDOW, 32, 2, bottomToTop);
    Finish();
    X11Windows windows(Display.c_str());
    const auto top = windows.TopLevel();
    ASSERT_EQ(top.size(), 2u);
    EXPECT_EQ(top[0].Text, "A");
    EXPECT_EQ(top[1].Text, "B");
}

TEST_F(X11, WindowsInsideAWindowAreFound) {
    const xcb_window_t outer = Add("Outer", "C");
    const xcb_window_t inner = Add("Inner", "C", outer);
    const xcb_window_t deep = Add("Deep", "C", inner);
    X11Windows windows(Display.c_str());
    EXPECT_EQ(windows.Descendants(outer),
              (std::vector<WindowInfo>{{inner, "Inner", "C"}, {deep, "Deep", "C"}}));
    EXPECT_EQ(windows.TopLevel().size(), 1u);
}

TEST_F(X11, ATitleIsReadAnewAndCutAt255Characters) {
    const xcb_window_t window = Add("one", "C");
    X11Windows windows(Display.c_str());
    EXPECT_EQ(windows.Text(window), "one");
    std::string longTitle;
    for (int i = 0; i < 300; ++i) longTitle += "ä";
    SetTitle(window, longTitle);
    EXPECT_EQ(windows.Text(window), longTitle.substr(0, 510));
    xcb_destroy_window(Connection, window);
    Finish();
    EXPECT_EQ(windows.Text(window), "");
}

TEST_F(X11, ATitleWithoutUtf8IsLatin1) {
    const xcb_window_t window = Add("", "C");
    Set(window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "K\xF6ln");
    X11Windows windows(Display.c_str());
    EXPECT_EQ(windows.Text(window), "Köln");
}

TEST_F(X11, AServerThatEndsShowsNoWindowsAnyMore) {
    const xcb_window_t window = Add("A", "C");
    X11Windows windows(Display.c_str());
    ASSERT_EQ(windows.TopLevel().size(), 1u);
    Server->Kill();
    EXPECT_TRUE(windows.TopLevel().empty());
    EXPECT_FALSE(windows.Available());
    EXPECT_EQ(windows.Text(window), "");
}

TEST(X11Windows, WithoutAServerThereAreNoWindows) {
    X11Windows windows(":987654");
    EXPECT_FALSE(windows.Available());
    EXPECT_TRUE(windows.TopLevel().empty());
    EXPECT_TRUE(windows.Descendants(1).empty());
    EXPECT_EQ(windows.Text(1), "");
}

}  // namespace
}  // namespace Corvetape
