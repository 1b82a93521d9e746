// The pages of a real browser, read through its DevTools port.
#include "platform/linux/browser/devtools_documents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <vector>

#include "live/live_browser.h"
#include "live/page_server.h"
#include "live/page_test.h"

namespace Corvetape {
namespace {

using std::chrono::milliseconds;

// Titles change by script; a click on the button counts.
constexpr const char* RadioPage = R"html(<!doctype html><html><head><title>Song 1 & more</title></head><body>
<p id="artist" title="The Artist">shown artist</p>
<p name="song">Song <b>A</b></p>
<img id="cover" src="/cover.jpg">
<form name="player"><input name="go" type="button" value="play" onclick="document.title='pressed'"></form>
<script>
navigator.mediaSession.metadata = new MediaMetadata({title: 'Session Song', artist: 'Session Artist'});
let n = 1;
setInterval(() => { if (document.title.startsWith('Song')) document.title = 'Song ' + ++n + ' & more'; }, 300);
</script></body></html>)html";

constexpr const char* FramePage = R"html(<!doctype html><title>Frame</title><body>
<p id="now">Frame Song 1</p><iframe name="deep" srcdoc="<p id=x>deep text</p>"></iframe>
<script>let n = 1; setInterval(() => { now.innerText = 'Frame Song ' + ++n; }, 300);</script></body>)html";

constexpr const char* HangingPage = R"html(<!doctype html><title>Hanging</title><body>
<script>setTimeout(() => { for (;;); }, 1500);</script></body>)html";

class DevTools : public PageTest {
 protected:
    DevTools() {
        Server = std::make_unique<PageServer>(std::map<std::string, std::string>{
            {"/radio.html", RadioPage}, {"/frame.html", FramePage}, {"/hang.html", HangingPage}});
    }

    void Browse(const std::string& url) {
        Browser = std::make_unique<LiveBrowser>(Session, url);
        Pages = std::make_unique<DevToolsDocuments>(std::vector<uint16_t>{Browser->Port()});
        Asked = Pages.get();
    }

    /// Waits until a page with this title is there whole.
    bool WaitForTitle(const std::string& begin) {
        return WaitFor([&] {
            const auto document = Poll();
            return document && document->Title().value_or("").starts_with(begin) &&
                   document->Evaluate("Doc.readyState") == "complete";
        });
    }

    std::unique_ptr<PageServer> Server;
    std::unique_ptr<LiveBrowser> Browser;
    std::unique_ptr<DevToolsDocuments> Pages;
};

TEST_F(DevTools, APageIsADocumentWithTitleAndAddress) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    PageInfo page;
    ASSERT_TRUE(WaitFor([&] {
        Pages->BeginPoll();
        const auto list = Pages->Pages();
        if (!list.empty()) page = list.front();
        // Product and title are known a little later than the page itself.
        return !page.Product.empty() && page.Title.ends_with(" & more");
    })) << page.Title;
    EXPECT_EQ(page.Url, Server->Url("/radio.html"));
    EXPECT_NE(page.Product.find("Chrom"), std::string::npos) << page.Product;
    EXPECT_EQ(Answer([](Document& document) { return std::optional(document.Url()); }), page.Url);
    EXPECT_EQ(Answer([](Document& document) { return std::optional(document.HasBody()); }), true);
}

TEST_F(DevTools, ATitleThatAScriptChangesIsReadAnewAtEachPoll) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    const std::string first = Title();
    EXPECT_TRUE(WaitFor([&] { return Title() != first; }));
}

TEST_F(DevTools, ElementsAreFoundByIndexByIdAndByName) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    const ElementText artist{"The Artist", "shown artist", std::nullopt};
    EXPECT_EQ(Element(0), artist);
    EXPECT_EQ(Element("artist"), artist);
    EXPECT_EQ(Element("song").InnerText, "Song A");
    EXPECT_EQ(Element(2).InnerText, "A");
    EXPECT_EQ(Element("cover").Src, Server->Url("/cover.jpg"));
    EXPECT_TRUE(IsNoElement("nothing"));
    EXPECT_TRUE(IsNoElement(100));
    EXPECT_TRUE(IsNoElement(-1));
}

TEST_F(DevTools, AScriptSeesTheDocumentAsDocAndItsMembersAsItsOwn) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    EXPECT_TRUE(Said("Doc.title").starts_with("Song"));
    EXPECT_TRUE(Said("title").starts_with("Song"));
    EXPECT_EQ(Said("navigator.mediaSession.metadata.artist"), "Session Artist");
    EXPECT_EQ(Said("getElementById('artist').innerText"), "shown artist");
    EXPECT_EQ(Said("1 + 2 // a remark"), "3");
    EXPECT_EQ(Said("null"), "");
    EXPECT_EQ(Said("undefined"), "");
    EXPECT_TRUE(FailsToSay("no such thing"));
    EXPECT_TRUE(FailsToSay("nothing.of.this"));
}

TEST_F(DevTools, CollectionsCanBeCalledLikeFunctions) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    EXPECT_EQ(Said("Doc.forms(0).name"), "player");
    EXPECT_EQ(Said("forms('player').elements(0).value"), "play");
    EXPECT_EQ(Said("Doc.forms[0].elements('go').value"), "play");
    EXPECT_EQ(Said("Doc.all('artist').title"), "The Artist");
    EXPECT_EQ(Said("images.length"), "1");
    EXPECT_EQ(Said("Doc.body.contains(Doc.images(0))"), "true");
    EXPECT_TRUE(FailsToSay("Doc.forms(7).name"));
}

TEST_F(DevTools, AScriptThatIsRunPressesWhatIsInThePage) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    EXPECT_TRUE(Answer([](Document& page) { return page.Run("Doc.forms(0).elements(0).click()"); }));
    EXPECT_EQ(Title(), "pressed");
    EXPECT_TRUE(FailsToRun("Doc.forms(3).submit()"));
}

TEST_F(DevTools, AnEndlessExpressionOfAProfileIsEndedAndThePageGoesOn) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    EXPECT_EQ(Answer([](Document& page) { return std::optional(!page.Evaluate("(() => { for (;;); })()")); }),
              true);
    EXPECT_TRUE(WaitForTitle("Song"));
}

std::string PageWithFrame(const std::string& address) {
    return "<!doctype html><title>Holder</title><body><iframe name='player' src='" + address +
           "'></iframe></body>";
}

/// A page with a frame from `address`, on a server of its own.
class DevToolsFrames : public DevTools {
 protected:
    void BrowseFrame(const std::string& address) {
        Holder = std::make_unique<PageServer>(
            std::map<std::string, std::string>{{"/holder.html", PageWithFrame(address)}});
        Browse(Holder->Url("/holder.html"));
    }

    /// What a document of the page gives, asked for until it gives something.
    template <typename Question>
    auto OfTheFrame(Question question) {
        return Answer([&](Document& page) {
            const auto frame = page.Frame(0);
            return frame ? question(*frame) : decltype(question(*frame)){};
        });
    }

    void ExpectFrame() {
        const auto now = OfTheFrame([](Document& frame) { return frame.Element("now"); });
        EXPECT_TRUE(now->InnerText.value_or("").starts_with("Frame Song"));
        EXPECT_EQ(OfTheFrame([](Document& frame) { return frame.Title(); }), "Frame");
        const auto url = OfTheFrame([](Document& frame) { return std::optional(frame.Url()); });
        EXPECT_EQ(Answer([](Document& page) {
                      const auto named = page.Frame("player");
                      return named ? std::optional(named->Url()) : std::nullopt;
                  }),
                  url);
        EXPECT_EQ(OfTheFrame([](Document& frame) {
                      const auto deep = frame.Frame("deep");
                      return deep ? deep->Element("x") : std::nullopt;
                  })->InnerText,
                  "deep text");
        for (const MemberKey& none : {MemberKey(1), MemberKey(-1), MemberKey("other")}) {
            EXPECT_TRUE(IsNothing([&](Document& page) { return page.Frame(none); }));
        }
    }

    std::unique_ptr<PageServer> Holder;
};

TEST_F(DevToolsFrames, AFrameOfTheSameOriginIsReadByIndexAndByName) {
    Holder = std::make_unique<PageServer>(std::map<std::string, std::string>{
        {"/holder.html", PageWithFrame("/frame.html")}, {"/frame.html", FramePage}});
    Browse(Holder->Url("/holder.html"));
    ExpectFrame();
}

TEST_F(DevToolsFrames, AFrameOfAnotherOriginInTheSameProcessIsReadToo) {
    BrowseFrame(Server->Url("/frame.html"));
    ExpectFrame();
}

TEST_F(DevToolsFrames, AFrameWithAProcessOfItsOwnIsReadToo) {
    BrowseFrame(Server->Url("/frame.html", "localhost"));
    ExpectFrame();
}

TEST_F(DevTools, AHangingPageCostsItsLimitOnceAndThenNothing) {
    Browse(Server->Url("/hang.html"));
    // Once it has answered, it does not stop before its script begins.
    ASSERT_TRUE(WaitForTitle("Hanging"));
    std::vector<milliseconds> unanswered;  // those in a row, since a busy machine may let one go by earlier
    ASSERT_TRUE(WaitFor([&] {
        const auto begin = std::chrono::steady_clock::now();
        const bool answered = Poll() != nullptr;
        const auto took = std::chrono::steady_clock::now() - begin;
        if (answered) unanswered.clear();
        if (!answered) unanswered.push_back(std::chrono::duration_cast<milliseconds>(took));
        return unanswered.size() == 21;
    }));
    EXPECT_GE(unanswered.front(), milliseconds(180));
    EXPECT_LT(unanswered.front(), milliseconds(1000));
    std::sort(unanswered.begin() + 1, unanswered.end());
    EXPECT_LT(unanswered[10], milliseconds(100)) << "most of the others";
}

TEST_F(DevTools, ABrowserThatStandsStillCostsItsLimitOnceAndComesBack) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    // More than once, as this process may have to wait for a busy machine, too.
    EXPECT_TRUE(WaitFor([&] {
        Browser->Signal(SIGSTOP);
        const auto begin = std::chrono::steady_clock::now();
        for (int i = 0; i < 5; ++i) EXPECT_EQ(Poll(), nullptr);
        const auto took = std::chrono::steady_clock::now() - begin;
        Browser->Signal(SIGCONT);
        EXPECT_TRUE(WaitForTitle("Song"));
        return took < milliseconds(400);
    }));
}

TEST_F(DevTools, ABrowserThatIsClosedHasNoPages) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    const auto kept = Answer([&](Document&) { return Poll(); });
    Browser->Kill();
    EXPECT_TRUE(WaitFor([&] {
        Pages->BeginPoll();
        return Pages->Pages().empty();
    }));
    EXPECT_EQ(kept->Evaluate("title"), std::nullopt);
}

TEST_F(DevTools, APortWhereNothingAnswersHasNoPages) {
    DevToolsDocuments documents({1});
    documents.BeginPoll();
    EXPECT_TRUE(documents.Pages().empty());
}

}  // namespace
}  // namespace Corvetape
