#include "core/log.h"

#include <gtest/gtest.h>

#include "core/deferred_messages.h"
#include "core/fakes.h"
#include "core/text/shell_error.h"

namespace Corvetape {
namespace {

class LogTest : public testing::Test {
 protected:
    LogTest() { Folders.Paths[2] = "/home/eva/logs"; }
    const std::string& Today() { return Disk.Contents["/home/eva/logs/20091231.log"]; }

    MemoryFiles Disk;
    StandingClock Time{{2009, 12, 31, 14, 5, 9, 0}};
    Settings Options;
    WorkingFolders Folders;
    Log Journal{Disk, Time, Options, Folders};
};

TEST_F(LogTest, ALineIsTimeKindAndFieldsWithTabsAndCrLf) {
    Journal.WriteLog({"START"});
    Journal.WriteLog({"START", "/bin/player", "-x"});
    Journal.WriteLog({"END "});
    EXPECT_EQ(Today(), "14:05:09\tSTART\r\n14:05:09\tSTART\t/bin/player\t-x\r\n14:05:09\tEND \r\n");
}

TEST_F(LogTest, TheFieldsMayComeAsAnArray) {
    const std::vector<std::string> fields = {"MP3 ", "Anna - Blue"};
    Journal.WriteLog(fields);
    EXPECT_EQ(Today(), "14:05:09\tMP3 \tAnna - Blue\r\n");
}

TEST_F(LogTest, WithoutAnArrayOnlyTheTimeIsWritten) {
    Journal.WriteLog();
    EXPECT_EQ(Today(), "14:05:09\r\n");
}

TEST_F(LogTest, AnArrayWithoutFieldsStillGivesItsTab) {
    Journal.WriteLog(std::span<const std::string>());
    EXPECT_EQ(Today(), "14:05:09\t\r\n");
}

TEST_F(LogTest, AMessageOfTwoLinesWithAnEmptyOneBetweenBecomesTwoFields) {
    Journal.WriteLog({"INFO", "one\r\n\r\ntwo"});
    EXPECT_EQ(Today(), "14:05:09\tINFO\tone\ttwo\r\n");
}

TEST_F(LogTest, ThreeLineFeedsBecomeTwoTabs) {
    Journal.WriteLog({"INFO", "a\n\n\nb\nc\rd"});
    EXPECT_EQ(Today(), "14:05:09\tINFO\ta\t\tb\tcd\r\n");
}

TEST_F(LogTest, WithLogToFileOffNoFileIsCreated) {
    Options.LogToFile = false;
    Journal.WriteLog({"START"});
    EXPECT_TRUE(Disk.Contents.empty());
}

TEST_F(LogTest, TwoLinesOfOneSecondKeepTheirOrder) {
    Journal.WriteLog({"INFO", "1"});
    Journal.WriteLog({"INFO", "2"});
    EXPECT_EQ(Today(), "14:05:09\tINFO\t1\r\n14:05:09\tINFO\t2\r\n");
}

TEST_F(LogTest, PastMidnightTheLineGoesIntoTheNewFile) {
    Time.Now = {2009, 12, 31, 23, 59, 59, 999};
    Journal.WriteLog({"INFO", "old"});
    Time.Now = {2010, 1, 1, 0, 0, 0, 0};
    Journal.WriteLog({"INFO", "new"});
    EXPECT_EQ(Today(), "23:59:59\tINFO\told\r\n");
    EXPECT_EQ(Disk.Contents["/home/eva/logs/20100101.log"], "00:00:00\tINFO\tnew\r\n");
}

TEST_F(LogTest, ADeletedFileIsCreatedAnewByTheNextLine) {
    Journal.WriteLog({"INFO", "1"});
    Disk.Contents.clear();
    Journal.WriteLog({"INFO", "2"});
    EXPECT_EQ(Today(), "14:05:09\tINFO\t2\r\n");
}

TEST_F(LogTest, AFailureIsSwallowedAndTheNextLineIsWritten) {
    Disk.WritesFail = true;
    Journal.WriteLog({"INFO", "lost"});
    Disk.WritesFail = false;
    Journal.WriteLog({"INFO", "kept"});
    EXPECT_EQ(Today(), "14:05:09\tINFO\tkept\r\n");
}

TEST_F(LogTest, AListenerHearsKindAndTextAlsoWithoutAFile) {
    std::vector<std::string> heard;
    Journal.Listener = [&](const std::string& kind, const std::string& text) {
        heard.push_back(kind + "=" + text);
    };
    Options.LogToFile = false;
    Journal.WriteLog({"ERROR", "a\nb", "c"});
    Journal.WriteLog({"END "});
    Journal.WriteLog();
    EXPECT_EQ(heard, (std::vector<std::string>{"ERROR=a\nb\tc", "END ="}));
}

TEST_F(LogTest, TheFolderOfTheMomentCounts) {
    Folders.Paths[2] = "/other";
    Journal.WriteLog({"START"});
    EXPECT_TRUE(Disk.Contents.contains("/other/20091231.log"));
    EXPECT_EQ(Journal.FileName(), "/other/20091231.log");
}

TEST(DeferredMessages, TheFirstErrorWins) {
    DeferredMessages messages;
    EXPECT_EQ(messages.PendingError, 0);
    messages.RaiseError(903, "/tmp/a.wav", 5);
    messages.RaiseError(905, "/tmp/b.wav", 28);
    EXPECT_EQ(messages.PendingError, 903);
    EXPECT_EQ(messages.PendingErrorText, "/tmp/a.wav");
    EXPECT_EQ(messages.PendingErrorCode, 5);
}

TEST(DeferredMessages, TheLastInformationWins) {
    DeferredMessages messages;
    EXPECT_EQ(messages.PendingInfo, 0);
    messages.RaiseInfo(833);
    messages.RaiseInfo(835);
    EXPECT_EQ(messages.PendingInfo, 835);
    EXPECT_EQ(messages.PendingError, 0);
}

TEST(ShellErrorText, EveryCodeHasItsText) {
    EXPECT_EQ(ShellErrorText(0), "0 (Out of memory or not enough resources)");
    EXPECT_EQ(ShellErrorText(2), "2 (File not found)");
    EXPECT_EQ(ShellErrorText(3), "3 (Path not found)");
    EXPECT_EQ(ShellErrorText(5), "5 (Access to this file denied)");
    EXPECT_EQ(ShellErrorText(8), "8 (Not enough memory)");
    EXPECT_EQ(ShellErrorText(11), "11 (Invalid .exe file)");
    EXPECT_EQ(ShellErrorText(26), "26 (Sharing violation occured)");
    EXPECT_EQ(ShellErrorText(27), "27 (File name association incomplete or invalid)");
    EXPECT_EQ(ShellErrorText(28), "28 (DDE timeout)");
    EXPECT_EQ(ShellErrorText(29), "29 (DDE transaction failed)");
    EXPECT_EQ(ShellErrorText(30), "30 (Other DDE transaction busy)");
    EXPECT_EQ(ShellErrorText(31), "31 (No application associated with this file extension)");
    EXPECT_EQ(ShellErrorText(32), "32 (DDL not found)");
}

TEST(ShellErrorText, AnUnknownCodeHasAnEmptyText) {
    EXPECT_EQ(ShellErrorText(42), "42 ()");
    EXPECT_EQ(ShellErrorText(1), "1 ()");
    EXPECT_EQ(ShellErrorText(-1), "-1 ()");
}

}  // namespace
}  // namespace Corvetape
