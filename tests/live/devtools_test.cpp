// The pages of a real browser, read through its DevTools port.
#include "platform/linux/browser/devtools_documents.h"

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <stdexcept>

#include "live/live_browser.h"
#include "live/page_server.h"

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

class DevTools : public testing::Test {
 protected:
    DevTools() {
        Server = std::make_unique<PageServer>(std::map<std::string, std::string>{
            {"/radio.html", RadioPage}, {"/frame.html", FramePage}, {"/hang.html", HangingPage}});
    }

    void Browse(const std::string& url) {
        Browser = std::make_unique<LiveBrowser>(Session, url);
        Pages = std::make_unique<DevToolsDocuments>(std::vector<uint16_t>{Browser->Port()});
    }

    /// The first page's document in a new poll; nothing if browser or page do not answer in time.
    std::shared_ptr<Document> Poll() {
        Pages->BeginPoll();
        const auto list = Pages->Pages();
        return list.empty() ? nullptr : Pages->Open(list.front());
    }

    bool WaitFor(const std::function<bool()>& condition) {
        return Session.WaitFor(condition, milliseconds(20'000));
    }

    /// The answer of the first page, asked for in new polls until there is one: a busy machine may let a poll
    /// go by without. Throws if there is none at all.
    template <typename Question>
    auto Answer(Question question) {
        decltype(question(std::declval<Document&>())) answer;
        const bool answered = WaitFor([&] {
            const auto document = Poll();
            if (document) answer = question(*document);
            return static_cast<bool>(answer);
        });
        if (!answered) throw std::runtime_error("the page does not answer");
        return answer;
    }

    bool WaitForTitle(const std::string& begin) {
        return WaitFor([&] {
            const auto document = Poll();
            return document && document->Title().value_or("").starts_with(begin);
        });
    }

    std::string Title() {
        return *Answer([](Document& page) { return page.Title(); });
    }

    ElementText Element(const MemberKey& key) {
        return *Answer([&](Document& page) { return page.Element(key); });
    }

    /// What a script of the page gives.
    std::string Said(const std::string& script) {
        return *Answer([&](Document& page) { return page.Evaluate(script); });
    }

    /// True if nothing comes of it in a poll in which the page answers afterwards.
    template <typename Question>
    bool IsNothing(Question question) {
        return WaitFor([&] {
            const auto document = Poll();
            return document && !question(*document) && document->Evaluate("1 + 1") == "2";
        });
    }

    bool IsNoElement(const MemberKey& key) {
        return IsNothing([&](Document& page) { return page.Element(key); });
    }

    bool FailsToSay(const std::string& script) {
        return IsNothing([&](Document& page) { return page.Evaluate(script); });
    }

    bool FailsToRun(const std::string& script) {
        return IsNothing([&](Document& page) { return page.Run(script); });
    }

    LiveSession Session;
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
        return !page.Product.empty();
    }));
    EXPECT_EQ(page.Url, Server->Url("/radio.html"));
    EXPECT_TRUE(page.Title.ends_with(" & more")) << page.Title;
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
    const auto timedPoll = [&](bool& answered) {
        const auto begin = std::chrono::steady_clock::now();
        answered = Poll() != nullptr;
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin);
    };
    // Once it has answered, it does not stop before its script begins.
    ASSERT_TRUE(WaitForTitle("Hanging"));
    bool answered = true;
    milliseconds first{};
    ASSERT_TRUE(WaitFor([&] {
        first = timedPoll(answered);
        return !answered;
    }));
    EXPECT_GE(first, milliseconds(180));
    EXPECT_LT(first, milliseconds(300));
    for (int i = 0; i < 5; ++i) {
        const milliseconds next = timedPoll(answered);
        EXPECT_FALSE(answered);
        EXPECT_LT(next, milliseconds(100));
    }
}

TEST_F(DevTools, ABrowserThatStandsStillCostsItsLimitOnceAndComesBack) {
    Browse(Server->Url("/radio.html"));
    ASSERT_TRUE(WaitForTitle("Song"));
    Browser->Signal(SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i) EXPECT_EQ(Poll(), nullptr);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, milliseconds(400));
    Browser->Signal(SIGCONT);
    EXPECT_TRUE(WaitForTitle("Song"));
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
