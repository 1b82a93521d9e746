#include "media/browser_rules.h"

#include <gtest/gtest.h>

#include "sim/sim_documents.h"
#include "sim/sim_windows.h"

namespace Corvetape {
namespace {

SimElement Element(const std::string& name, const ElementText& text) {
    return {name, text};
}

class Rules : public testing::Test {
 protected:
    Rules() {
        Page.Top->All = {Element("song", {"", " Song Title ", std::nullopt}),
                         Element("hint", {"Hinted", "Shown", std::nullopt}),
                         Element("cover", {std::nullopt, std::nullopt, " http://127.0.0.1/a%20b&amp;.jpg "}),
                         Element("bare", {std::nullopt, std::nullopt, std::nullopt})};
        const auto inner = std::make_shared<SimDocument>();
        inner->Title = "Inner";
        inner->All = {Element("deep", {"", "Deep Text", std::nullopt})};
        const auto first = std::make_shared<SimDocument>();
        first->All = {Element("x", {"", "First Frame", "http://127.0.0.1/f.png"})};
        first->Frames = {{"inner", inner}};
        const auto second = std::make_shared<SimDocument>();
        second->All = {Element("x", {"", "Second Frame", std::nullopt})};
        second->Frames = {{"a", first}, {"b", first}, {"inner", inner}};
        Page.Top->Frames = {{"player", first}, {"other", second}};
        Page.Top->Values = {{"Doc.title", "From &lt;Script&gt;"}};
        From.Page = Browser.Open(Browser.Pages().front());
        From.Desktop = &Desktop;
    }

    RuleReading Read(const MediaFieldRule& rule, FieldKind kind = FieldKind::Text) const {
        return EvaluateRule(From, rule, kind);
    }
    std::string Value(const MediaFieldRule& rule, FieldKind kind = FieldKind::Text) const {
        const RuleReading reading = Read(rule, kind);
        EXPECT_FALSE(reading.Failed);
        return reading.Value;
    }
    bool Fails(const MediaFieldRule& rule) const { return Read(rule).Failed; }

    /// From here on the rules are those of a profile of windows.
    void ReadWindow(const std::string& title) {
        From.Page.reset();
        From.Window = Desktop.Add(title, "Player");
    }

    SimDocuments Browser;
    SimWindows Desktop;
    SimPage& Page = Browser.Add("http://127.0.0.1/", " The Title ");
    RuleSource From;
};

TEST_F(Rules, AnEmptySourceSkipsTheRule) {
    const RuleReading reading = Read({"", "song", "("});
    EXPECT_TRUE(reading.Skipped);
    EXPECT_FALSE(reading.Failed);
    EXPECT_EQ(reading.Value, "");
}

TEST_F(Rules, MinusOneIsTheTitleOfTheDocument) {
    EXPECT_EQ(Value({"-1", "", ""}), " The Title ");
}

TEST_F(Rules, MinusTwoIsTheValueOfAScript) {
    const RuleReading reading = Read({"-2", "Doc.title", "(.*)"});
    EXPECT_EQ(reading.Raw, "From &lt;Script&gt;");
    EXPECT_EQ(reading.AfterPattern, "From &lt;Script&gt;");
    EXPECT_EQ(reading.Value, "From <Script>");
}

TEST_F(Rules, MinusTwoFailsOnAScriptError) {
    EXPECT_TRUE(Fails({"-2", "no such thing", ""}));
}

TEST_F(Rules, MinusThreeIsTheTextOfTheWindowWithoutBlanksAtItsEnds) {
    ReadWindow("  Artist - Song ");
    EXPECT_EQ(Value({"-3", "", ""}), "Artist - Song");
}

TEST_F(Rules, MinusThreeIsReadAnewEachTime) {
    ReadWindow("one");
    Desktop.SetText(From.Window, "two");
    EXPECT_EQ(Value({"-3", "", ""}), "two");
}

TEST_F(Rules, MinusThreeIsEmptyForADocument) {
    EXPECT_EQ(Value({"-3", "", ""}), "");
}

TEST_F(Rules, MinusFourIsAnElementOfTheTopDocument) {
    EXPECT_EQ(Value({"-4", "song", ""}), "Song Title");
    EXPECT_EQ(Value({"-4", "1", ""}), "Hinted");
}

TEST_F(Rules, OtherNegativeNumbersGiveNothing) {
    for (const char* source : {"-5", "-1.5", "-0.5", "-99"})
        EXPECT_EQ(Value({source, "song", ""}), "") << source;
}

TEST_F(Rules, ANumberIsReadFromTheBeginningOfTheSource) {
    EXPECT_EQ(Value({"-1 and more", "", ""}), " The Title ");
    EXPECT_EQ(Value({"-4,player", "song", ""}), "Song Title");
    EXPECT_EQ(Value({"player", "x", ""}), "First Frame");
}

TEST_F(Rules, ZeroIsTheFirstFrameAndNotTheTopDocument) {
    EXPECT_EQ(Value({"0", "x", ""}), "First Frame");
}

TEST_F(Rules, AFramePathGoesFromFrameToFrameByIndexAndByName) {
    EXPECT_EQ(Value({"1", "x", ""}), "Second Frame");
    EXPECT_EQ(Value({"other,inner", "deep", ""}), "Deep Text");
    EXPECT_EQ(Value({"1,2", "deep", ""}), "Deep Text");
    EXPECT_EQ(Value({"1,a,inner", "deep", ""}), "Deep Text");
    EXPECT_EQ(Value({"0,inner", "0", ""}), "Deep Text");
}

TEST_F(Rules, AnUnknownFrameFails) {
    for (const char* source : {"2", "nowhere", "0,7", "0,", "other,inner,inner"}) {
        EXPECT_TRUE(Fails({source, "x", ""})) << source;
    }
}

TEST_F(Rules, APageWithoutFramesFailsForZero) {
    Page.Top->Frames.clear();
    EXPECT_TRUE(Fails({"0", "song", ""}));
}

TEST_F(Rules, ADocumentWithoutABodyFails) {
    Page.Top->Frames[0].second->Body = false;
    EXPECT_TRUE(Fails({"0", "x", ""}));
    Page.Top->Body = false;
    EXPECT_TRUE(Fails({"-4", "song", ""}));
}

TEST_F(Rules, TheTitleOfAnElementComesBeforeItsText) {
    EXPECT_EQ(Value({"-4", "hint", ""}), "Hinted");
}

TEST_F(Rules, ATitleOfBlanksIsATitle) {
    Page.Top->All[0].Text = {"  ", "Shown", std::nullopt};
    EXPECT_EQ(Value({"-4", "song", ""}), "");
}

TEST_F(Rules, AnElementWithoutATitleHasItsText) {
    Page.Top->All[0].Text = {std::nullopt, " Shown ", std::nullopt};
    EXPECT_EQ(Value({"-4", "song", ""}), "Shown");
}

TEST_F(Rules, AMissingElementEmptiesItsFieldOnly) {
    EXPECT_EQ(Value({"-4", "nothing", ""}), "");
    EXPECT_EQ(Value({"-4", "99", ""}), "");
    EXPECT_EQ(Value({"-4", "", ""}), "");
    EXPECT_EQ(Value({"0", "nothing", ""}), "");
    EXPECT_EQ(Value({"-4", "bare", ""}), "");
}

TEST_F(Rules, ACoverIsTheSourceOfItsElementAndNotDecoded) {
    EXPECT_EQ(Value({"-4", "cover", ""}, FieldKind::Address), "http://127.0.0.1/a%20b&amp;.jpg");
    EXPECT_EQ(Value({"0", "x", ""}, FieldKind::Address), "http://127.0.0.1/f.png");
    EXPECT_EQ(Value({"-4", "song", ""}, FieldKind::Address), "");
    EXPECT_EQ(Value({"-4", "nothing", ""}, FieldKind::Address), "");
}

TEST_F(Rules, APatternAppliesToACoverToo) {
    EXPECT_EQ(Value({"-4", "cover", "(.*)%20"}, FieldKind::Address), "http://127.0.0.1/a");
}

TEST_F(Rules, DecodingComesAfterThePattern) {
    Page.Top->Values["x"] = "a%20b|c";
    EXPECT_EQ(Value({"-2", "x", "^([^ ]*)\\|"}), "a b");
}

TEST_F(Rules, AWindowHasNoDocument) {
    ReadWindow("w");
    EXPECT_TRUE(Fails({"-1", "", ""}));
    EXPECT_TRUE(Fails({"-4", "song", ""}));
    EXPECT_TRUE(Fails({"0", "x", ""}));
    EXPECT_TRUE(Fails({"-2", "Doc.title", ""}));
}

TEST_F(Rules, AConstantNeedsNoDocument) {
    ReadWindow("w");
    EXPECT_EQ(Value({"-2", "\"My Station\"", ""}), "My Station");
    EXPECT_EQ(Value({"-2", " 'x' ", ""}), "x");
    EXPECT_EQ(Value({"-2", "42", ""}), "42");
    EXPECT_TRUE(Fails({"-2", "\"a\" + \"b\"", ""}));
    EXPECT_TRUE(Fails({"-2", "\"", ""}));
}

TEST_F(Rules, AnEmptyScriptIsEmpty) {
    EXPECT_EQ(Value({"-2", "", ""}), "");
}

TEST_F(Rules, APageThatDoesNotAnswerFails) {
    Page.Answers = false;
    EXPECT_TRUE(Fails({"-1", "", ""}));
    EXPECT_TRUE(Fails({"-2", "Doc.title", ""}));
    EXPECT_TRUE(Fails({"0", "x", ""}));
}

TEST_F(Rules, AnInvalidPatternFailsAndLeavesTheTextAsItWasRead) {
    const RuleReading reading = Read({"-4", "hint", "("});
    EXPECT_TRUE(reading.Failed);
    EXPECT_EQ(reading.Value, "Hinted");
}

TEST(ApplyPattern, TheFirstGroupThatIsNotEmptyCountsWithoutBlanksAtItsEnds) {
    EXPECT_EQ(ApplyPattern("(x)?(.*) - (.*)", "Artist  - Song"), "Artist");
    EXPECT_EQ(ApplyPattern("()( *b *)", "a b c"), "b");
}

TEST(ApplyPattern, AGroupOfBlanksIsNotEmpty) {
    EXPECT_EQ(ApplyPattern("( +)(b)", "a b"), "");
}

TEST(ApplyPattern, OnlyTheFirstMatchCounts) {
    EXPECT_EQ(ApplyPattern("a(b?)", "a ab"), "");
}

TEST(ApplyPattern, APatternWithoutAGroupGivesTheEmptyText) {
    EXPECT_EQ(ApplyPattern(".*", "text"), "");
}

TEST(ApplyPattern, APatternThatDoesNotMatchGivesTheEmptyText) {
    EXPECT_EQ(ApplyPattern("(x)", "text"), "x");
    EXPECT_EQ(ApplyPattern("(y)", "text"), "");
    EXPECT_EQ(ApplyPattern("(X)", "text"), "");
}

TEST(ApplyPattern, AnInvalidPatternFails) {
    EXPECT_EQ(ApplyPattern("(", "text"), std::nullopt);
    EXPECT_EQ(ApplyPattern("^(a+)+$", std::string(50, 'a') + "b"), std::nullopt);
}

}  // namespace
}  // namespace Corvetape
