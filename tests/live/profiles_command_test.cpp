// The command "profiles" with a real browser.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "live/live_browser.h"
#include "live/page_server.h"

namespace Corvetape {
namespace {

using std::chrono::seconds;
using testing::HasSubstr;

class ProfilesCommand : public testing::Test {
 protected:
    std::string Put(const std::string& name, const std::string& content) {
        std::ofstream(Folder / name) << content;
        return Folder / name;
    }

    std::unique_ptr<TestProcess> Run(std::vector<std::string> arguments) {
        TestProcess::Start start;
        start.Command = {CORVETAPE_BINARY_DIR "/bin/corvetape-cli", "profiles", "--home", Folder / "home"};
        start.Command.insert(start.Command.end(), arguments.begin(), arguments.end());
        start.Environment = {{"CORVETAPE_BROWSER_FLAGS", "--no-sandbox --disable-dev-shm-usage"},
                             {"HOME", Folder.Path()},
                             {"TMPDIR", Folder / "temp"},
                             {"DISPLAY", ""}};
        std::filesystem::create_directories(Folder / "temp");
        start.Output = Folder / "printed";
        return std::make_unique<TestProcess>(start);
    }

    /// Runs it to its end, and again for as long as these words are not in what it prints: a page has so
    /// little time to answer that a busy machine may let it go by.
    void RunUntilItPrints(const std::vector<std::string>& arguments, const std::string& words) {
        constexpr int mostTries = 6;
        for (int i = 0; i < mostTries && Printed().find(words) == std::string::npos; ++i) {
            std::filesystem::remove(Folder / "printed");
            EXPECT_EQ(Run(arguments)->Wait(seconds(90)), 0);
        }
        EXPECT_THAT(Printed(), HasSubstr(words));
    }

    std::string Printed() const {
        std::stringstream text;
        text << std::ifstream(Folder / "printed").rdbuf();
        return text.str();
    }

    LiveSession Session;
    TempFolder Folder;
};

TEST_F(ProfilesCommand, ReadsASavedPageWhateverItsAddressWas) {
    const std::string page = Put("page.html",
                                 "<!doctype html><title>Radio</title><body><p id='song'>Tom &amp;amp; Ann</p>"
                                 "<script>window.now = 'An Artist';</script></body>");
    const std::string profiles = Put("own.ini",
                                     "[- 1]\nName=Mine\nWindow&Doc=;;Radio;*//radio.example*\nStation=-1;;\n"
                                     "Artist=-2;window.now;\nTitle=-4;song;(.+) Ann\n");
    RunUntilItPrints({profiles, "--page", page},
                     "      read      \"Tom &amp; Ann\"\n"
                     "      pattern   \"Tom &amp;\"\n"
                     "      value     \"Tom &\"\n");
    EXPECT_THAT(Printed(), HasSubstr("Mine: reads the page \"Radio\" at file://"));
    EXPECT_THAT(Printed(), HasSubstr("value     \"An Artist\"\n"));
}

TEST_F(ProfilesCommand, LeavesNothingOfTheBrowserThatHasReadASavedPage) {
    const std::string page = Put("page.html", "<!doctype html><title>Radio</title>");
    const std::string profiles = Put("own.ini", "[- 1]\nName=Mine\nWindow&Doc=;;*;*\nTitle=-1;;\n");
    RunUntilItPrints({profiles, "--page", page}, "reads the page \"Radio\"");
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(Folder / "temp"))
        left.push_back(entry.path());
    EXPECT_THAT(left, testing::IsEmpty());
}

TEST_F(ProfilesCommand, WatchesAPageAndPrintsItAgainWhenItChanges) {
    const std::string profiles =
        Put("own.ini", "[- 1]\nName=Mine\nWindow&Doc=;;*;http://127.0.0.1*\nTitle=-1;;\n");
    PageServer server(std::map<std::string, std::string>{
        {"/radio",
         "<!doctype html><title>Song</title><body><script>let n = 0;"
         "setInterval(() => { document.title = 'Song ' + ++n; }, 700);</script></body>"}});
    const LiveBrowser browser(Session, server.Url("/radio"));
    const auto command = Run({profiles, "--ports", std::to_string(browser.Port()), "--watch"});
    const auto reports = [&] {
        const std::string text = Printed();
        size_t count = 0;
        for (size_t at = 0; (at = text.find("value     \"Song", at)) != std::string::npos; ++at) ++count;
        return count;
    };
    EXPECT_TRUE(Session.WaitFor([&] { return reports() >= 3; }, seconds(60))) << Printed();
    EXPECT_THAT(Printed(), HasSubstr("The recorder reads: Mine\n"));
    command->Signal(SIGINT);
    EXPECT_EQ(command->Wait(seconds(60)), 0);
}

}  // namespace
}  // namespace Corvetape
