#include "platform/linux/files/linux_files.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>

#include "support/temp_folder.h"

namespace Corvetape {
namespace {

using testing::ElementsAre;

class LinuxFilesTest : public testing::Test {
 protected:
    static std::span<const std::byte> Bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

    void Put(const std::string& name, const std::string& content) const {
        std::ofstream(folder / name, std::ios::binary) << content;
    }
    std::string Get(const std::string& name) const {
        std::ifstream file(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    size_t Count() const {
        const std::filesystem::directory_iterator begin(folder.Path());
        return static_cast<size_t>(std::distance(begin, {}));
    }

    TempFolder folder;
    LinuxFiles files;
};

TEST_F(LinuxFilesTest, AFileIsCutBackAndWrittenOnAtItsPosition) {
    const auto file = files.Create(folder / "a");
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(file->Write(Bytes("one two three")));
    EXPECT_TRUE(file->CutBack(20));
    EXPECT_EQ(Get("a"), "one two three") << "never made longer";
    EXPECT_TRUE(file->CutBack(7));
    EXPECT_EQ(Get("a"), "one two");
    EXPECT_TRUE(file->Seek(4));
    EXPECT_TRUE(file->Write(Bytes("four")));
    EXPECT_TRUE(file->Close());
    EXPECT_EQ(Get("a"), "one four");
    EXPECT_EQ(file->CutBack(0).Code(), EBADF);
}

TEST_F(LinuxFilesTest, FoldersAreOnOneDriveByTheirFileSystem) {
    EXPECT_TRUE(files.SameDrive(folder.Path(), folder / "."));
    EXPECT_FALSE(files.SameDrive(folder.Path(), "/proc"));
    EXPECT_FALSE(files.SameDrive(folder.Path(), folder / "none"));
}

TEST_F(LinuxFilesTest, CreateEmptiesAndWritesAtThePosition) {
    Put("a", "old and long content");
    const auto file = files.Create(folder / "a");
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(file->Write(Bytes("hello world")));
    EXPECT_EQ(file->Position(), 11u);
    EXPECT_TRUE(file->Seek(6));
    EXPECT_TRUE(file->Write(Bytes("W")));
    EXPECT_EQ(file->Position(), 7u);
    EXPECT_TRUE(file->Close());
    EXPECT_EQ(Get("a"), "hello World");
    EXPECT_EQ(file->Write(Bytes("x")).Code(), EBADF);
}

TEST_F(LinuxFilesTest, AFailureGivesItsReason) {
    EXPECT_EQ(files.Create(folder / "none/a").Failure.Code(), ENOENT);
    EXPECT_EQ(files.Create(folder.Path()).Failure.Code(), EISDIR);
    const FileResult gone = files.Delete(folder / "none");
    EXPECT_EQ(gone.Code(), ENOENT);
    EXPECT_EQ(gone.Text(), "delete " + (folder / "none") + ": No such file or directory (2)");
}

TEST_F(LinuxFilesTest, AFullDiskIsReportedByTheWriteAndKeepsWhatWasWritten) {
    // The limit of this process stands in for the disk.
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, SIG_IGN);
    const auto file = files.Create(folder / "a");
    const rlimit small{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_TRUE(file->Write(Bytes(std::string(900, 'x'))));
    EXPECT_EQ(file->Write(Bytes(std::string(900, 'y'))).Code(), EFBIG);
    EXPECT_EQ(file->Position(), 1000u);
    EXPECT_EQ(files.ReplaceAtomically(folder / "b", std::string(2000, 'z')).Code(), EFBIG);
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, SIG_DFL);
    EXPECT_TRUE(file->Close());
    EXPECT_EQ(Get("a"), std::string(900, 'x') + std::string(100, 'y'));
    EXPECT_EQ(Count(), 1u) << "nothing of the failed replacement stays";
}

TEST_F(LinuxFilesTest, OpenFilesAreNotHandedToStartedProcesses) {
    const auto file = files.Create(folder / "a");
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        if (std::filesystem::read_symlink(entry, gone) != folder / "a") continue;
        EXPECT_NE(fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC, 0);
        return;
    }
    FAIL() << "the file is not open";
}

TEST_F(LinuxFilesTest, ReadAllKeepsItsLimit) {
    Put("a", "12345");
    EXPECT_EQ(files.ReadAll(folder / "a", 5), "12345");
    EXPECT_EQ(files.ReadAll(folder / "a", UINT64_MAX), "12345");
    EXPECT_EQ(files.ReadAll(folder / "a", 4).Failure.Code(), EFBIG);
    EXPECT_EQ(files.ReadAll(folder / "none", 5), std::nullopt);
    EXPECT_EQ(files.ReadAll(folder.Path(), 5).Failure.Code(), EISDIR);
}

TEST_F(LinuxFilesTest, ReadingAPipeDoesNotWait) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(files.ReadAll(folder / "pipe", 10), std::nullopt);
    EXPECT_FALSE(files.Append(folder / "pipe", "x"));
}

TEST_F(LinuxFilesTest, ReadPartGivesWhatIsThere) {
    Put("a", "0123456789");
    EXPECT_EQ(files.ReadPart(folder / "a", 3, 4), "3456");
    EXPECT_EQ(files.ReadPart(folder / "a", 8, 4), "89");
    EXPECT_EQ(files.ReadPart(folder / "a", 10, 4), "");
    EXPECT_EQ(files.ReadPart(folder / "a", UINT64_MAX, 4), "");
    EXPECT_EQ(files.ReadPart(folder / "none", 0, 4), std::nullopt);
}

TEST_F(LinuxFilesTest, PatchOverwritesInsideOnly) {
    Put("a", "0123456789");
    EXPECT_TRUE(files.Patch(folder / "a", 3, "abc"));
    EXPECT_EQ(Get("a"), "012abc6789");
    EXPECT_TRUE(files.Patch(folder / "a", 8, "xy"));
    EXPECT_FALSE(files.Patch(folder / "a", 9, "xy"));
    EXPECT_FALSE(files.Patch(folder / "a", UINT64_MAX, "x"));
    EXPECT_FALSE(files.Patch(folder / "none", 0, "x"));
    EXPECT_EQ(Get("a"), "012abc67xy");
}

TEST_F(LinuxFilesTest, ReplaceAtomicallyKeepsPermissionsAndLeavesNothingElse) {
    EXPECT_TRUE(files.ReplaceAtomically(folder / "a", "one"));
    EXPECT_EQ(Get("a"), "one");
    chmod((folder / "a").c_str(), 0640);
    EXPECT_TRUE(files.ReplaceAtomically(folder / "a", "two"));
    EXPECT_EQ(Get("a"), "two");
    struct stat status {};
    stat((folder / "a").c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
    EXPECT_EQ(Count(), 1u);
    EXPECT_EQ(files.ReplaceAtomically(folder / "none/a", "x").Code(), ENOENT);
    EXPECT_FALSE(files.ReplaceAtomically(folder.Path(), "x"));
}

TEST_F(LinuxFilesTest, ReplaceAtomicallyFollowsLinksToTheFileAndKeepsThem) {
    std::filesystem::create_directory(folder / "real");
    Put("real/settings", "one");
    std::filesystem::create_symlink("real/settings", folder / "settings");
    std::filesystem::create_symlink("settings", folder / "twice");
    EXPECT_TRUE(files.ReplaceAtomically(folder / "twice", "two"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "settings"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "twice"));
    EXPECT_EQ(Get("real/settings"), "two");

    std::filesystem::create_symlink("real/missing", folder / "dangling");
    EXPECT_TRUE(files.ReplaceAtomically(folder / "dangling", "new"));
    EXPECT_EQ(Get("real/missing"), "new");

    std::filesystem::create_symlink("circle", folder / "circle");
    EXPECT_EQ(files.ReplaceAtomically(folder / "circle", "x").Code(), ELOOP);
}

TEST_F(LinuxFilesTest, CreateNewMakesAFileOnlyWhereNothingIsAndFollowsNoLink) {
    Put("diary", "dear diary");
    std::filesystem::create_symlink("diary", folder / "link");
    std::filesystem::create_symlink("missing", folder / "dangling");
    std::filesystem::create_hard_link(folder / "diary", folder / "second");
    std::filesystem::create_directory(folder / "folder");
    for (const char* taken : {"diary", "link", "dangling", "second", "folder"}) {
        EXPECT_EQ(files.CreateNew(folder / taken).Failure.Code(), EEXIST) << taken;
    }
    EXPECT_EQ(Get("diary"), "dear diary");
    EXPECT_FALSE(std::filesystem::exists(folder / "missing"));
    EXPECT_NE(files.CreateNew(folder / "new"), nullptr);
    EXPECT_EQ(files.FileSize(folder / "new"), 0u);
}

TEST_F(LinuxFilesTest, PatchChangesNothingThroughALink) {
    Put("diary", "dear diary");
    std::filesystem::create_symlink("diary", folder / "link");
    EXPECT_EQ(files.Patch(folder / "link", 0, "hear").Code(), ELOOP);
    EXPECT_EQ(Get("diary"), "dear diary");
}

TEST_F(LinuxFilesTest, ALockIsHeldByOneAtATimeAndMadeThroughNoLink) {
    LinuxFiles other;
    auto held = files.Lock(folder / "lock");
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(other.Lock(folder / "lock"), nullptr);
    EXPECT_NE(other.Lock(folder / "another"), nullptr);
    held.reset();
    EXPECT_NE(other.Lock(folder / "lock"), nullptr);
    std::filesystem::create_symlink("planted", folder / "link");
    EXPECT_EQ(other.Lock(folder / "link"), nullptr);
    EXPECT_FALSE(std::filesystem::exists(folder / "planted"));
}

TEST_F(LinuxFilesTest, AKilledReplacementLeavesTheOldOrTheNewContent) {
    const std::array contents = {std::string(70'000, 'a'), std::string(30'000, 'b')};
    ASSERT_TRUE(files.ReplaceAtomically(folder / "settings", contents[0]));
    std::mt19937 random(4711);
    // How long a replacement takes differs with the disk; the kills shall hit every part of one.
    const auto began = std::chrono::steady_clock::now();
    for (size_t i = 0; i < 20; ++i) files.ReplaceAtomically(folder / "settings", contents[i % 2]);
    const auto each = (std::chrono::steady_clock::now() - began) / 20 / std::chrono::microseconds(1);
    int seen[2] = {0, 0};
    // Later, if the machine has become busier since.
    for (int round = 0; round < 150 || (round < 1500 && std::min(seen[0], seen[1]) <= 10); ++round) {
        const auto latest = static_cast<useconds_t>(3 * each * (1 + round / 150));
        const useconds_t moment = std::uniform_int_distribution<useconds_t>(0, latest)(random);
        std::array<int, 2> begun{};
        ASSERT_EQ(pipe(begun.data()), 0);
        const pid_t child = fork();
        if (child == 0) {
            LinuxFiles own;
            own.ReplaceAtomically(folder / "settings", contents[1]);
            [[maybe_unused]] const ssize_t told = write(begun[1], "x", 1);
            for (size_t i = 0;; ++i) own.ReplaceAtomically(folder / "settings", contents[i % 2]);
        }
        char letter = 0;
        ASSERT_EQ(read(begun[0], &letter, 1), 1);
        usleep(moment);  // the moment of the kill
        kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        close(begun[0]);
        close(begun[1]);
        const std::string now = Get("settings");
        const bool isOne = now == contents[0];
        ASSERT_TRUE(isOne || now == contents[1]) << "after " << moment << " us: " << now.size() << " bytes";
        ++seen[isOne ? 0 : 1];
    }
    EXPECT_GT(seen[0], 10);
    EXPECT_GT(seen[1], 10);
}

TEST_F(LinuxFilesTest, AppendCreatesAFileButNoFolder) {
    EXPECT_TRUE(files.Append(folder / "log", "one\n"));
    EXPECT_TRUE(files.Append(folder / "log", "two\n"));
    EXPECT_EQ(Get("log"), "one\ntwo\n");
    EXPECT_EQ(files.Append(folder / "none/log", "x").Code(), ENOENT);
}

TEST_F(LinuxFilesTest, RenameReplacesAndMovesBetweenDisks) {
    Put("a", "new");
    Put("b", "old");
    EXPECT_TRUE(files.Rename(folder / "a", folder / "b"));
    EXPECT_EQ(Get("b"), "new");
    EXPECT_EQ(files.Rename(folder / "a", folder / "c").Code(), ENOENT);

    struct stat here {};
    struct stat there {};
    stat(folder.Path().c_str(), &here);
    stat("/dev/shm", &there);
    ASSERT_NE(here.st_dev, there.st_dev) << "this test needs two disks";
    const std::string other = "/dev/shm/corvetape-test-" + std::to_string(getpid());
    EXPECT_TRUE(files.Rename(folder / "b", other));
    EXPECT_EQ(files.ReadAll(other, 10), "new");
    EXPECT_FALSE(files.FileSize(folder / "b"));
    EXPECT_TRUE(files.Rename(other, folder / "back"));
    EXPECT_EQ(Get("back"), "new");
    EXPECT_FALSE(files.FileSize(other));
    EXPECT_TRUE(files.MakeFolder(folder / "sub"));
    EXPECT_EQ(files.Rename(folder / "sub", other).Code(), EXDEV);
}

TEST_F(LinuxFilesTest, CopyIsWholeAndACopyToItselfKeepsTheFile) {
    const std::string content(3'000'000, 'q');
    Put("a", content);
    Put("b", "old");
    EXPECT_TRUE(files.Copy(folder / "a", folder / "b"));
    EXPECT_EQ(Get("b"), content);
    EXPECT_TRUE(files.Copy(folder / "a", folder / "a"));
    std::filesystem::create_hard_link(folder / "a", folder / "same");
    EXPECT_TRUE(files.Copy(folder / "a", folder / "same"));
    EXPECT_EQ(Get("a"), content);
    EXPECT_FALSE(files.Copy(folder / "none", folder / "c"));
    EXPECT_FALSE(files.Copy(folder / "a", folder / "none/c"));
    EXPECT_EQ(Count(), 3u);
}

TEST_F(LinuxFilesTest, FoldersAreMadeOneLevelAtATime) {
    EXPECT_TRUE(files.MakeFolder(folder / "a"));
    EXPECT_EQ(files.MakeFolder(folder / "a").Code(), EEXIST);
    EXPECT_FALSE(files.MakeFolder(folder / "b/c"));
    EXPECT_TRUE(files.IsFolder(folder / "a"));
    EXPECT_FALSE(files.IsFolder(folder / "b"));
    Put("a/file", "x");
    EXPECT_FALSE(files.IsFolder(folder / "a/file"));
    EXPECT_FALSE(files.DeleteFolder(folder / "a"));
    EXPECT_TRUE(files.Delete(folder / "a/file"));
    EXPECT_FALSE(files.Delete(folder / "a"));
    EXPECT_TRUE(files.DeleteFolder(folder / "a"));
}

TEST_F(LinuxFilesTest, ListIsInTheOrderOfNames) {
    Put("b", "12");
    Put("a", "1");
    files.MakeFolder(folder / "c");
    EXPECT_THAT(files.List(folder.Path()),
                ElementsAre(FileEntry{"a", 1, false}, FileEntry{"b", 2, false}, FileEntry{"c", 0, true}));
    EXPECT_TRUE(files.List(folder / "none").empty());
    EXPECT_EQ(files.FileSize(folder / "b"), 2u);
    EXPECT_FALSE(files.FileSize(folder / "c"));
}

TEST_F(LinuxFilesTest, FreeSpaceIsThatOfTheFoldersDisk) {
    const std::filesystem::space_info space = std::filesystem::space(folder.Path());
    const FileOr<uint64_t> free = files.FreeSpace(folder.Path());
    ASSERT_TRUE(free);
    EXPECT_NEAR(static_cast<double>(*free), static_cast<double>(space.available), 1e9);
    EXPECT_FALSE(files.FreeSpace(folder / "none"));
}

}  // namespace
}  // namespace Corvetape
