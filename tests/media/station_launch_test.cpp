#include "media/station_launch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/settings/registry.h"
#include "sim/sim_machine.h"
#include "support/noted_reports.h"

namespace Corvetape {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StationLaunchTest : public testing::Test {
 protected:
    StationLaunchTest() {
        const std::string& ini = Store.Ini().Path();
        Computer.Files.MakeFolders(ini.substr(0, ini.rfind('/')));
        Options.StationNames = {"Radio", "Player", "Mail"};
        Options.StationUrls = {"http://radio.example/", "%AppDir%/player", "mailto:somebody"};
        for (const std::string& name : Options.StationNames) Form.cmbURL.AddItem(name);
        Form.objWebBrowser.NavigateAsked.Connect([this] { Pages.push_back(Form.objWebBrowser.Address()); });
        Computer.Desktop.WhileAsked = [this](const std::string& what) {
            Pointers.push_back(what == "BusyPointer");
        };
    }

    void Launch(int32_t index) {
        Form.cmbURL.Select(index);
        Form.cmdLaunchURL.Press();
    }

    SimMachine Computer;
    RegistryBranches Registry{Computer.Files, "/home/user/user.reg", "/home/user/machine.reg"};
    Placeholders Expansion{Computer.Clock, Computer.Folders, Registry};
    SettingsStore Store{Computer.Files, Computer.Folders, Registry, Expansion, Computer.System.Version()};
    Settings Options;
    frmMain Form;
    Corvetape::Test::NotedReports Reports{Computer, Form};
    StationLaunch Launcher{
        {Form, Options, Store, Expansion, Computer.Processes, Computer.Desktop, Computer.Loop, Reports.Say}};
    std::vector<std::string> Pages;
    std::vector<bool> Pointers;
};

TEST_F(StationLaunchTest, TheChosenEntryIsStoredAtOnce) {
    Form.cmbURL.Select(2);
    EXPECT_EQ(Options.CurrentUrlIndex, 2);
    EXPECT_EQ(Profile(Computer.Files, Store.Ini().Path()).ReadText("URLs", "Current", ""), "2");
}

TEST_F(StationLaunchTest, AnAddressOpensInTheBrowserUntilItsPageHasCome) {
    bool disabled = false;
    Computer.Loop.Post([&] { disabled = !Form.cmdLaunchURL.Enabled() && Pages.empty(); });
    Launch(0);
    EXPECT_TRUE(disabled) << "events are served before";
    EXPECT_THAT(Pages, ElementsAre("http://radio.example/"));
    EXPECT_TRUE(Launcher.BrowserLoading());
    Form.cmdLaunchURL.Press();
    EXPECT_EQ(Pages.size(), 1U);
    Form.objWebBrowser.DownloadComplete.Raise();
    EXPECT_TRUE(Form.cmdLaunchURL.Enabled());
    EXPECT_FALSE(Launcher.BrowserLoading());
    EXPECT_THAT(Pointers, ElementsAre(true, false));
    Form.objWebBrowser.DownloadComplete.Raise();  // of a frame or a later page
    EXPECT_THAT(Pointers, ElementsAre(true, false));
    EXPECT_THAT(Computer.Processes.ShellCalls, IsEmpty());
}

TEST_F(StationLaunchTest, APageThatNeverComesDoesNotKeepOthersFromBeingLaunched) {
    Launch(0);
    Computer.Loop.RunFor(std::chrono::milliseconds(19'900));
    EXPECT_FALSE(Form.cmdLaunchURL.Enabled());
    Computer.Loop.RunFor(std::chrono::milliseconds(200));
    EXPECT_TRUE(Form.cmdLaunchURL.Enabled());
    EXPECT_THAT(Pointers, ElementsAre(true, false));
    EXPECT_TRUE(Launcher.BrowserLoading()) << "only its coming ends that";
    Launch(0);
    EXPECT_EQ(Pages.size(), 2U);
    EXPECT_FALSE(Form.cmdLaunchURL.Enabled());
    Computer.Loop.RunFor(std::chrono::seconds(10));
    Form.objWebBrowser.DownloadComplete.Raise();
    Computer.Loop.RunFor(std::chrono::seconds(15));
    EXPECT_THAT(Pointers, ElementsAre(true, false, true, false)) << "nothing is waited for any more";
}

TEST_F(StationLaunchTest, AnyOtherEntryIsOpenedByTheDesktop) {
    Launch(1);
    Launch(2);
    ASSERT_EQ(Computer.Processes.ShellCalls.size(), 2U);
    const ShellCall player = {Expansion.ExpandPlaceholders("%AppDir%/player"), "", ""};
    EXPECT_EQ(Computer.Processes.ShellCalls[0], player);
    EXPECT_EQ(Computer.Processes.ShellCalls[1], (ShellCall{"mailto:somebody", "", ""}));
    EXPECT_THAT(Pages, IsEmpty());
    EXPECT_TRUE(Form.cmdLaunchURL.Enabled());
}

TEST_F(StationLaunchTest, AnEntryThatIsNotThereOpensNothing) {
    for (const int32_t index : {-1, 3}) {
        Options.CurrentUrlIndex = index;
        Form.cmdLaunchURL.Press();
    }
    EXPECT_THAT(Computer.Processes.ShellCalls, IsEmpty());
    EXPECT_THAT(Pages, IsEmpty());
}

TEST_F(StationLaunchTest, ThePageIsFollowedInTheStatusLineWhileItLoads) {
    auto& browser = Form.objWebBrowser;
    browser.StatusTextChange.Raise("early");
    browser.ProgressChange.Raise(1, 4);
    EXPECT_EQ(Form.lblStatus[1].Caption() + Form.lblStatus[3].Caption(), "");
    Launch(0);
    browser.StatusTextChange.Raise("Waiting");
    browser.StatusTextChange.Raise("");
    EXPECT_EQ(Form.lblStatus[1].Caption(), "Waiting");
    browser.ProgressChange.Raise(1, 4);
    EXPECT_EQ(Form.lblStatus[3].Caption(), "25.00%");
    browser.ProgressChange.Raise(1, 0);
    EXPECT_EQ(Form.lblStatus[3].Caption(), "25.00%");
    browser.ProgressChange.Raise(-1, 4);
    EXPECT_EQ(Form.lblStatus[3].Caption(), "");
}

}  // namespace
}  // namespace Corvetape
