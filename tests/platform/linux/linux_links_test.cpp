#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/linux/files/linux_files.h"
#include "support/refuse_links.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

class LinuxLinksTest : public testing::Test {
 protected:
    LinuxLinksTest() { std::ofstream(one) << "a song"; }

    static std::string Content(const std::string& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static ino_t FileOf(const std::string& path) {
        struct stat status {};
        return stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
    }

    /// Gives it on a disk that knows one name for each file only.
    FileResult LinkWithoutLinks(const std::string& from, const std::string& to) {
        FileResult result;
        std::thread([&] {
            EXPECT_TRUE(RefuseHardLinks());
            result = disk.Link(from, to);
        }).join();
        return result;
    }

    TempFolder folder;
    LinuxFiles disk;
    std::string one = folder / "one.wav";
    std::string two = folder / "two.wav";
};

TEST_F(LinuxLinksTest, ASecondNameIsOfTheSameFileAndOutlivesTheFirst) {
    ASSERT_TRUE(disk.Link(one, two));
    EXPECT_EQ(FileOf(two), FileOf(one));
    ASSERT_TRUE(disk.Delete(one));
    EXPECT_EQ(Content(two), "a song");
}

TEST_F(LinuxLinksTest, ADiskThatKnowsOneNameForEachFileGetsACopy) {
    ASSERT_TRUE(LinkWithoutLinks(one, two));
    EXPECT_NE(FileOf(two), FileOf(one));
    ASSERT_TRUE(disk.Delete(one));
    EXPECT_EQ(Content(two), "a song");
}

TEST_F(LinuxLinksTest, WhatIsNotThereGetsNoSecondName) {
    EXPECT_EQ(disk.Link(folder / "none.wav", two).Error, std::errc::no_such_file_or_directory);
    EXPECT_EQ(LinkWithoutLinks(folder / "none.wav", two).Error, std::errc::no_such_file_or_directory);
    EXPECT_FALSE(std::filesystem::exists(two));
}

TEST_F(LinuxLinksTest, ANameThatIsTakenStaysWithItsFile) {
    std::ofstream(two) << "another song";
    EXPECT_EQ(disk.Link(one, two).Error, std::errc::file_exists);
    EXPECT_EQ(Content(two), "another song");
}

}  // namespace
}  // namespace Corvetape
