#include "post/options/log_viewer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/text/date_format.h"
#include "post/post_bench.h"

namespace Corvetape {
namespace {

using testing::SizeIs;

class LogViewerTest : public testing::Test {
 protected:
    LogViewerTest() {
        Bench.Sim.Files.Put(Bench.Sim.Folders.ProgramFolder() + "/log.lang",
                            "7010=\"Log file \"\n7900=Logs%1*.log%1\n7910=open\n7920=delete\n");
        Bench.Messages.Load("log");
    }

    std::string Today() { return FormatDate("yyyymmdd", Bench.Sim.Clock.LocalNow()); }
    std::string TodaysLog() { return "/log/" + Today() + ".log"; }
    std::string TodaysCaption() {
        return "Log file - " + FormatDate("yyyy-mm-dd", Bench.Sim.Clock.LocalNow());
    }

    void Open(const std::string& path) {
        Bench.Sim.Dialogs.FileAnswers.push_back(path);
        Bench.Form.cmdOpenLogFile.Press();
    }

    Testing::PostBench Bench;
    LogViewer Viewer{{Bench.Form, Bench.Folders, Bench.Sim.Files, Bench.Sim.Clock, Bench.Sim.Loop,
                      Bench.Sim.Dialogs, Bench.Messages}};
};

TEST_F(LogViewerTest, AsksForALogBeginningWithTodays) {
    Bench.Form.cmdOpenLogFile.Press();
    ASSERT_THAT(Bench.Sim.Dialogs.Boxes, SizeIs(1));
    const ShownBox& box = Bench.Sim.Dialogs.Boxes[0];
    EXPECT_EQ(box.Text, "open");
    EXPECT_EQ(box.Filter, std::string("Logs\0*.log\0", 11));
    EXPECT_EQ(box.Start, TodaysLog());
}

TEST_F(LogViewerTest, ShowsAllLinesAsTheyAre) {
    Bench.Sim.Files.Put("/log/20091231.log", "10:00:00\tSTART\r\none\n\nlast");
    Open("/log/20091231.log");
    EXPECT_EQ(Bench.Form.txtLogFile.Text(), "10:00:00\tSTART\r\none\r\n\r\nlast\r\n");
    EXPECT_EQ(Bench.Form.fraLogFile.Caption(), "Log file - 2009-12-31");
    EXPECT_TRUE(Bench.Form.cmdOpenLogFile.Enabled());
}

TEST_F(LogViewerTest, AFileWithoutADateIsNamedInTheCaption) {
    Bench.Sim.Files.Put("/log/notes.log", "x\r\n");
    Open("/log/notes.log");
    EXPECT_EQ(Bench.Form.fraLogFile.Caption(), "Log file - notes.log ");
    Bench.Sim.Files.Put("/log/12.log", "x\r\n");
    Open("/log/12.log");
    EXPECT_EQ(Bench.Form.fraLogFile.Caption(), "Log file -   12-.l-og");
}

TEST_F(LogViewerTest, ACancelledChoiceChangesNothing) {
    Bench.Sim.Files.Put("/log/20091231.log", "x\r\n");
    Open("/log/20091231.log");
    Bench.Form.cmdOpenLogFile.Press();
    EXPECT_EQ(Bench.Form.fraLogFile.Caption(), "Log file - 2009-12-31");
    EXPECT_EQ(Bench.Form.txtLogFile.Text(), "x\r\n");
}

TEST_F(LogViewerTest, ALogThatCannotBeReadLeavesTheTextEmpty) {
    Bench.Sim.Files.Put("/log/20091231.log", "x\r\n");
    Open("/log/20091231.log");
    Open("/log/gone.log");
    EXPECT_EQ(Bench.Form.txtLogFile.Text(), "");
    EXPECT_TRUE(Bench.Form.cmdOpenLogFile.Enabled()) << "another one can be chosen";
}

TEST_F(LogViewerTest, ServesEventsBetweenTheLinesWhileNoOtherLogCanBeOpened) {
    Bench.Sim.Files.Put("/log/20091231.log", "one\r\ntwo\r\n");
    bool seen = false;
    Bench.Sim.Loop.Post([&] {
        seen = true;
        EXPECT_FALSE(Bench.Form.cmdOpenLogFile.Enabled());
        EXPECT_EQ(Bench.Form.txtLogFile.Text(), "");
        Viewer.ShowLogFile("/log/other.log");
    });
    Viewer.ShowLogFile("/log/20091231.log");
    EXPECT_TRUE(seen);
    EXPECT_EQ(Bench.Form.txtLogFile.Text(), "one\r\ntwo\r\n");
}

TEST_F(LogViewerTest, DeletesWhatIsChosenAndLeavesTheTextAlone) {
    for (const char* name : {"/log/a.log", "/log/b.log", "/log/c.log"}) Bench.Sim.Files.Put(name, "x\r\n");
    Open("/log/a.log");
    Bench.Sim.Dialogs.FilesAnswers.push_back({"/log/a.log", "/log/gone.log", "/log/c.log"});
    Bench.Form.cmdDeleteLogFiles.Press();
    EXPECT_EQ(Bench.Sim.Dialogs.Boxes.back().Text, "delete");
    EXPECT_EQ(Bench.Sim.Dialogs.Boxes.back().Start, "/log/");
    EXPECT_FALSE(Bench.Sim.Files.Exists("/log/a.log"));
    EXPECT_TRUE(Bench.Sim.Files.Exists("/log/b.log"));
    EXPECT_FALSE(Bench.Sim.Files.Exists("/log/c.log"));
    EXPECT_EQ(Bench.Form.txtLogFile.Text(), "x\r\n");
    Bench.Form.cmdDeleteLogFiles.Press();  // and nothing if the choice is cancelled
    EXPECT_TRUE(Bench.Sim.Files.Exists("/log/b.log"));
}

TEST_F(LogViewerTest, TheTabShowsTodaysLogUnlessAnotherIsOnShow) {
    Bench.Sim.Files.Put(TodaysLog(), "first\r\n");
    Bench.Form.tbsMain.Select("TAB_LOGFILE");
    EXPECT_EQ(Bench.Form.txtLogFile.Text(), "first\r\n");
    EXPECT_EQ(Bench.Form.fraLogFile.Caption(), TodaysCaption());

    Bench.Sim.Files.Put(TodaysLog(), "first\r\nsecond\r\n");
    Bench.Form.tbsMain.Select("TAB_RECORDING");
    EXPECT_EQ(Bench.Form.txtLogFile.Text(), "first\r\n");
    Bench.Form.tbsMain.Select("TAB_LOGFILE");
    EXPECT_EQ(Bench.Form.txtLogFile.Text(), "first\r\nsecond\r\n");

    Bench.Sim.Files.Put("/log/20091231.log", "old\r\n");
    Open("/log/20091231.log");
    Bench.Form.tbsMain.Select("TAB_RECORDING");
    Bench.Form.tbsMain.Select("TAB_LOGFILE");
    EXPECT_EQ(Bench.Form.txtLogFile.Text(), "old\r\n") << "what the user has opened stays";
}

}  // namespace
}  // namespace Corvetape
