#include "sim/sim_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

namespace Corvetape {
namespace {

using testing::ElementsAre;

class SimFilesTest : public testing::Test {
 protected:
    static std::span<const std::byte> Bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

    void WriteFile(const std::string& path, std::string_view content) {
        const auto file = Files.Create(path);
        ASSERT_NE(file, nullptr) << path;
        EXPECT_TRUE(file->Write(Bytes(content)));
        EXPECT_TRUE(file->Close());
    }

    SimFiles Files;
};

TEST_F(SimFilesTest, WhatWasWrittenIsRead) {
    WriteFile("/a.txt", "hello");
    EXPECT_EQ(Files.ReadAll("/a.txt", 5), "hello");
    EXPECT_EQ(Files.FileSize("/a.txt"), 5U);
    EXPECT_EQ(Files.ReadPart("/a.txt", 1, 3), "ell");
    EXPECT_EQ(Files.ReadPart("/a.txt", 4, 100), "o");
    EXPECT_EQ(Files.ReadPart("/a.txt", 5, 1), "");
}

TEST_F(SimFilesTest, AFileIsCutBackAndItsRoomIsFreeAgain) {
    Files.Mount("/disk", 1'000'000);
    const auto file = Files.Create("/disk/a");
    ASSERT_NE(file, nullptr);
    const std::string content(400'000, 'x');
    EXPECT_TRUE(file->Write(Bytes(content)));
    EXPECT_TRUE(file->CutBack(500'000));
    EXPECT_EQ(Files.FreeSpace("/disk"), 600'000U);
    EXPECT_TRUE(file->CutBack(3));
    EXPECT_EQ(Files.FreeSpace("/disk"), 999'997U);
    EXPECT_EQ(file->Position(), 400'000U);
    EXPECT_TRUE(file->Seek(5));
    EXPECT_TRUE(file->Write(Bytes("y")));
    EXPECT_EQ(Files.Content("/disk/a"), std::string("xxx\0\0y", 6));
}

TEST_F(SimFilesTest, FoldersAreOnOneDriveByTheirVolume) {
    Files.Mount("/disk", 1000);
    Files.MakeFolders("/disk/a");
    Files.MakeFolders("/b");
    EXPECT_TRUE(Files.SameDrive("/disk", "/disk/a"));
    EXPECT_FALSE(Files.SameDrive("/disk/a", "/b"));
    EXPECT_FALSE(Files.SameDrive("/disk", "/disk/none"));
}

TEST_F(SimFilesTest, AFailureSaysWhatWasAttemptedWhereAndWhy) {
    Files.SetCapacity("/", 4);
    const auto file = Files.Create("/a");
    const FileResult good = file->Write(Bytes("1234"));
    EXPECT_TRUE(good);
    EXPECT_EQ(good.Code(), 0);
    EXPECT_EQ(good.Reason() + good.Text() + good.Path, "");
    const FileResult full = file->Write(Bytes("5"));
    EXPECT_FALSE(full);
    EXPECT_EQ(full.Path, "/a");
    EXPECT_EQ(full.Reason(), "28: No space left on device");
    EXPECT_EQ(full.Text(), "Write /a: No space left on device (28)");
    EXPECT_TRUE(full.Error == std::errc::no_space_on_device);
}

TEST_F(SimFilesTest, AReasonBelongsToItsOperationAndNotToTheLastOne) {
    const FileOr<std::string> missing = Files.ReadAll("/none", 10);
    EXPECT_EQ(Files.Create("/no/folder/a").Failure.Code(), ENOENT);
    EXPECT_FALSE(Files.MakeFolder("/"));
    EXPECT_EQ(missing.Failure.Path, "/none");
    EXPECT_EQ(missing.Failure.Code(), ENOENT);
}

TEST_F(SimFilesTest, ContentLongerThanTheLimitIsNotRead) {
    WriteFile("/a.txt", "hello");
    EXPECT_EQ(Files.ReadAll("/a.txt", 4).Failure.Code(), EFBIG);
}

TEST_F(SimFilesTest, WhatIsNotThereCannotBeUsed) {
    EXPECT_EQ(Files.ReadAll("/none", 10), std::nullopt);
    EXPECT_EQ(Files.ReadPart("/none", 0, 10), std::nullopt);
    EXPECT_EQ(Files.FileSize("/none"), std::nullopt);
    EXPECT_FALSE(Files.Patch("/none", 0, "x"));
    EXPECT_FALSE(Files.Rename("/none", "/b"));
    EXPECT_FALSE(Files.Copy("/none", "/b"));
    EXPECT_FALSE(Files.Delete("/none"));
    EXPECT_EQ(Files.DeleteFolder("/none").Code(), ENOENT);
    EXPECT_FALSE(Files.IsFolder("/none"));
    EXPECT_EQ(Files.FreeSpace("/none").Failure.Code(), ENOENT);
}

TEST_F(SimFilesTest, NothingIsMadeInAMissingFolder) {
    EXPECT_EQ(Files.Create("/no/a"), nullptr);
    EXPECT_FALSE(Files.Append("/no/a", "x"));
    EXPECT_FALSE(Files.ReplaceAtomically("/no/a", "x"));
    EXPECT_EQ(Files.MakeFolder("/no/a").Code(), ENOENT);
    WriteFile("/file", "");
    EXPECT_EQ(Files.Create("/file/a").Failure.Code(), ENOTDIR);
}

TEST_F(SimFilesTest, AFolderIsNoFile) {
    Files.MakeFolder("/d");
    EXPECT_EQ(Files.Create("/d"), nullptr);
    EXPECT_EQ(Files.ReadAll("/d", 10), std::nullopt);
    EXPECT_FALSE(Files.Delete("/d"));
    EXPECT_FALSE(Files.Append("/d", "x"));
    EXPECT_EQ(Files.ReplaceAtomically("/d", "x").Code(), EISDIR);
    EXPECT_TRUE(Files.IsFolder("/d"));
    EXPECT_TRUE(Files.IsFolder("/"));
    EXPECT_EQ(Files.FileSize("/d"), std::nullopt);
}

TEST_F(SimFilesTest, FoldersAreMadeOneLevelAtATimeAndOnce) {
    EXPECT_TRUE(Files.MakeFolder("/a"));
    EXPECT_EQ(Files.MakeFolder("/a").Code(), EEXIST);
    EXPECT_TRUE(Files.MakeFolder("/a/b/"));
    EXPECT_EQ(Files.DeleteFolder("/a").Code(), ENOTEMPTY);
    EXPECT_TRUE(Files.DeleteFolder("/a/b"));
    EXPECT_TRUE(Files.DeleteFolder("/a"));
    EXPECT_THAT(Files.Tree(), ElementsAre());
}

TEST_F(SimFilesTest, ANeighbourWithALongerNameIsNotInTheFolder) {
    Files.MakeFolder("/a");
    WriteFile("/ab", "1");
    WriteFile("/a b", "1");
    EXPECT_TRUE(Files.DeleteFolder("/a"));
}

TEST_F(SimFilesTest, AListHoldsNamesInTheirOrderOneLevelDeep) {
    Files.Put("/m/b.wav", "123");
    Files.Put("/m/a/deep/x", "1");
    Files.Put("/m/A.wav", "1");
    Files.Put("/m2/c", "1");
    EXPECT_THAT(Files.List("/m"), ElementsAre(FileEntry{"A.wav", 1, false}, FileEntry{"a", 0, true},
                                              FileEntry{"b.wav", 3, false}));
    EXPECT_THAT(Files.List("/"), ElementsAre(FileEntry{"m", 0, true}, FileEntry{"m2", 0, true}));
    EXPECT_TRUE(Files.List("/m/A.wav").empty());
}

TEST_F(SimFilesTest, PathsAreCleanedByTheirText) {
    Files.Put("/m/a.wav", "123");
    for (const char* path :
         {"/m/a.wav", "m/a.wav", "//m//a.wav", "/m/./a.wav", "/x/../m/a.wav", "/../m/a.wav"}) {
        EXPECT_EQ(Files.FileSize(path), 3U) << path;
    }
    EXPECT_TRUE(Files.IsFolder("/m/"));
    EXPECT_EQ(SimDisk::Normal(""), "/");
    EXPECT_EQ(SimDisk::Normal("a/.."), "/");
}

TEST_F(SimFilesTest, CreatingAFileThatIsThereEmptiesIt) {
    WriteFile("/a", "long content");
    WriteFile("/a", "new");
    EXPECT_EQ(Files.Content("/a"), "new");
}

TEST_F(SimFilesTest, SeekMovesThePositionAndAWriteOverwrites) {
    const auto file = Files.Create("/a");
    EXPECT_TRUE(file->Write(Bytes("0123456789")));
    EXPECT_EQ(file->Position(), 10U);
    EXPECT_TRUE(file->Seek(4));
    EXPECT_TRUE(file->Write(Bytes("ab")));
    EXPECT_EQ(file->Position(), 6U);
    EXPECT_EQ(Files.Content("/a"), "0123ab6789");
    EXPECT_TRUE(file->Seek(12));
    EXPECT_TRUE(file->Write(Bytes("x")));
    EXPECT_EQ(Files.Content("/a"), std::string("0123ab6789\0\0x", 13));
}

TEST_F(SimFilesTest, LargeFilesGoOverManyPieces) {
    std::string content(ChunkPool::ChunkBytes * 3 + 17, ' ');
    for (size_t at = 0; at < content.size(); ++at) content[at] = static_cast<char>('a' + at * 7 % 26);
    WriteFile("/a", content);
    EXPECT_EQ(Files.Content("/a"), content);
    const size_t border = ChunkPool::ChunkBytes * 2 - 5;
    EXPECT_TRUE(Files.Patch("/a", border, "0123456789"));
    content.replace(border, 10, "0123456789");
    EXPECT_EQ(Files.ReadPart("/a", border - 3, 16), content.substr(border - 3, 16));
    std::string visited;
    Files.VisitContent("/a", [&](std::span<const std::byte> bytes) {
        visited.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    });
    EXPECT_EQ(visited, content);
    EXPECT_EQ(Files.HashOfFile("/a"), HashOf(std::string_view(content)));
}

TEST_F(SimFilesTest, AHoleIsZeroAlsoInUsedMemory) {
    WriteFile("/a", std::string(300'000, 'x'));
    Files.Delete("/a");
    const auto file = Files.Create("/b");
    file->Seek(250'000);
    file->Write(Bytes("end"));
    EXPECT_EQ(Files.Content("/b"), std::string(250'000, '\0') + "end");
}

TEST_F(SimFilesTest, APatchStaysInsideTheFile) {
    WriteFile("/a", "0123456789");
    EXPECT_TRUE(Files.Patch("/a", 8, "xy"));
    EXPECT_FALSE(Files.Patch("/a", 9, "xy"));
    EXPECT_EQ(Files.Patch("/a", 11, "").Code(), EINVAL);
    EXPECT_EQ(Files.Content("/a"), "01234567xy");
}

TEST_F(SimFilesTest, AppendMakesOrLengthensAFile) {
    EXPECT_TRUE(Files.Append("/log", "one\r\n"));
    EXPECT_TRUE(Files.Append("/log", "two\r\n"));
    EXPECT_EQ(Files.Content("/log"), "one\r\ntwo\r\n");
}

TEST_F(SimFilesTest, RenameReplacesAFile) {
    WriteFile("/a", "new");
    WriteFile("/b", "old");
    EXPECT_TRUE(Files.Rename("/a", "/b"));
    EXPECT_EQ(Files.Content("/b"), "new");
    EXPECT_FALSE(Files.Exists("/a"));
    EXPECT_TRUE(Files.Rename("/b", "/b"));
    EXPECT_EQ(Files.Content("/b"), "new");
}

TEST_F(SimFilesTest, AFolderIsRenamedWithAllItHolds) {
    Files.Put("/a/x/1", "one");
    Files.Put("/a/2", "two");
    Files.Put("/ab", "other");
    EXPECT_TRUE(Files.Rename("/a", "/b"));
    EXPECT_THAT(Files.Tree(), ElementsAre("/ab", "/b/", "/b/2", "/b/x/", "/b/x/1"));
    EXPECT_EQ(Files.Content("/b/x/1"), "one");
    EXPECT_EQ(Files.Rename("/b", "/b/x/c").Code(), EINVAL);
}

TEST_F(SimFilesTest, ACopyIsAFileOfItsOwn) {
    WriteFile("/a", "same");
    EXPECT_TRUE(Files.Copy("/a", "/b"));
    Files.Patch("/b", 0, "c");
    EXPECT_EQ(Files.Content("/a"), "same");
    EXPECT_EQ(Files.Content("/b"), "came");
}

TEST_F(SimFilesTest, AFileThatIsRenamedWhileItIsWrittenGoesOnUnderItsNewName) {
    const auto file = Files.Create("/a");
    file->Write(Bytes("one "));
    Files.Rename("/a", "/b");
    file->Write(Bytes("two"));
    EXPECT_EQ(Files.Content("/b"), "one two");
}

TEST_F(SimFilesTest, ADeletedFileKeepsItsRoomUntilItIsClosed) {
    Files.SetCapacity("/", 1000);
    const auto file = Files.Create("/a");
    file->Write(Bytes(std::string(600, 'x')));
    EXPECT_TRUE(Files.Delete("/a"));
    EXPECT_EQ(Files.FreeSpace("/"), 400U);
    EXPECT_TRUE(file->Close());
    EXPECT_EQ(Files.FreeSpace("/"), 1000U);
}

TEST_F(SimFilesTest, AFullDiskKeepsWhatFitted) {
    Files.SetCapacity("/", 10);
    const auto file = Files.Create("/a");
    EXPECT_TRUE(file->Write(Bytes("123456")));
    EXPECT_EQ(file->Write(Bytes("abcdef")).Code(), ENOSPC);
    EXPECT_EQ(file->Position(), 10U);
    EXPECT_EQ(Files.Content("/a"), "123456abcd");
    EXPECT_EQ(Files.FreeSpace("/"), 0U);
    EXPECT_TRUE(file->Seek(0));
    EXPECT_FALSE(file->Write(Bytes("overwriting")));
    EXPECT_EQ(Files.Content("/a"), "overwritin");
    EXPECT_TRUE(file->Seek(2));
    EXPECT_TRUE(file->Write(Bytes("ok")));  // room that the file has already can be used
}

TEST_F(SimFilesTest, OnAFullDiskReplacingNeedsRoomForBoth) {
    Files.Put("/a", "123456");
    Files.SetFreeSpace("/", 5);
    EXPECT_EQ(Files.ReplaceAtomically("/a", "abcdef").Code(), ENOSPC);
    EXPECT_EQ(Files.Content("/a"), "123456");
    EXPECT_EQ(Files.FreeSpace("/"), 5U);
    EXPECT_TRUE(Files.ReplaceAtomically("/a", "abcde"));
    EXPECT_EQ(Files.Content("/a"), "abcde");
    EXPECT_EQ(Files.FreeSpace("/"), 6U);
    EXPECT_FALSE(Files.Append("/a", "0123456789"));
    EXPECT_EQ(Files.Content("/a"), "abcde012345");
    EXPECT_FALSE(Files.Copy("/a", "/b"));
    EXPECT_FALSE(Files.Exists("/b"));
}

TEST_F(SimFilesTest, VolumesHaveRoomOfTheirOwn) {
    Files.SetCapacity("/", 100);
    Files.Mount("/music", 20);
    Files.Mount("/music/deep", 50);
    WriteFile("/music/a", "0123456789");
    WriteFile("/music/deep/a", "01234");
    WriteFile("/musical", "0");
    EXPECT_EQ(Files.FreeSpace("/"), 99U);
    EXPECT_EQ(Files.FreeSpace("/music"), 10U);
    EXPECT_EQ(Files.FreeSpace("/music/deep"), 45U);
    EXPECT_EQ(Files.Rename("/music/a", "/a").Code(), EXDEV);
    EXPECT_TRUE(Files.Copy("/music/a", "/a"));
    EXPECT_FALSE(Files.DeleteFolder("/music/deep"));
}

TEST_F(SimFilesTest, AVolumeThatIsTakenOutFailsEverythingAndHoldsItsFiles) {
    Files.Mount("/stick", 1000);
    WriteFile("/stick/a", "content");
    const auto file = Files.Create("/stick/b");
    Files.TakeOut("/stick");
    EXPECT_FALSE(file->Write(Bytes("x")));
    EXPECT_EQ(Files.ReadAll("/stick/a", 100), std::nullopt);
    EXPECT_EQ(Files.FreeSpace("/stick"), std::nullopt);
    EXPECT_FALSE(Files.IsFolder("/stick"));
    EXPECT_EQ(Files.Create("/stick/c").Failure.Code(), EIO);
    EXPECT_TRUE(Files.MakeFolder("/other"));
    Files.PutBack("/stick");
    EXPECT_EQ(Files.ReadAll("/stick/a", 100), "content");
    EXPECT_TRUE(file->Write(Bytes("x")));
}

TEST_F(SimFilesTest, OpenHandlesAreCounted) {
    auto first = Files.Create("/a");
    {
        const auto second = Files.Create("/b");
        EXPECT_THAT(Files.OpenPaths(), ElementsAre("/a", "/b"));
    }
    EXPECT_EQ(Files.OpenHandles(), 1U);
    first->Close();
    EXPECT_EQ(Files.OpenHandles(), 0U);
    EXPECT_FALSE(first->Write(Bytes("x")));
    EXPECT_FALSE(first->Seek(0));
    EXPECT_FALSE(first->Close());
}

TEST_F(SimFilesTest, AHandleMayOutliveItsDisk) {
    auto disk = std::make_unique<SimFiles>();
    const auto file = disk->Create("/a");
    disk.reset();
    EXPECT_FALSE(file->Write(Bytes("x")));
}

TEST_F(SimFilesTest, ASnapshotIsWhatACrashWouldLeave) {
    Files.Put("/music/a", "kept");
    Files.MakeFolder("/empty");
    const auto file = Files.Create("/song.wav");
    file->Write(Bytes("first half"));
    const SimDiskImage image = Files.Snapshot();
    file->Write(Bytes(", second half"));
    Files.Delete("/music/a");

    SimFiles after;
    after.Put("/gone", "1");
    after.Restore(image);
    EXPECT_THAT(after.Tree(), ElementsAre("/empty/", "/music/", "/music/a", "/song.wav"));
    EXPECT_EQ(after.Content("/song.wav"), "first half");
    EXPECT_EQ(after.Snapshot(), image);
    EXPECT_NE(Files.Snapshot(), image);
}

TEST_F(SimFilesTest, RestoringGivesRoomBackAndOldHandlesWriteToNowhere) {
    Files.SetCapacity("/", 100);
    const SimDiskImage empty = Files.Snapshot();
    const auto file = Files.Create("/a");
    file->Write(Bytes("0123456789"));
    Files.Restore(empty);
    file->Write(Bytes("0123456789"));
    EXPECT_THAT(Files.Tree(), ElementsAre());
    file->Close();
    EXPECT_EQ(Files.FreeSpace("/"), 100U);
}

TEST_F(SimFilesTest, TheHistoryTellsRunsApartThatLeftTheSame) {
    const auto run = [](std::string_view first, std::string_view second) {
        SimFiles files;
        const auto file = files.Create("/a");
        file->Write(Bytes(first));
        file->Write(Bytes(second));
        file->Close();
        files.Rename("/a", "/b");
        return files.HistoryHash();
    };
    EXPECT_EQ(run("ab", "c"), run("ab", "c"));
    EXPECT_NE(run("ab", "c"), run("ab", "d"));
    SimFiles looked;
    const uint64_t before = looked.HistoryHash();
    looked.FileSize("/a");
    looked.Delete("/a");
    EXPECT_EQ(looked.HistoryHash(), before);
}

TEST_F(SimFilesTest, DeletedContentIsUsedAgainBySongAfterSong) {
    const auto pool = std::make_shared<ChunkPool>();
    const auto volume = std::make_shared<SimVolume>();
    const std::vector<std::byte> bytes(ChunkPool::ChunkBytes * 4);
    for (int song = 0; song < 10; ++song) {
        SimFileData data(pool, volume);
        EXPECT_EQ(data.Write(0, bytes), bytes.size());
        EXPECT_EQ(pool->FreeChunks(), 0U);
    }
    EXPECT_EQ(pool->FreeChunks(), 4U);
    EXPECT_EQ(volume->Used, 0U);
}

}  // namespace
}  // namespace Corvetape
