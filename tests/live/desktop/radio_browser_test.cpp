// The program's own browser, as the process that it is.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "live/page_server.h"
#include "live/page_test.h"
#include "platform/linux/browser/radio_browser.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::IsEmpty;
using testing::Pair;

constexpr auto Patient = 60s;  // the engine may have to be read from the disk first

class NotedNews : public WebViewNews {
 public:
    void StatusText(const std::string& text) override { Texts.push_back(text); }
    void Progress(int64_t progress, int64_t maximum) override { Steps.emplace_back(progress, maximum); }
    void LoadEnded() override { ++Ends; }
    void Failed(WebViewFailure failure) override { Failures.push_back(failure); }

    std::vector<std::string> Texts;
    std::vector<std::pair<int64_t, int64_t>> Steps;
    int Ends = 0;
    std::vector<WebViewFailure> Failures;
};

class RadioBrowserTest : public PageTest {
 protected:
    RadioBrowserTest() {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        setenv("QTWEBENGINE_DISABLE_SANDBOX", "1", 1);  // the pages are this test's own
        Browser.Follow(&News);
        Asked = &Browser;
    }
    ~RadioBrowserTest() override {
        unsetenv("QT_QPA_PLATFORM");
        unsetenv("QTWEBENGINE_DISABLE_SANDBOX");
    }

    void Open(const std::string& address) { Browser.Open(address, {true, {}}); }

    bool OpenAndWait(const std::string& address) {
        const int before = News.Ends;
        Open(address);
        return Session.WaitFor([&] { return News.Ends > before; }, Patient);
    }

    std::string ListedTitle() {
        const std::vector<PageInfo> pages = Browser.Pages();
        return pages.empty() ? "" : pages.front().Title;
    }

    bool HasTitle(const std::string& part) { return ListedTitle().find(part) != std::string::npos; }

    NotedNews News;
    RadioBrowser Browser{Session.Loop,
                         (QCoreApplication::applicationDirPath() + "/corvetape-browser").toStdString()};
};

constexpr const char* Radio = R"html(<!doctype html><title>A Radio</title><body>
<p id="now">Artist - Song</p><img id="cover" src="/cover.jpg">
<iframe name="player" src="/player"></iframe><script>var station = 'Mine';</script></body>)html";
constexpr const char* Player = "<!doctype html><title>Inside</title><body><b id='song'>Framed</b></body>";

TEST_F(RadioBrowserTest, APageIsReadLikeThatOfAnyBrowser) {
    const PageServer server({{"/", Radio}, {"/player", Player}});
    EXPECT_THAT(Browser.Pages(), IsEmpty()) << "nothing is loaded that nobody has asked for";
    ASSERT_TRUE(OpenAndWait(server.Url("/")));
    ASSERT_EQ(Browser.Pages().size(), 1U);
    EXPECT_EQ(Browser.Pages()[0].Url, server.Url("/"));
    EXPECT_EQ(Browser.Pages()[0].Title, "A Radio");

    EXPECT_EQ(Answer([](Document& page) { return std::optional(page.Url()); }), server.Url("/"));
    EXPECT_EQ(Title(), "A Radio");
    EXPECT_EQ(Answer([](Document& page) { return std::optional(page.HasBody()); }), true);
    EXPECT_EQ(Element("now").InnerText, "Artist - Song");
    EXPECT_EQ(Element("cover").Src, server.Url("/cover.jpg"));
    EXPECT_EQ(Element(0).InnerText, "Artist - Song");
    EXPECT_TRUE(IsNoElement("nothing"));
    EXPECT_EQ(Said("station + title"), "MineA Radio") << "what the page's own scripts have made";
    EXPECT_TRUE(FailsToSay("nonsense("));
    EXPECT_TRUE(FailsToSay("missing.member"));
    EXPECT_TRUE(Answer([](Document& page) { return page.Run("Doc.title = 'Pressed'"); }));
    EXPECT_TRUE(FailsToRun("missing()"));
    EXPECT_EQ(Said("title"), "Pressed");

    EXPECT_EQ(Answer([](Document& page) {
                  const auto frame = page.Frame("player");
                  return frame ? frame->Element("song") : std::nullopt;
              })->InnerText,
              "Framed");
    EXPECT_TRUE(Answer([](Document& page) { return page.Frame(0); }));
    EXPECT_TRUE(IsNothing([](Document& page) { return page.Frame(1); }));
}

TEST_F(RadioBrowserTest, LoadingIsReportedFromItsBeginningToItsEnd) {
    const PageServer server({{"/", Radio}, {"/player", Player}});
    ASSERT_TRUE(OpenAndWait(server.Url("/")));
    EXPECT_THAT(News.Texts, Contains(server.Url("/")));
    EXPECT_THAT(News.Steps, Contains(Pair(100, 100)));
    EXPECT_EQ(News.Steps.back(), (std::pair<int64_t, int64_t>(-1, 100)));
    EXPECT_THAT(News.Failures, IsEmpty());
    ASSERT_TRUE(OpenAndWait("http://127.0.0.1:1/")) << "a page that cannot be loaded ends, too";
}

TEST_F(RadioBrowserTest, PagesGetNoFilesNoPermissionsNoDownloadsAndNoWindows) {
    const TempFolder folder;
    std::ofstream(folder / "secret.html") << "<title>Secret</title><body>Secret</body>";
    const std::string secret = "file://" + (folder / "secret.html");
    const PageServer server({{"/",
                              "<!doctype html><title>Nosy</title><body><script>var asked = '';"
                              "Notification.requestPermission().then(a => { asked += a + ';'; });"
                              "navigator.mediaDevices?.getUserMedia({audio: true}).then("
                              "() => { asked += 'heard;'; }, e => { asked += e.name + ';'; });"
                              "var fetched = ''; const f = document.createElement('iframe');"
                              "f.src = '" +
                                  secret +
                                  "'; document.body.append(f);"
                                  "</script></body>"},
                             {"/file", "content"}});
    ASSERT_TRUE(OpenAndWait(server.Url("/")));
    std::string asked;
    EXPECT_TRUE(WaitFor([&] {
        asked = Said("asked");
        return std::ranges::count(asked, ';') == 2;
    })) << asked;
    EXPECT_EQ(asked.find("granted"), std::string::npos) << asked;
    EXPECT_EQ(asked.find("heard"), std::string::npos);
    EXPECT_TRUE(IsNothing([](Document& page) {
        const auto frame = page.Frame(0);
        return frame && !frame->Title().value_or("").empty();
    })) << "a file in a frame";
    EXPECT_EQ(Said("window.open('/file') === null"), "true");

    ASSERT_TRUE(OpenAndWait(secret)) << "a file as the page itself";
    EXPECT_FALSE(HasTitle("Secret"));
}

TEST_F(RadioBrowserTest, AFileThatIsOfferedIsNotStoredAndEndsTheLoading) {
    const PageServer server({{"/song.zip", "PK"}, {"/", Player}});
    const TempFolder home;
    const char* const variable = getenv("HOME");
    const std::string before = variable == nullptr ? "" : variable;
    setenv("HOME", home.Path().c_str(), 1);
    const bool ended = OpenAndWait("data:application/zip;base64,UEs=");
    setenv("HOME", before.c_str(), 1);
    ASSERT_TRUE(ended);
    ASSERT_TRUE(OpenAndWait(server.Url("/")));
    for (const auto& each : std::filesystem::recursive_directory_iterator(home.Path())) {
        EXPECT_NE(each.path().extension(), ".zip");
        EXPECT_FALSE(each.path().string().find("ownload") != std::string::npos) << each.path();
    }
}

TEST_F(RadioBrowserTest, APageThatHangsIsWaitedForOnceAndHoldsUpNothing) {
    const PageServer server({{"/", Player}, {"/player", Player}});
    ASSERT_TRUE(OpenAndWait(server.Url("/")));
    const auto page = Answer([&](Document&) { return Poll(); });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(page->Run("(()=>{for(;;);})()"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    const auto second = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i) {
        EXPECT_FALSE(Poll());
        EXPECT_EQ(Browser.Pages().size(), 1U);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - second, 2s) << "it would be four with the limit for each";
}

TEST_F(RadioBrowserTest, ACrashedPageIsReportedAndANewOneLoads) {
    const PageServer server({{"/", Radio}, {"/player", Player}});
    ASSERT_TRUE(OpenAndWait(server.Url("/")));
    Open("chrome://crash");
    ASSERT_TRUE(Session.WaitFor([&] { return !News.Failures.empty(); }, Patient));
    EXPECT_EQ(News.Failures, std::vector{WebViewFailure::PageCrashed});
    EXPECT_FALSE(Poll());
    ASSERT_TRUE(OpenAndWait(server.Url("/")));
    EXPECT_EQ(Said("title"), "A Radio");
}

TEST_F(RadioBrowserTest, WithoutASandboxItRefusesUnlessTheUserAllowsIt) {
    const PageServer server({{"/", Radio}, {"/player", Player}});
    Browser.Open(server.Url("/"), {false, {}});
    ASSERT_TRUE(Session.WaitFor([&] { return !News.Failures.empty() && News.Ends > 0; }, Patient));
    EXPECT_EQ(News.Failures, std::vector{WebViewFailure::NoSandbox});
    EXPECT_THAT(Browser.Pages(), IsEmpty());
    ASSERT_TRUE(OpenAndWait(server.Url("/")));
    EXPECT_EQ(Said("title"), "A Radio");
}

TEST_F(RadioBrowserTest, ABrowserThatIsNotThereIsReported) {
    RadioBrowser missing(Session.Loop, "/nowhere/corvetape-browser");
    missing.Follow(&News);
    missing.Open("http://127.0.0.1/", {});
    EXPECT_EQ(News.Failures, std::vector{WebViewFailure::NotThere});
}

TEST_F(RadioBrowserTest, TheDemoStationPlaysItsSongsWithoutTheInternet) {
    ASSERT_TRUE(OpenAndWait("corvetape://radio/?seconds=1"));
    ASSERT_TRUE(Session.WaitFor([&] { return HasTitle(" | Demo station"); }, Patient));
    const std::string first = ListedTitle();
    EXPECT_TRUE(Session.WaitFor([&] { return HasTitle(" | Demo station") && !HasTitle(first); }, Patient))
        << "the next song has another name";
    EXPECT_EQ(Said("sound.error === null"), "true");
    EXPECT_EQ(Said("navigator.mediaSession.metadata.title === songs[present].title"), "true");
}

}  // namespace
}  // namespace Corvetape
