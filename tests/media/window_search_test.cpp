#include "media/window_search.h"

#include <gtest/gtest.h>

#include "sim/sim_documents.h"
#include "sim/sim_windows.h"

namespace Corvetape {
namespace {

class Search : public testing::Test {
 protected:
    /// The address of the document that is found; empty without one.
    std::string Find(const std::string& windowClass, const std::string& windowTitle,
                     const std::string& docTitle, const std::string& docUrl) {
        const auto found = SearchPlace(&Browser, &Desktop)
                               .FindDocumentByPatterns(windowClass, windowTitle, docTitle, docUrl);
        return found ? found->Url() : "";
    }
    uint64_t FindWindow(const std::string& title, const std::string& windowClass) {
        return SearchPlace(nullptr, &Desktop).FindWindowByPatterns(title, windowClass);
    }

    SimDocuments Browser;
    SimWindows Desktop;
};

TEST_F(Search, TitleAndAddressMustBothBeLikeTheirPatterns) {
    Browser.Add("http://a/player.htm", "My Radio");
    EXPECT_EQ(Find("", "", "My*", "*player*"), "http://a/player.htm");
    EXPECT_EQ(Find("", "", "Your*", "*player*"), "");
    EXPECT_EQ(Find("", "", "My*", "*other*"), "");
}

TEST_F(Search, PatternsCompareWithCase) {
    Browser.Add("http://a/", "My Radio");
    EXPECT_EQ(Find("", "", "my*", "*"), "");
    EXPECT_EQ(Find("", "", "My*", "HTTP*"), "");
}

TEST_F(Search, AnEmptyAddressPatternIsLikeAnEmptyAddressOnly) {
    Browser.Add("http://a/", "My Radio");
    EXPECT_EQ(Find("", "", "*", ""), "");
    EXPECT_EQ(Find("", "", "*", "*"), "http://a/");
}

TEST_F(Search, TheWindowClassOfADocumentIsLiteral) {
    Browser.Add("http://a/", "My Radio");
    Desktop.Add("My Radio - Browser", "Navigator");
    EXPECT_EQ(Find("Navigator", "", "*", "*"), "http://a/");
    EXPECT_EQ(Find("Navi*", "", "*", "*"), "");
    EXPECT_EQ(Find("", "", "*", "*"), "http://a/");
}

TEST_F(Search, TheWindowTitleOfADocumentIsAPatternAndEmptyMeansAny) {
    Browser.Add("http://a/", "My Radio");
    Desktop.Add("My Radio - Browser", "Navigator");
    EXPECT_EQ(Find("", "*Browser", "*", "*"), "http://a/");
    EXPECT_EQ(Find("", "Browser", "*", "*"), "");
}

TEST_F(Search, APageInNoWindowHasTheBrowsersNameAndItsOwnTitle) {
    Browser.Add("http://a/", "My Radio").Product = "Chrome";
    EXPECT_EQ(Find("Chrome", "My Radio", "*", "*"), "http://a/");
    EXPECT_EQ(Find("Other", "", "*", "*"), "");
}

TEST_F(Search, TheHigherWindowWinsUntilItIsPushedBack) {
    Browser.Add("http://a/", "Radio A");
    Browser.Add("http://b/", "Radio B");
    const uint64_t a = Desktop.Add("Radio A - Browser", "N");
    const uint64_t b = Desktop.Add("Radio B - Browser", "N");
    EXPECT_EQ(Find("", "", "Radio*", "*"), "http://b/");
    Desktop.Raise(a);
    EXPECT_EQ(Find("", "", "Radio*", "*"), "http://a/");
    Desktop.Raise(b);
    EXPECT_EQ(Find("", "", "Radio*", "*"), "http://b/");
}

TEST_F(Search, PagesInNoWindowComeLastInTheOrderOfTheirBrowser) {
    Browser.Add("http://a/", "Radio A");
    Browser.Add("http://b/", "Radio B");
    Browser.Add("http://c/", "Radio C");
    Desktop.Add("Radio C - Browser", "N");
    const SearchPlace place(&Browser, &Desktop);
    ASSERT_EQ(place.Pages().size(), 3u);
    EXPECT_EQ(place.Pages()[0].Page.Url, "http://c/");
    EXPECT_EQ(place.Pages()[1].Page.Url, "http://a/");
    EXPECT_EQ(place.Pages()[2].Page.Url, "http://b/");
}

TEST_F(Search, AWindowShowsThePageWithTheLongestTitleThatFits) {
    Browser.Add("http://a/", "Radio");
    Browser.Add("http://b/", "Radio - News");
    Desktop.Add("Radio - News - Browser", "N");
    EXPECT_EQ(SearchPlace(&Browser, &Desktop).Pages()[0].Page.Url, "http://b/");
}

TEST_F(Search, TwoWindowsOfOneTitleShowTwoPages) {
    Browser.Add("http://a/", "Radio");
    Browser.Add("http://b/", "Radio");
    Desktop.Add("Radio - Browser", "N");
    Desktop.Add("Radio", "M");
    const SearchPlace place(&Browser, &Desktop);
    EXPECT_EQ(place.Pages()[0].WindowClass, "M");
    EXPECT_EQ(place.Pages()[1].WindowClass, "N");
}

TEST_F(Search, APageThatDoesNotAnswerIsNoDocument) {
    SimPage& hanging = Browser.Add("http://a/", "Radio");
    Browser.Add("http://b/", "Radio");
    hanging.Answers = false;
    EXPECT_EQ(Find("", "", "Radio", "*"), "http://b/");
}

TEST_F(Search, PagesThatDoNotMatchAreNotAsked) {
    Browser.Add("http://a/", "News");
    Browser.Add("http://b/", "Radio");
    EXPECT_EQ(Find("", "", "Radio", "*"), "http://b/");
    EXPECT_EQ(Browser.Opened, 1u);
}

TEST_F(Search, ThePagesOwnTitleCountsAndNotWhatTheBrowserKnows) {
    Browser.Add("http://a/", "Now something else").KnownTitle = "Radio";
    EXPECT_EQ(Find("", "", "Radio", "*"), "");
    Browser.Add("http://b/", "").KnownTitle = "b/";
    EXPECT_EQ(Find("", "", "?*", "http://b/"), "");
    EXPECT_EQ(Find("", "", "*", "http://b/"), "http://b/");
}

TEST_F(Search, ThePagesOwnAddressCountsAndNotWhatTheBrowserKnew) {
    SimPage& page = Browser.Add("http://a/", "Radio");
    SearchPlace place(&Browser, &Desktop);
    page.Top->Url = "http://b/";
    EXPECT_FALSE(place.FindDocumentByPatterns("", "", "Radio", "http://a/"));
}

TEST_F(Search, AWindowProfileMatchesTitleAndClassAsPatterns) {
    const uint64_t player = Desktop.Add("Artist - Song", "PlayerClass");
    Desktop.Add("Other", "OtherClass");
    EXPECT_EQ(FindWindow("* - *", "Player*"), player);
    EXPECT_EQ(FindWindow("* - *", "Player"), 0u);
    EXPECT_EQ(FindWindow("* - *", "player*"), 0u);
}

TEST_F(Search, AnEmptyWindowPatternIsLikeAnEmptyTextOnly) {
    Desktop.Add("Artist", "C");
    const uint64_t untitled = Desktop.Add("", "C");
    EXPECT_EQ(FindWindow("", "C"), untitled);
    EXPECT_EQ(FindWindow("Artist", ""), 0u);
}

TEST_F(Search, TheTopmostWindowWins) {
    const uint64_t first = Desktop.Add("A", "C");
    const uint64_t second = Desktop.Add("A", "C");
    EXPECT_EQ(FindWindow("A", "C"), second);
    Desktop.Raise(first);
    EXPECT_EQ(FindWindow("A", "C"), first);
}

TEST_F(Search, WindowsInsideAWindowAreSearchedBeforeTheNextOne) {
    const uint64_t lower = Desktop.Add("A", "C");
    const uint64_t upper = Desktop.Add("X", "C");
    const uint64_t inside = Desktop.AddInside(upper, "A", "C");
    EXPECT_EQ(FindWindow("A", "C"), inside);
    Desktop.Close(upper);
    EXPECT_EQ(FindWindow("A", "C"), lower);
}

TEST_F(Search, NothingIsFoundWhereThereIsNothing) {
    const SearchPlace place(nullptr, nullptr);
    EXPECT_TRUE(place.Pages().empty());
    EXPECT_EQ(SearchPlace(nullptr, nullptr).FindWindowByPatterns("*", "*"), 0u);
    EXPECT_EQ(SearchPlace(nullptr, nullptr).FindDocumentByPatterns("", "", "*", "*"), nullptr);
}

}  // namespace
}  // namespace Corvetape
