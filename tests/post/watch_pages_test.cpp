#include "post/lists/watch_pages.h"

#include <gtest/gtest.h>

#include <numeric>

#include "sim/sim_machine.h"
#include "support/noted_reports.h"

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
    Corvetape::Test::NotedReports Reports{Machine, Form, "876=unread %1\n"};
    WatchPages Pages{Form, Lists, Machine.Processes, Reports.Say};
};

using Texts = std::vector<std::string>;
using DragContent = WatchPages::DragContent;
using DragKeys = WatchPages::DragKeys;
using DragEffect = WatchPages::DragEffect;

TEST_F(WatchPagesTest, ShowsTheListsSortedWhileTheFileKeepsItsOrder) {
    ASSERT_TRUE(Machine.Files.Append(Lists.FileOf(Exclude), "zebra\r\nApe\r\n"));
    Pages.LoadWatchLists();
    EXPECT_EQ(Shown(Exclude), (Texts{"Ape", "zebra"}));
    Pages.AddToWatchList(Exclude, " Mole ");
    EXPECT_EQ(Shown(Exclude), (Texts{"Ape", "Mole", "zebra"}));
    EXPECT_EQ(FileText(Exclude), "zebra\r\nApe\r\nMole\r\n");
    EXPECT_TRUE(Shown(Include).empty());
}

TEST_F(WatchPagesTest, AListThatCouldNotBeReadIsReportedAndNeverWritten) {
    const std::string file = Lists.FileOf(Exclude);
    Machine.Files.Put(file, "One\r\nTwo\r\n");
    Machine.Files.AddFault({.Pattern = file, .Operation = FileOperation::Read, .Times = 1});
    const Texts& reported = Reports.Lines;
    Pages.LoadWatchLists();
    EXPECT_EQ(reported, Texts{"ERROR unread " + file});
    EXPECT_EQ(Form.lblStatus[1].Caption(), "unread " + file);
    Pages.AddToWatchList(Exclude, "Three");
    EXPECT_EQ(Machine.Files.Content(file), "One\r\nTwo\r\n");
    EXPECT_EQ(Shown(Exclude), Texts{"Three"}) << "it holds until the program ends";
    Pages.LoadWatchLists();
    EXPECT_EQ(reported.size(), 1U);
    Pages.AddToWatchList(Exclude, "Three");
    EXPECT_EQ(Machine.Files.Content(file), "One\r\nTwo\r\nThree\r\n");
}

TEST_F(WatchPagesTest, ListsFollowToAnotherFolderOfTheLogs) {
    Machine.Files.MakeFolders("/home/user/new");
    Machine.Files.Put("/home/user/new/Exclude.txt", "Other\r\n");
    Pages.AddToWatchList(Include, "Mine");
    Pages.AddToWatchList(Exclude, "Old");
    Folders.Paths[2] = "/home/user/new";
    Pages.FollowFolder("/home/user/log");
    EXPECT_EQ(Machine.Files.Content("/home/user/new/Include.txt"), "Mine\r\n");
    EXPECT_EQ(Machine.Files.Content("/home/user/new/Exclude.txt"), "Other\r\n");
    EXPECT_EQ(Shown(Include), Texts{"Mine"});
    EXPECT_EQ(Shown(Exclude), Texts{"Other"});
    EXPECT_EQ(Machine.Files.Content("/home/user/log/Exclude.txt"), "Old\r\n");
}

TEST_F(WatchPagesTest, AListThatCouldNotBeReadFollowsAsItIs) {
    const std::string file = Lists.FileOf(Exclude);
    Machine.Files.Put(file, "One\r\n");
    Machine.Files.AddFault({.Pattern = file, .Operation = FileOperation::Read, .Times = 1});
    Pages.LoadWatchLists();
    Pages.AddToWatchList(Exclude, "Two");
    Machine.Files.MakeFolders("/home/user/new");
    Folders.Paths[2] = "/home/user/new";
    Pages.FollowFolder("/home/user/log");
    EXPECT_EQ(Machine.Files.Content("/home/user/new/Exclude.txt"), "One\r\n");
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

TEST_F(WatchPagesTest, AllSelectedEntriesAreDeletedAtOnce) {
    for (const char* entry : {"d", "a", "c", "b"}) Pages.AddToWatchList(Exclude, entry);
    MultiListBox& list = Form.lstWatch[1];
    list.SelectExactly(std::vector<int32_t>{0, 2});
    list.Selected(3, true);
    EXPECT_TRUE(Form.cmdDeleteFromWatchList[1].Enabled());
    list.Selected(0, false);
    Form.cmdDeleteFromWatchList[1].Press();
    EXPECT_EQ(Shown(Exclude), (Texts{"a", "b"}));
    EXPECT_EQ(FileText(Exclude), "a\r\nb\r\n");
    EXPECT_FALSE(Form.cmdDeleteFromWatchList[1].Enabled());
}

TEST_F(WatchPagesTest, WithoutASelectedEntryThereIsNothingToDelete) {
    Pages.AddToWatchList(Exclude, "a");
    Form.lstWatch[1].Selected(0, true);
    Form.lstWatch[1].Selected(0, false);  // still the current one
    EXPECT_FALSE(Form.cmdDeleteFromWatchList[1].Enabled());
    Pages.DeletePressed(Exclude);
    EXPECT_EQ(Shown(Exclude), (Texts{"a"}));
}

TEST_F(WatchPagesTest, ANewEntryIsScrolledIntoViewAndLeavesTheSelection) {
    for (const char* entry : {"a", "c"}) Pages.AddToWatchList(Exclude, entry);
    Form.lstWatch[1].Select(1);
    int32_t revealed = -1;
    Form.lstWatch[1].Revealed.Connect([&](int32_t index) { revealed = index; });
    Pages.AddToWatchList(Exclude, "b");
    EXPECT_EQ(revealed, 1);
    EXPECT_FALSE(Form.lstWatch[1].Items()[1].Selected);
    EXPECT_TRUE(Form.lstWatch[1].Items()[2].Selected);
}

TEST_F(WatchPagesTest, FilesThatAreDraggedWouldBeCopiedAndNothingElse) {
    EXPECT_EQ(Pages.DragOver(DragContent::Files, DragKeys::None), DragEffect::Copy);
    EXPECT_EQ(Pages.DragOver(DragContent::Files, DragKeys::Ctrl), DragEffect::Copy);
    EXPECT_EQ(Pages.DragOver(DragContent::Other, DragKeys::None), DragEffect::None);
}

TEST_F(WatchPagesTest, DroppedMusicFilesAddTheirNames) {
    const Texts paths = {"/m/Ann - One.mp3", "/m/cover.jpg", "/m/Bob - Two.OGG", "/m/ann - one.wav"};
    Pages.DragOver(DragContent::Files, DragKeys::None);
    Pages.DragDrop(Exclude, DragContent::Files, paths);
    EXPECT_EQ(Shown(Exclude), (Texts{"Ann - One", "Bob - Two"}));
    EXPECT_EQ(FileText(Exclude), "Ann - One\r\nBob - Two\r\n");
    EXPECT_TRUE(Shown(Include).empty());
}

TEST_F(WatchPagesTest, DroppedWithCtrlTheyTakeThemAwayAndTheFileIsReadAgain) {
    for (const char* entry : {"Ann - One", "Bob - Two", "Cleo"}) Pages.AddToWatchList(Exclude, entry);
    const Texts paths = {"/m/ANN - ONE.mp3", "/m/Nobody.mp3", "/m/cleo.ogg"};
    Pages.DragOver(DragContent::Files, DragKeys::Ctrl);
    Pages.DragDrop(Exclude, DragContent::Files, paths);
    EXPECT_EQ(Shown(Exclude), (Texts{"Bob - Two"}));
    EXPECT_EQ(FileText(Exclude), "Bob - Two\r\n");
}

TEST_F(WatchPagesTest, WithCtrlAListThatCannotBeWrittenIsShownAsItsFileHasIt) {
    for (const char* entry : {"Ann - One", "Bob - Two"}) Pages.AddToWatchList(Exclude, entry);
    Machine.Files.AddFault({.Operation = FileOperation::Replace});
    const Texts paths = {"/m/Ann - One.mp3"};
    Pages.DragOver(DragContent::Files, DragKeys::Ctrl);
    Pages.DragDrop(Exclude, DragContent::Files, paths);
    EXPECT_EQ(Shown(Exclude), (Texts{"Ann - One", "Bob - Two"}));
    EXPECT_TRUE(Lists.IsSongExcluded("Ann - One"));
}

TEST_F(WatchPagesTest, TheLastOfTheDroppedFilesIsScrolledIntoView) {
    int32_t revealed = -1;
    Form.lstWatch[1].Revealed.Connect([&](int32_t index) { revealed = index; });
    const Texts paths = {"/m/b.mp3", "/m/a.mp3", "/m/B.ogg"};
    Pages.DragOver(DragContent::Files, DragKeys::None);
    Pages.DragDrop(Exclude, DragContent::Files, paths);
    EXPECT_EQ(revealed, 0);
    EXPECT_EQ(Form.lstWatch[1].SelCount(), 0);
}

TEST_F(WatchPagesTest, ManyFilesAreAddedToALongListWithoutAReportOfEach) {
    Pages.AddToWatchList(Exclude, "Song 5");
    Form.lstWatch[1].Select(0);
    int changes = 0;
    Form.lstWatch[1].Changed.Connect([&] { ++changes; });
    Texts paths;
    for (int i = 9; i >= 0; --i) paths.push_back("/m/Song " + std::to_string(i) + ".mp3");
    Pages.DragOver(DragContent::Files, DragKeys::None);
    Pages.DragDrop(Exclude, DragContent::Files, paths);
    ASSERT_EQ(Shown(Exclude).size(), 10U);
    EXPECT_TRUE(std::ranges::is_sorted(Shown(Exclude)));
    EXPECT_TRUE(Form.lstWatch[1].Items()[5].Selected) << "what is selected stays so";
    EXPECT_LE(changes, 2);
}

TEST_F(WatchPagesTest, TheKeysOfTheLastMoveCount) {
    const Texts paths = {"/m/Ann - One.mp3"};
    Pages.DragOver(DragContent::Files, DragKeys::Ctrl);
    Pages.DragOver(DragContent::Files, DragKeys::None);
    Pages.DragDrop(Include, DragContent::Files, paths);
    EXPECT_EQ(Shown(Include), (Texts{"Ann - One"}));
}

TEST_F(WatchPagesTest, ADropOfAnythingButFilesDoesNothing) {
    const Texts paths = {"/m/Ann - One.mp3"};
    Pages.DragOver(DragContent::Other, DragKeys::None);
    Pages.DragDrop(Include, DragContent::Other, paths);
    EXPECT_TRUE(Shown(Include).empty());
    EXPECT_EQ(FileText(Include), "(none)");
}

TEST_F(WatchPagesTest, ManyEntriesAreDeletedAtOnceWithoutAReportOfEach) {
    std::string text;
    constexpr int count = 100'000;
    for (int i = 0; i < count; ++i) text += "Song " + std::to_string(i) + "\r\n";
    ASSERT_TRUE(Machine.Files.Append(Lists.FileOf(Exclude), text));
    int changes = 0;
    Form.lstWatch[1].Changed.Connect([&] { ++changes; });
    Pages.LoadWatchLists();
    std::vector<int32_t> all(count - 1);
    std::iota(all.begin(), all.end(), 1);
    Form.lstWatch[1].SelectExactly(all);
    Pages.DeletePressed(Exclude);
    EXPECT_EQ(Shown(Exclude), (Texts{"Song 0"}));
    EXPECT_LE(changes, 5);
}

TEST_F(WatchPagesTest, TheFileIsOpenedForEditing) {
    Form.cmdEditWatchList[0].Press();
    Form.cmdEditWatchList[1].Press();
    ASSERT_EQ(Machine.Processes.ShellCalls.size(), 2u);
    EXPECT_EQ(Machine.Processes.ShellCalls[0].Path, "/home/user/log/Include.txt");
    EXPECT_EQ(Machine.Processes.ShellCalls[1].Path, "/home/user/log/Exclude.txt");
    EXPECT_TRUE(Machine.Files.FileSize(Lists.FileOf(Exclude))) << "an editor needs a file";
    ASSERT_TRUE(Machine.Files.Append(Lists.FileOf(Exclude), "Typed there\r\n"));
    Form.cmdEditWatchList[1].Press();
    EXPECT_EQ(FileText(Exclude), "Typed there\r\n") << "what was typed outside stays";
}

TEST_F(WatchPagesTest, AnOutsideEditIsNotTakenOver) {
    Pages.AddToWatchList(Exclude, "One");
    ASSERT_TRUE(Machine.Files.Append(Lists.FileOf(Exclude), "Two\r\n"));
    Pages.AddToWatchList(Exclude, "Three");
    EXPECT_EQ(Shown(Exclude), (Texts{"One", "Three"}));
    EXPECT_EQ(FileText(Exclude), "One\r\nThree\r\n");
}

TEST_F(WatchPagesTest, ATextOfBlanksIsTakenOutOfTheBoxAndNotAdded) {
    Form.txtWatch[0].Text("  ");
    EXPECT_TRUE(Form.cmdAddToWatchList[0].Enabled());
    Pages.EnterPressed(Include);
    EXPECT_EQ(Form.txtWatch[0].Text(), "");
    EXPECT_TRUE(Shown(Include).empty());
}

}  // namespace
}  // namespace Corvetape
