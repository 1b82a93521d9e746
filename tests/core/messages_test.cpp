#include "core/controls/messages.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "core/controls/control_array.h"
#include "core/controls/message_texts.h"
#include "core/fakes.h"

namespace Corvetape {
namespace {

class MessagesTest : public testing::Test {
 protected:
    void Load(std::string content) {
        Disk.Contents["/opt/corvetape/test.lang"] = std::move(content);
        Texts.Load("test");
    }

    MemoryFiles Disk;
    RecordingDialogs Boxes;
    clsLocalizeControls Texts{Disk, "/opt/corvetape", Boxes};
};

TEST_F(MessagesTest, WithoutALanguageEveryMessageIsEmpty) {
    Disk.Contents["/opt/corvetape/.lang"] = "1=a\n";
    EXPECT_EQ(Texts.FormatMsg("1"), "");
    Texts.Load("");
    EXPECT_EQ(Texts.FormatMsg("1"), "");
    EXPECT_EQ(Texts.CurrentLanguage(), "");
}

TEST_F(MessagesTest, AMessageIsTheFirstFieldOfItsKey) {
    Load("701=Please type a number|a tip|ignored\n");
    EXPECT_EQ(Texts.FormatMsg("701"), "Please type a number");
    EXPECT_EQ(Texts.CurrentLanguage(), "test");
}

TEST_F(MessagesTest, AMissingKeyOrFileGivesAnEmptyTextAndNoBox) {
    Load("1=a\n");
    EXPECT_EQ(Texts.FormatMsg("2"), "");
    Texts.Load("klingon");
    EXPECT_EQ(Texts.FormatMsg("1"), "");
    EXPECT_TRUE(Boxes.Boxes.empty());
}

TEST_F(MessagesTest, ArgumentsReplaceTheirNumbers) {
    Load("703=from %1 to %2, %1\n");
    EXPECT_EQ(Texts.FormatMsg("703", {"5", "10"}), "from 5 to 10, 5");
    const std::vector<std::string> arguments = {"1", "2"};
    EXPECT_EQ(Texts.FormatMsg("703", arguments), "from 1 to 2, 1");
}

TEST_F(MessagesTest, ANumberWithoutItsArgumentStays) {
    Load("1=%1 and %2\n");
    EXPECT_EQ(Texts.FormatMsg("1", {"a"}), "a and %2");
    EXPECT_EQ(Texts.FormatMsg("1"), "%1 and %2");
}

TEST_F(MessagesTest, TheFirstArgumentHitsTheNumberTen) {
    Load("1=%10\n");
    EXPECT_EQ(Texts.FormatMsg("1", {"a"}), "a0");
}

TEST_F(MessagesTest, AnArgumentWithALaterNumberIsReplacedInTheNextPass) {
    Load("1=%1\n");
    EXPECT_EQ(Texts.FormatMsg("1", {"<%2>", "b"}), "<b>");
}

TEST_F(MessagesTest, LineEndsAreWrittenAsTwoCharactersAlsoInArguments) {
    Load("1=a\\r\\nb %1\n");
    EXPECT_EQ(Texts.FormatMsg("1", {"C:\\new\\radio"}), "a\r\nb C:\new\radio");
}

TEST_F(MessagesTest, AMessageIsNotRedirected) {
    Load("1=:2\n2=b\n");
    EXPECT_EQ(Texts.FormatMsg("1"), ":2");
}

TEST_F(MessagesTest, QuotesKeepTheBlanksOfAText) {
    Load("7010=\"Log file \"\n");
    EXPECT_EQ(Texts.FormatMsg("7010"), "Log file ");
}

TEST_F(MessagesTest, KeysAreComparedIgnoringCase) {
    Load("HomePage=x\n");
    EXPECT_EQ(Texts.FormatMsg("homepage"), "x");
}

TEST_F(MessagesTest, LinesAfterASectionDoNotCount) {
    Load("1=a\n[German]\n2=b\n");
    EXPECT_EQ(Texts.FormatMsg("2"), "");
}

TEST_F(MessagesTest, TheFirstOfADoubledKeyStaysAndIsReported) {
    Load("1=a\nAbc=x\nABC=y\n");
    EXPECT_EQ(Texts.FormatMsg("abc"), "x");
    EXPECT_EQ(Boxes.Boxes, (std::vector<RecordingDialogs::Shown>{
                               {"Item ABC exists twice in language file!", DialogIcon::Exclamation}}));
}

TEST_F(MessagesTest, ADoubledKeyIsReportedOncePerField) {
    Load("1=a|tip\n1=b|other\n2=c\n");
    EXPECT_EQ(Boxes.Boxes.size(), size_t{2});
    EXPECT_EQ(Texts.FormatMsg("2"), "c");
}

TEST_F(MessagesTest, KeysBeyondTheListingBufferAreLost) {
    std::string content;
    for (int i = 10000; i < 19999; ++i) content += std::to_string(i) + "=x\n";
    Load(content);
    // Five digits and a NUL for each key, and a NUL at the end: 5461 keys fit into 32767 bytes.
    EXPECT_EQ(Texts.FormatMsg("15460"), "x");
    EXPECT_EQ(Texts.FormatMsg("15461"), "");
    EXPECT_TRUE(Boxes.Boxes.empty());
}

TEST_F(MessagesTest, AValueIsReadThroughABufferOf32767) {
    Load("1=" + std::string(40000, 'x') + "\n");
    EXPECT_EQ(Texts.FormatMsg("1").size(), size_t{32766});
}

TEST_F(MessagesTest, LoadingAnotherLanguageDropsTheTextsOfTheFirst) {
    Load("1=a\n2=b\n");
    Disk.Contents["/opt/corvetape/other.lang"] = "1=c\n";
    Texts.Load("other");
    EXPECT_EQ(Texts.FormatMsg("1"), "c");
    EXPECT_EQ(Texts.FormatMsg("2"), "");
}

struct TestForm : Form {
    TestForm() : Form("frmTest", "Default title", "300") {
        lblPlain.Caption("default");
        lblNoKey.Caption("default");
        tbsTabs.AddTab({"ONE", "", "301", "One", ""});
        tbsTabs.AddTab({"TWO", "", "0", "", ""});
    }
    Label lblPlain{*this, "lblPlain", -1, "301"};
    Label lblNoKey{*this, "lblNoKey"};
    TextBox txtBox{*this, "txtBox", -1, "301"};
    ComboBox cmbList{*this, "cmbList"};
    TabStrip tbsTabs{*this, "tbsTabs"};
};

TEST_F(MessagesTest, AFormAndItsControlsTakeTheirTextsByKey) {
    TestForm form;
    Load("300=Title\n301=Caption|Tip\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.Caption(), "Title");
    EXPECT_EQ(form.lblPlain.Caption(), "Caption");
    EXPECT_EQ(form.lblPlain.ToolTip(), "Tip");
}

TEST_F(MessagesTest, ATextBoxTakesItsTextAndNotItsCaption) {
    TestForm form;
    Load("301=Caption\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.txtBox.Text(), "Caption");
    EXPECT_EQ(form.txtBox.Caption(), "");
}

TEST_F(MessagesTest, ATabTakesItsTextsByItsOwnKey) {
    TestForm form;
    Load("301=Caption|Tip\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.tbsTabs.Tabs()[0].Caption, "Caption");
    EXPECT_EQ(form.tbsTabs.Tabs()[0].ToolTip, "Tip");
    EXPECT_EQ(form.tbsTabs.Tabs()[1].Caption, "");
    EXPECT_EQ(form.tbsTabs.Tabs()[0].Key, "ONE");
}

TEST_F(MessagesTest, AControlWithTheKeyZeroIsLeftAlone) {
    TestForm form;
    form.lblNoKey.ToolTip("old tip");
    Load("0=zero|zero tip\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.lblNoKey.Caption(), "default");
    EXPECT_EQ(form.lblNoKey.ToolTip(), "old tip");
}

TEST_F(MessagesTest, AToolTipAloneLeavesTheCaption) {
    TestForm form;
    Load("301=|Only a tool tip\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.lblPlain.Caption(), "default");
    EXPECT_EQ(form.lblPlain.ToolTip(), "Only a tool tip");
}

TEST_F(MessagesTest, WithoutAToolTipTheOldOneGoes) {
    TestForm form;
    form.lblPlain.ToolTip("old tip");
    Load("301=Caption\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.lblPlain.ToolTip(), "");
}

TEST_F(MessagesTest, AColonNamesTheKeyThatServes) {
    TestForm form;
    Load("301=:400|:400\n400=Shared|Shared tip\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.lblPlain.Caption(), "Shared");
    EXPECT_EQ(form.lblPlain.ToolTip(), "Shared tip");
}

TEST_F(MessagesTest, ARedirectionGoesOneLevelOnly) {
    TestForm form;
    Load("301=:400\n400=:500\n500=deep\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.lblPlain.Caption(), ":500");
}

TEST_F(MessagesTest, ARedirectionToAMissingKeyKeepsTheCaptionAndEmptiesTheToolTip) {
    TestForm form;
    form.lblPlain.ToolTip("old tip");
    Load("301=:400|:400\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.lblPlain.Caption(), "default");
    EXPECT_EQ(form.lblPlain.ToolTip(), "");
}

TEST_F(MessagesTest, AnItemOfAComboBoxThatIsAKeyBecomesItsText) {
    TestForm form;
    form.cmbList.AddItem("5900");
    form.cmbList.AddItem("abc");
    Load("5900=Programs\n");
    Texts.LocalizeControls(form);
    EXPECT_EQ(form.cmbList.Items()[0].Text, "Programs");
    EXPECT_EQ(form.cmbList.Items()[1].Text, "abc");
}

TEST_F(MessagesTest, WithoutALanguageAFormStaysAsItIs) {
    TestForm form;
    form.lblPlain.ToolTip("old tip");
    Texts.LocalizeControls(form);
    Texts.LocalizeControl(form.lblPlain);
    EXPECT_EQ(form.Caption(), "Default title");
    EXPECT_EQ(form.lblPlain.ToolTip(), "old tip");
}

class EnglishTest : public MessagesTest {
 protected:
    EnglishTest() {
        std::ifstream file(CORVETAPE_SOURCE_DIR "/data/english.lang", std::ios::binary);
        std::stringstream content;
        content << file.rdbuf();
        Disk.Contents["/opt/corvetape/english.lang"] = content.str();
        Texts.Load("english");
    }
};

TEST_F(EnglishTest, HasEveryMessageAndAddress) {
    for (const MessageText& message : Message::All)
        EXPECT_NE(Texts.FormatMsg(message.Key), "") << message.Key;
    for (const char* key : {"100", "homepage", "email", "onlinehelp"}) EXPECT_NE(Texts.FormatMsg(key), "");
}

TEST_F(EnglishTest, HasNoKeyTwice) {
    EXPECT_TRUE(Boxes.Boxes.empty());
}

TEST_F(EnglishTest, AMessageUsesTheArgumentsThatItIsGivenAndNoOthers) {
    const std::vector<std::pair<const char*, size_t>> counts = {
        {"701", 0},  {"702", 0},   {"703", 2},  {"704", 1},  {"705", 1},   {"706", 0},   {"707", 1},
        {"708", 1},  {"802", 0},   {"803", 0},  {"804", 0},  {"805", 0},   {"811", 0},   {"812", 0},
        {"813", 0},  {"814", 1},   {"870", 1},  {"871", 0},  {"872", 0},   {"815", 0},   {"816", 0},
        {"817", 1},  {"818", 1},   {"819", 0},  {"820", 0},  {"821", 0},   {"822", 0},   {"825", 0},
        {"826", 3},  {"827", 0},   {"828", 0},  {"829", 0},  {"833", 0},   {"834", 0},   {"835", 0},
        {"840", 1},  {"841", 1},   {"842", 0},  {"843", 0},  {"844", 3},   {"845", 3},   {"846", 3},
        {"847", 3},  {"848", 2},   {"849", 1},  {"865", 0},  {"100", 0},   {"4801", 0},  {"4802", 0},
        {"4803", 0}, {"7010", 0},  {"7910", 0}, {"7920", 0}, {"900", 0},   {"901", 1},   {"902", 0},
        {"903", 2},  {"904", 2},   {"905", 2},  {"906", 1},  {"907", 0},   {"908", 3},   {"909", 0},
        {"4800", 1}, {"5900", 1},  {"5910", 0}, {"7900", 1}, {"50010", 1}, {"989VI", 0}, {"877", 2},
        {"878", 2},  {"61730", 1}, {"61731", 2}};
    for (const auto& [key, count] : counts) {
        std::vector<std::string> arguments;
        for (size_t i = 0; i < count; ++i) arguments.push_back("<" + std::to_string(i) + ">");
        const std::string text = Texts.FormatMsg(key, arguments);
        EXPECT_EQ(text.find('%'), std::string::npos) << key;
        for (const std::string& each : arguments) EXPECT_NE(text.find(each), std::string::npos) << key;
    }
}

TEST_F(EnglishTest, WhatIsSaidOfAFullDiskHoldsAlsoWithoutAWindow) {
    for (const char* key : {"803", "804", "805", "833", "834", "835"}) {
        EXPECT_EQ(Texts.FormatMsg(key).find("tab \""), std::string::npos) << key;
    }
}

TEST_F(EnglishTest, BaseAddressesEndInASlash) {
    EXPECT_TRUE(Texts.FormatMsg("homepage").ends_with('/'));
    EXPECT_TRUE(Texts.FormatMsg("onlinehelp").ends_with('/'));
}

}  // namespace
}  // namespace Corvetape
