#include "cli/obstacles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "sim/sim_files.h"

namespace Corvetape {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// A disk that notes which files were made on it, and how.
class NotingDisk : public SimFiles {
 public:
    Opened<File> Create(const std::string& path) override {
        Emptied.insert(path);
        return SimFiles::Create(path);
    }
    Opened<File> CreateNew(const std::string& path) override {
        New.insert(path);
        return SimFiles::Create(path);
    }

    std::set<std::string> Emptied;
    std::set<std::string> New;
};

TEST(FolderObstacle, IsLookedForByNewFilesWhoseNamesNobodyCanPrepare) {
    NotingDisk disk;
    for (int i = 0; i < 10; ++i) EXPECT_EQ(FolderObstacle(disk, "/music"), std::nullopt);
    EXPECT_THAT(disk.Emptied, IsEmpty());
    EXPECT_THAT(disk.New, SizeIs(10));
    EXPECT_THAT(disk.List("/music"), IsEmpty());
}

}  // namespace
}  // namespace Corvetape
