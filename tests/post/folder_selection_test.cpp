#include "post/options/folder_selection.h"

#include <gtest/gtest.h>

#include <string>

#include "post/lists/watch_pages.h"
#include "post/post_bench.h"

namespace Corvetape {
namespace {

class FolderSelectionTest : public ::testing::Test {
 protected:
    void SetUp() override {
        for (size_t i = 0; i < 3; ++i) Bench.Form.txtPath[i].ToolTip(Bench.Folders.Paths[i]);
        Bench.Sim.Files.MakeFolders("/new");
    }

    /// Texts of all boxes so far, a line each, with "start" folders after those that have one.
    std::string Boxes() {
        std::string lines;
        for (const ShownBox& box : Bench.Sim.Dialogs.Boxes) {
            lines += box.Text + (box.Start.empty() ? "" : " from " + box.Start) + "\n";
        }
        return lines;
    }

    Testing::PostBench Bench;
    WatchLists Lists{Bench.Sim.Files, Bench.Folders};
    WatchPages Pages{Bench.Form, Lists, Bench.Sim.Processes, Bench.Say};
    FolderSelection Selection{
        Bench.Form, {Bench.Options, Bench.Folders}, Bench.Store, Bench.Sim.Get(), Bench.Messages, Pages};
};

TEST_F(FolderSelectionTest, AChosenFolderIsStoredSetAndShown) {
    const char* keys[] = {"TempPath", "MusicPath", "LogFilePath"};
    for (size_t i = 0; i < 3; ++i) {
        const std::string folder = "/new/" + std::to_string(i);
        Bench.Sim.Files.MakeFolders(folder);
        Bench.Sim.Dialogs.FolderAnswers.push_back(folder);
        Bench.Form.cmdGetDir[i].Press();
        EXPECT_EQ(Bench.StoredOption(keys[i]), folder);
        EXPECT_EQ(Bench.Folders.Paths[i], folder);
        EXPECT_EQ(Bench.Form.txtPath[i].ToolTip(), folder);
        EXPECT_EQ(Bench.Form.txtPath[i].Text(), folder);
    }
    EXPECT_EQ(Bench.Options.TempPath, "/new/0");
    EXPECT_EQ(Bench.Options.MusicPath, "/new/1");
    EXPECT_EQ(Bench.Options.LogFilePath, "/new/2");
}

TEST_F(FolderSelectionTest, TheTitleNamesTheFolderAndThePresentOneIsTheStart) {
    for (size_t i = 0; i < 3; ++i) Bench.Form.cmdGetDir[i].Press();
    EXPECT_EQ(
        Boxes(),
        "text 4800 text 4801 from /temp\ntext 4800 text 4802 from /music\ntext 4800 text 4803 from /log\n");
}

TEST_F(FolderSelectionTest, ABoxSaysThatANewTemporaryFolderIsUsedFromTheNextStartOn) {
    Bench.Sim.Dialogs.FolderAnswers = {"/new"};
    Bench.Form.cmdGetDir[0].Press();
    EXPECT_EQ(Boxes(), "text 4800 text 4801 from /temp\ntext 813\n");
    EXPECT_EQ(Bench.Sim.Dialogs.Boxes[1].Icon, DialogIcon::Information);
    EXPECT_EQ(Bench.Folders.SongTempFolder, "/temp/Corvet");
    EXPECT_FALSE(Bench.Sim.Files.Exists("/new/Corvet"));
}

TEST_F(FolderSelectionTest, AnotherFolderIsTakenWithoutAWord) {
    Bench.Sim.Dialogs.FolderAnswers = {"/new"};
    Bench.Form.cmdGetDir[1].Press();
    EXPECT_EQ(Boxes(), "text 4800 text 4802 from /music\n");
}

TEST_F(FolderSelectionTest, CancelChangesNothing) {
    Bench.Form.cmdGetDir[1].Press();
    EXPECT_EQ(Bench.Folders.Paths[1], "/music");
    EXPECT_EQ(Bench.StoredOption("MusicPath"), "(none)");
}

TEST_F(FolderSelectionTest, TheFolderThatIsSetAlreadyChangesNothingWhateverItsCase) {
    Bench.Sim.Dialogs.FolderAnswers = {"/TEMP"};
    Bench.Form.cmdGetDir[0].Press();
    EXPECT_EQ(Bench.Folders.Paths[0], "/temp");
    EXPECT_EQ(Bench.StoredOption("TempPath"), "(none)");
    EXPECT_EQ(Boxes(), "text 4800 text 4801 from /temp\n");
}

TEST_F(FolderSelectionTest, OneFolderForTemporaryFilesAndMusicIsRefused) {
    Bench.Sim.Dialogs.FolderAnswers = {"/Music", "/Temp"};
    Bench.Form.cmdGetDir[0].Press();
    Bench.Form.cmdGetDir[1].Press();
    EXPECT_EQ(Boxes(),
              "text 4800 text 4801 from /temp\ntext 812\ntext 4800 text 4802 from /music\ntext 812\n");
    EXPECT_EQ(Bench.Sim.Dialogs.Boxes[1].Icon, DialogIcon::Exclamation);
    EXPECT_EQ(Bench.Folders.Paths[0], "/temp");
    EXPECT_EQ(Bench.Folders.Paths[1], "/music");
    EXPECT_EQ(Bench.StoredOption("TempPath"), "(none)");
}

TEST_F(FolderSelectionTest, TheLogMayBeInAnyFolder) {
    for (const char* folder : {"/temp", "/music"}) {
        Bench.Sim.Dialogs.FolderAnswers = {folder};
        Bench.Form.cmdGetDir[2].Press();
        EXPECT_EQ(Bench.Folders.Paths[2], folder);
    }
    Bench.Sim.Dialogs.FolderAnswers = {"/music", "/log"};
    Bench.Form.cmdGetDir[0].Press();
    EXPECT_EQ(Bench.Folders.Paths[0], "/temp");
    Bench.Form.cmdGetDir[0].Press();
    EXPECT_EQ(Bench.Folders.Paths[0], "/log");
}

TEST_F(FolderSelectionTest, AStaleFolderIsAskedForAgainUntilOneExists) {
    Bench.Folders.Paths[1] = "/gone";
    Bench.Form.txtPath[1].ToolTip("/gone");
    Bench.Sim.Dialogs.FolderAnswers = {std::nullopt, "/gone", "/missing", "/temp", "/new"};
    Bench.Form.cmdGetDir[1].Press();
    EXPECT_EQ(Boxes(),
              "text 4800 text 4802 from /gone\ntext 811\n"
              "text 4800 text 4802 from /gone\ntext 811\n"
              "text 4800 text 4802 from /gone\ntext 811\n"
              "text 4800 text 4802 from /missing\ntext 812\ntext 811\n"
              "text 4800 text 4802 from /missing\n");
    EXPECT_EQ(Bench.Sim.Dialogs.Boxes[1].Icon, DialogIcon::Exclamation);
    EXPECT_EQ(Bench.Folders.Paths[1], "/new");
    EXPECT_EQ(Bench.StoredOption("MusicPath"), "/new");
}

TEST_F(FolderSelectionTest, TheWindowIsDisabledWhileItAsks) {
    std::string states;
    Bench.Sim.Dialogs.WhileOpen = [&](const ShownBox&) { states += Bench.Form.Enabled() ? "on " : "off "; };
    Bench.Sim.Dialogs.FolderAnswers = {"/new"};
    Bench.Form.cmdGetDir[0].Press();
    EXPECT_EQ(states, "off off ");
    EXPECT_TRUE(Bench.Form.Enabled());
}

/// Types into a field and leaves it. True if that was refused.
bool Typed(TextBox& field, const std::string& text) {
    field.Text(text);
    return field.RunValidate();
}

TEST_F(FolderSelectionTest, ATypedFolderIsTakenLikeAChosenOne) {
    EXPECT_FALSE(Typed(Bench.Form.txtPath[1], " /new/ "));
    EXPECT_EQ(Bench.StoredOption("MusicPath"), "/new");
    EXPECT_EQ(Bench.Folders.Paths[1], "/new");
    EXPECT_EQ(Bench.Form.txtPath[1].Text(), "/new");
    EXPECT_EQ(Boxes(), "");
}

TEST_F(FolderSelectionTest, ATypedFolderThatDoesNotExistIsRefusedWithAMessage) {
    EXPECT_TRUE(Typed(Bench.Form.txtPath[1], "/nowhere"));
    EXPECT_TRUE(Typed(Bench.Form.txtPath[1], "new"));  // which folder that is depends on the start
    EXPECT_EQ(Boxes(), "text 811\ntext 811\n");
    EXPECT_EQ(Bench.Folders.Paths[1], "/music");
    EXPECT_EQ(Bench.StoredOption("MusicPath"), "(none)");
    EXPECT_TRUE(Typed(Bench.Form.txtPath[1], "/temp"));
    EXPECT_EQ(Boxes(), "text 811\ntext 811\ntext 812\n");
    EXPECT_EQ(Bench.Folders.Paths[1], "/music");
}

TEST_F(FolderSelectionTest, AFieldThatIsLeftAsItWasOrEmptyShowsThePresentFolder) {
    EXPECT_FALSE(Typed(Bench.Form.txtPath[1], "/music"));
    EXPECT_FALSE(Typed(Bench.Form.txtPath[1], ""));
    EXPECT_EQ(Bench.Form.txtPath[1].Text(), "/music");
    EXPECT_EQ(Boxes(), "");
}

}  // namespace
}  // namespace Corvetape
