#include "media/built_in_browser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/settings/registry.h"
#include "media/station_launch.h"
#include "sim/sim_machine.h"
#include "support/noted_reports.h"

namespace Corvetape {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* Station = "http://radio.example/";

/// A browser that a test speaks for.
class FakeView : public WebView {
 public:
    void Follow(WebViewNews* news) override { News = news; }
    void Open(const std::string& address, const WebViewTerms& terms) override {
        Addresses.push_back(address);
        Terms = terms;
    }

    WebViewNews* News = nullptr;
    std::vector<std::string> Addresses;
    WebViewTerms Terms;
};

class BuiltInBrowserTest : public testing::Test {
 protected:
    BuiltInBrowserTest() {
        const std::string& ini = Store.Ini().Path();
        Computer.Files.MakeFolders(ini.substr(0, ini.rfind('/')));
        Computer.Files.Put("/opt/corvetape/english.lang",
                           "61700=not there: %1\n61701=no sandbox\n61702=crashed\n61703=ended\n61704=Back\n"
                           "61705=Forward\n61706=Reload\n61707=Stop\n61708=Gone\n");
        Messages.Load("english");
        Journal.Listener = [this](const std::string&, const std::string& text) { Logged.push_back(text); };
        Options.StationNames = {"Radio"};
        Options.StationUrls = {Station};
        Form.cmbURL.AddItem("Radio");
        Form.cmbURL.Select(0);
    }

    const std::string& Status(size_t field) { return Form.lblStatus[field].Caption(); }

    SimMachine Computer;
    RegistryBranches Registry{Computer.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    Placeholders Expansion{Computer.Clock, Computer.Folders, Registry};
    SettingsStore Store{Computer.Files, Computer.Folders, Registry, Expansion, Computer.System.Version()};
    Settings Options;
    WorkingFolders Places;
    Log Journal{Computer.Files, Computer.Clock, Options, Places};
    clsLocalizeControls Messages{Computer.Files, Computer.Folders.ProgramFolder(), Computer.Dialogs};
    std::vector<std::string> Logged;
    frmMain Form;
    FakeView View;
    Corvetape::Test::NotedReports Reports{Computer, Form};
    StationLaunch Launcher{
        {Form, Options, Store, Expansion, Computer.Processes, Computer.Desktop, Computer.Loop, Reports.Say}};
    BuiltInBrowser Browser{{Form, Store, Journal, Messages, Computer.Processes, Reports.Say, &View}};
};

TEST_F(BuiltInBrowserTest, IsNotLoadedBeforeAPageIsWanted) {
    Form.objWebBrowser.Navigate("about:blank");
    EXPECT_THAT(View.Addresses, IsEmpty());
    Form.cmdLaunchURL.Press();
    EXPECT_THAT(View.Addresses, ElementsAre(Station));
    Form.objWebBrowser.Navigate("about:blank");
    EXPECT_THAT(View.Addresses, ElementsAre(Station, "about:blank"));
}

TEST_F(BuiltInBrowserTest, WhatItReportsWhileItLoadsIsInTheStatusLine) {
    Form.cmdLaunchURL.Press();
    View.News->StatusText("on its way");
    EXPECT_EQ(Status(1), "on its way");
    View.News->Progress(1, 4);
    EXPECT_EQ(Status(3), "25.00%");
    View.News->Progress(-1, 100);
    EXPECT_EQ(Status(3), "");
    View.News->LoadEnded();
    EXPECT_TRUE(Form.cmdLaunchURL.Enabled());
    View.News->StatusText("a later page");
    EXPECT_EQ(Status(1), "on its way");
}

TEST_F(BuiltInBrowserTest, SpeaksTheLanguageOfTheProgram) {
    Form.cmdLaunchURL.Press();
    EXPECT_EQ(View.Terms.Captions, (WebViewCaptions{"Back", "Forward", "Reload", "Stop", "Gone"}));
}

TEST_F(BuiltInBrowserTest, NeedsASandboxUnlessTheSettingSaysOtherwise) {
    Form.cmdLaunchURL.Press();
    EXPECT_FALSE(View.Terms.WithoutSandbox);
    View.News->Failed(WebViewFailure::NoSandbox);
    EXPECT_EQ(Status(1), "no sandbox");
    EXPECT_TRUE(Form.cmdLaunchURL.Enabled());
    Store.WriteSetting("Browser", "WithoutSandbox", 1);
    Form.cmdLaunchURL.Press();
    EXPECT_TRUE(View.Terms.WithoutSandbox);
}

TEST_F(BuiltInBrowserTest, ACrashIsReportedAndEndsTheLoading) {
    for (const auto& [failure, text] :
         {std::pair(WebViewFailure::PageCrashed, "crashed"), std::pair(WebViewFailure::Ended, "ended")}) {
        Form.cmdLaunchURL.Press();
        ASSERT_FALSE(Form.cmdLaunchURL.Enabled());
        View.News->Failed(failure);
        EXPECT_EQ(Status(1), text);
        ASSERT_FALSE(Logged.empty());
        EXPECT_EQ(Logged.back(), text);
        EXPECT_TRUE(Form.cmdLaunchURL.Enabled());
    }
    EXPECT_THAT(Computer.Processes.ShellCalls, IsEmpty());
}

TEST_F(BuiltInBrowserTest, WhereItIsNotInstalledTheUsersOwnBrowserTakesOver) {
    Form.cmdLaunchURL.Press();
    View.News->Failed(WebViewFailure::NotThere);
    EXPECT_THAT(Computer.Processes.ShellCalls, ElementsAre(ShellCall{Station, "", ""}));
    EXPECT_TRUE(Form.cmdLaunchURL.Enabled());
    EXPECT_EQ(Status(1), std::string("not there: ") + Station);
}

TEST(NoBuiltInBrowser, TheUsersOwnBrowserShowsTheAddress) {
    SimMachine computer;
    RegistryBranches registry{computer.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    Placeholders expansion{computer.Clock, computer.Folders, registry};
    SettingsStore store{computer.Files, computer.Folders, registry, expansion, computer.System.Version()};
    Settings options;
    WorkingFolders places;
    Log journal{computer.Files, computer.Clock, options, places};
    clsLocalizeControls messages{computer.Files, "/opt/corvetape", computer.Dialogs};
    frmMain form;
    Corvetape::Test::NotedReports reports{computer, form, "61880=Nothing opens %1\n"};
    const BuiltInBrowser browser{{form, store, journal, messages, computer.Processes, reports.Say, nullptr}};
    int ends = 0;
    form.objWebBrowser.DownloadComplete.Connect([&] { ++ends; });
    form.objWebBrowser.Navigate(Station);
    EXPECT_THAT(computer.Processes.ShellCalls, ElementsAre(ShellCall{Station, "", ""}));
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(computer.Dialogs.Boxes, IsEmpty());
    computer.Processes.OnShellOpen = [](const ShellCall&) { return 31; };
    form.objWebBrowser.Navigate(Station);
    EXPECT_EQ(ends, 2) << "the buttons are free before the box is answered";
    ASSERT_EQ(computer.Dialogs.Boxes.size(), 1U);
    EXPECT_EQ(computer.Dialogs.Boxes[0].Text, "Nothing opens " + std::string(Station));
}

}  // namespace
}  // namespace Corvetape
