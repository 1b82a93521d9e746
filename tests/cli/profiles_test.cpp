// What the command "profiles" says where there is no browser, and which profile it takes for the recorder's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/cli_test.h"
#include "cli/profile_report.h"
#include "sim/sim_documents.h"
#include "sim/sim_windows.h"

namespace Corvetape {
namespace {

using namespace Test;
using testing::HasSubstr;
using testing::Not;

class ProfilesTest : public CliTest {
 protected:
    /// Nothing listens at this port.
    Finished Profiles(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"profiles", "--home", Home(), "--ports", "1"});
        CommandStart start;
        start.Arguments = std::move(arguments);
        start.Environment = {{"DISPLAY", ""}};
        start.Folder = folder.Path();
        return RunCommand(start);
    }
};

TEST_F(ProfilesTest, AreThoseBesideTheProgramAtFirst) {
    const Finished run = Profiles({});
    EXPECT_EQ(run.Code, 0);
    EXPECT_EQ(run.Err, "");
    EXPECT_THAT(run.Out, HasSubstr("Pages: 0\n  no browser answers at port 1;"));
    EXPECT_THAT(run.Out, HasSubstr("Profiles: 5 in " CORVETAPE_BINARY_DIR "/bin/MSIE.ini\n"));
    EXPECT_THAT(run.Out, HasSubstr("  Title Radio: finds nothing, no page is open\n"));
    EXPECT_THAT(run.Out, HasSubstr("The recorder reads: none of them\n"));
}

TEST_F(ProfilesTest, AreTheUsersOwnBesideTheSettings) {
    std::filesystem::create_directories(Home() + "/config/Corvet");
    const std::string own = Put("home/config/Corvet/MSIE.ini", "[- Mine]\nName=Mine\nWindow&Doc=;;*;*\n");
    EXPECT_THAT(Profiles({}).Out, HasSubstr("Profiles: 1 in " + own + "\n  Mine: finds nothing"));
}

TEST_F(ProfilesTest, AreThoseOfAFileThatIsNamed) {
    Put("some.ini", "[- Window]\nName=Window Radio\nWindow&Doc=Player;* - Player\nTitle=-3;;\n");
    EXPECT_THAT(
        Profiles({"some.ini"}).Out,
        HasSubstr("  Window Radio: finds nothing, no window of class \"Player\" has a title like \"* - "
                  "Player\"\n"));
}

TEST_F(ProfilesTest, ForAFileWithoutProfilesTheHelpShowsWhatOneLooksLike) {
    Put("none.ini", "[My station]\nName=Mine\n");
    EXPECT_THAT(
        Profiles({"none.ini"}).Out,
        HasSubstr("Profiles: 0 in none.ini\n  the section of a profile has a name like [- My station]\n"));
}

TEST_F(ProfilesTest, AFileThatIsNotThereIsAnError) {
    const Finished run = Profiles({"nothing.ini"});
    EXPECT_EQ(run.Code, 1);
    EXPECT_EQ(run.Err, "corvetape-cli: nothing.ini: no such file\n");
    EXPECT_EQ(run.Out, "");
    const Finished page = Profiles({"--page", "nothing.html"});
    EXPECT_EQ(page.Code, 1);
    EXPECT_EQ(page.Err, "corvetape-cli: nothing.html: no such file\n");
}

TEST_F(ProfilesTest, ASavedPageDoesNotChangeAndIsNotWatched) {
    EXPECT_EQ(Profiles({"--watch", "--page", "page.html"}).Code, 2);
}

ProviderProfile PageProfile(const std::string& name, const std::string& title, const std::string& address) {
    ProviderProfile profile;
    profile.Name = name;
    profile.DocTitle = title;
    profile.DocUrl = address;
    profile.Title = {"-1", "", "^(.+) \\|"};
    return profile;
}

TEST(ProfileReport, ReportsWhatEachStepOfARuleYields) {
    SimDocuments browser;
    browser.Add("http://radio/", "Tom &amp; Ann | Radio");
    const std::string report =
        ProfileReport({"p.ini", {PageProfile("Mine", "*", "http://radio/*")}, {9222}}, &browser, nullptr);
    EXPECT_THAT(report, HasSubstr("  Mine: reads the page \"Tom &amp; Ann | Radio\" at http://radio/\n"
                                  "    Title       -1;;^(.+) \\|\n"
                                  "      read      \"Tom &amp; Ann | Radio\"\n"
                                  "      pattern   \"Tom &amp; Ann\"\n"
                                  "      value     \"Tom & Ann\"\n"
                                  "The recorder reads: Mine\n"));
}

TEST(ProfileReport, ReportsWhichPatternOfAProfileNothingIsLike) {
    SimDocuments browser;
    browser.Add("http://radio/", "A Song");
    const std::string report =
        ProfileReport({"p.ini",
                       {PageProfile("A", "*", "https://radio/*"), PageProfile("B", "* | *", "http://radio/*"),
                        PageProfile("C", "*", "*")},
                       {9222}},
                      &browser, nullptr);
    EXPECT_THAT(report, HasSubstr("A: finds nothing, no page has an address like \"https://radio/*\"\n"));
    EXPECT_THAT(report, HasSubstr("B: finds nothing, no page with its address has a title like \"* | *\"\n"));
    EXPECT_THAT(report, HasSubstr("C: reads the page"));
    EXPECT_THAT(report, HasSubstr("The recorder reads: C\n"));
    EXPECT_THAT(report, Not(HasSubstr("no browser answers")));
}

TEST(ProfileReport, AProfileOfPagesComesBeforeOneOfWindows) {
    SimDocuments browser;
    browser.Add("http://radio/", "A Song");
    SimWindows desktop;
    desktop.Add("A Window", "Player");
    ProviderProfile window;
    window.Name = "Window Radio";
    window.WindowClass = "Player";
    window.WindowTitle = "*";
    const std::string report =
        ProfileReport({"p.ini", {window, PageProfile("Page Radio", "*", "*")}, {9222}}, &browser, &desktop);
    EXPECT_THAT(report, HasSubstr("Window Radio: reads the window \"A Window\"\n"));
    EXPECT_THAT(report, HasSubstr("The recorder reads: Page Radio\n"));
}

}  // namespace
}  // namespace Corvetape
