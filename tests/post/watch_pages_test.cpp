#include "post/watch_pages.h"

#include <gtest/gtest.h>

#include "platform/sim/sim_machine.h"

namespace Corvetape {
namespace {

constexpr auto Include = WatchListKind::Include;
constexpr auto Exclude = WatchListKind::Exclude;

class WatchPagesTest : public testing::Test {
 protected:
    WatchPagesTest() {
        Machine.Files.MakeFolder("/home/user/log");
        Folders.Paths[2] = "/home/user/log";
    }

    std::vector<std::string> Shown(WatchListKind kind) {
        std::vector<std::string> texts;
        for (const ListItem& item : Form.lstWatch[static_cast<size_t>(kind)].Items())
            texts.push_back(item.Text);
        return texts;
    }

    std::string FileText(WatchListKind kind) {
        return Machine.Files.ReadAll(Lists.FileOf(kind), 1 << 20).value_or("(none)");
    }

    SimMachine Machine;
    WorkingFolders Folders;
    frmMain Form;
    WatchLists Lists{Machine.Files, Folders};
    WatchPages Pages{Form, Lists, Machine.Processes};
};

using Texts = std::vector<std::string>;

TEST_F(WatchPagesTest, ShowsTheListsSortedWhileTheFileKeepsItsOrder) {
    ASSERT_TRUE(Machine.Files.Append(Lists.FileOf(Exclude), "zebra\r\nApe\r\n"));
    Pages.LoadWatchLists();
    EXPECT_EQ(Shown(Exclude), (Texts{"Ape", "zebra"}));
    Pages.AddToWatchList(Exclude, " Mole ");
    EXPECT_EQ(Shown(Exclude), (Texts{"Ape", "Mole", "zebra"}));
    EXPECT_EQ(FileText(Exclude), "zebra\r\nApe\r\nMole\r\n");
    EXPECT_TRUE(Shown(Include).empty());
}

TEST_F(WatchPagesTest, ATextInTheBoxEnablesTheButtonThatAddsIt) {
    EXPECT_FALSE(Form.cmdAddToWatchList[0].Enabled());
    Form.txtWatch[0].Text("One");
    EXPECT_TRUE(Form.cmdAddToWatchList[0].Enabled());
    Form.cmdAddToWatchList[0].Press();
    EXPECT_EQ(FileText(Include), "One\r\n");
    EXPECT_EQ(Form.txtWatch[0].Text(), "");
    EXPECT_FALSE(Form.cmdAddToWatchList[0].Enabled());
}

TEST_F(WatchPagesTest, EnterAddsATextAndDoesNothingWithoutOne) {
    Pages.EnterPressed(Exclude);
    EXPECT_EQ(FileText(Exclude), "(none)");
    Form.txtWatch[1].Text("One");
    Pages.EnterPressed(Exclude);
    EXPECT_EQ(FileText(Exclude), "One\r\n");
}

TEST_F(WatchPagesTest, ADoubleIsDroppedInSilence) {
    Pages.AddToWatchList(Exclude, "One");
    Pages.AddToWatchList(Exclude, "ONE");
    EXPECT_EQ(Shown(Exclude), (Texts{"One"}));
}

TEST_F(WatchPagesTest, ASelectedEntryCanBeDeleted) {
    for (const char* entry : {"a", "b", "c"}) Pages.AddToWatchList(Exclude, entry);
    EXPECT_FALSE(Form.cmdDeleteFromWatchList[1].Enabled());
    Form.lstWatch[1].ListIndex(1);
    EXPECT_TRUE(Form.cmdDeleteFromWatchList[1].Enabled());
    Pages.DeletePressed(Exclude);
    EXPECT_EQ(Shown(Exclude), (Texts{"a", "c"}));
    EXPECT_EQ(FileText(Exclude), "a\r\nc\r\n");
    EXPECT_FALSE(Form.cmdDeleteFromWatchList[1].Enabled());
    Pages.DeletePressed(Exclude);
    EXPECT_EQ(FileText(Exclude), "a\r\nc\r\n");
}

TEST_F(WatchPagesTest, ADoubleClickCopiesTheEntryForEditing) {
    Pages.AddToWatchList(Include, "One");
    Pages.DoubleClicked(Include);
    EXPECT_EQ(Form.txtWatch[0].Text(), "");
    Form.lstWatch[0].ListIndex(0);
    Pages.DoubleClicked(Include);
    EXPECT_EQ(Form.txtWatch[0].Text(), "One");
    EXPECT_EQ(Shown(Include), (Texts{"One"}));
}

TEST_F(WatchPagesTest, DroppedMusicFilesAddTheirNames) {
    const Texts paths = {"/m/Ann - One.mp3", "/m/cover.jpg", "/m/Bob - Two.OGG", "/m/ann - one.wav"};
    Pages.FilesDropped(Exclude, paths, WatchPages::Drop::AddNames);
    EXPECT_EQ(Shown(Exclude), (Texts{"Ann - One", "Bob - Two"}));
    EXPECT_EQ(FileText(Exclude), "Ann - One\r\nBob - Two\r\n");
}

TEST_F(WatchPagesTest, DroppedWithCtrlTheyTakeThemAway) {
    Pages.AddToWatchList(Exclude, "Ann - One");
    Pages.AddToWatchList(Exclude, "Bob - Two");
    const Texts paths = {"/m/ANN - ONE.mp3", "/m/Nobody.mp3"};
    Pages.FilesDropped(Exclude, paths, WatchPages::Drop::RemoveNames);
    EXPECT_EQ(Shown(Exclude), (Texts{"Bob - Two"}));
    EXPECT_EQ(FileText(Exclude), "Bob - Two\r\n");
}

}  // namespace
}  // namespace Corvetape
