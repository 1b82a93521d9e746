#include "platform/linux/files/write_behind_files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <random>
#include <vector>

#include "support/temp_folder.h"

namespace Corvetape {
namespace {

class WriteBehindFilesTest : public testing::Test {
 protected:
    std::string Content(const std::string& name) {
        return files.ReadAll(folder / name, 1 << 26).value_or("?");
    }

    static std::span<const std::byte> Bytes(const std::string& text) {
        return std::as_bytes(std::span(text));
    }

    const TempFolder folder;
    WriteBehindFiles files;
};

TEST_F(WriteBehindFilesTest, WhatWasWrittenIsThereOnceTheFileIsClosed) {
    const auto file = files.Create(folder / "file");
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(file->Write(Bytes("one ")));
    EXPECT_TRUE(file->Write(Bytes("two")));
    EXPECT_EQ(file->Position(), 7u);
    EXPECT_TRUE(file->Close());
    EXPECT_EQ(Content("file"), "one two");
    EXPECT_TRUE(file->Close()) << "a closed file may be closed again";
}

TEST_F(WriteBehindFilesTest, AFileThatNobodyClosesIsStillWrittenInFull) {
    files.Create(folder / "file")->Write(Bytes("all of it"));
    EXPECT_EQ(Content("file"), "all of it");
}

TEST_F(WriteBehindFilesTest, AnyOrderOfWritesAndSeeksGivesWhatItGivesElsewhere) {
    for (uint32_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        LinuxFiles plain;
        const auto behind = files.Create(folder / "behind");
        const auto direct = plain.Create(folder / "direct");
        for (int step = 0; step < 60; ++step) {
            if (random() % 4 == 0) {
                const uint64_t place = random() % 3'000'000;
                EXPECT_TRUE(behind->Seek(place));
                EXPECT_TRUE(direct->Seek(place));
            } else if (random() % 8 == 0) {
                const uint64_t size = random() % 3'000'000;
                EXPECT_TRUE(behind->CutBack(size));
                EXPECT_TRUE(direct->CutBack(size));
            } else {
                std::string text(random() % (random() % 8 == 0 ? 2'000'000 : 10'000), '\0');
                for (size_t i = 0; i < text.size(); i += 97) text[i] = static_cast<char>(random());
                EXPECT_TRUE(behind->Write(Bytes(text)));
                EXPECT_TRUE(direct->Write(Bytes(text)));
            }
            EXPECT_EQ(behind->Position(), direct->Position());
        }
        EXPECT_TRUE(behind->Close());
        EXPECT_TRUE(direct->Close());
        EXPECT_TRUE(Content("behind") == Content("direct"));
    }
}

TEST_F(WriteBehindFilesTest, AFailureIsReportedAtTheLatestByTheClose) {
    const auto file = files.Create("/dev/full");
    ASSERT_NE(file, nullptr);
    file->Write(Bytes("no room"));  // may be reported here or later
    EXPECT_EQ(file->Close().Code(), ENOSPC);
}

TEST_F(WriteBehindFilesTest, AfterAFailureEverythingFailsAndNothingWaitsForEver) {
    const auto file = files.Create("/dev/full");
    const std::string much(100'000, 'x');
    bool failed = false;
    for (int i = 0; i < 1000 && !failed; ++i) failed = !file->Write(Bytes(much));
    EXPECT_TRUE(failed);
    EXPECT_EQ(file->Write(Bytes("more")).Code(), ENOSPC);
    EXPECT_FALSE(file->Seek(0));
    EXPECT_FALSE(file->Close());
}

TEST_F(WriteBehindFilesTest, AFileThatCannotBeMadeIsReportedAtOnce) {
    EXPECT_EQ(files.Create(folder / "no/such/file").Failure.Code(), ENOENT);
}

TEST_F(WriteBehindFilesTest, SeveralFilesAreWrittenSideBySide) {
    std::vector<std::unique_ptr<File>> open;
    const std::string text(700'000, 'a');
    for (int i = 0; i < 4; ++i) open.push_back(files.Create(folder / std::to_string(i)));
    for (int round = 0; round < 5; ++round) {
        for (const auto& file : open) EXPECT_TRUE(file->Write(Bytes(text)));
    }
    open.clear();
    for (int i = 0; i < 4; ++i) EXPECT_EQ(files.FileSize(folder / std::to_string(i)), 5 * text.size());
}

}  // namespace
}  // namespace Corvetape
