// Covers on a real disk, with links in their way.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "media/cover_images.h"
#include "platform/linux/files/linux_files.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

namespace fs = std::filesystem;

/// A web that has one picture.
class OnePicture : public Http {
 public:
    void Get(const std::string& /*address*/, size_t /*limit*/,
             std::function<void(const HttpAnswer&)> answered) override {
        answered({false, std::string(2000, 'p')});
    }
    void Cancel() override {}
};

class CoverFilesTest : public testing::Test {
 protected:
    void Save(const std::string& address) {
        Covers.LoadImage(address);
        Covers.SaveImage(Folder / "song");
    }

    std::string Content(const std::string& name) {
        return Files.ReadAll(Folder / name, 1 << 20).value_or("(none)");
    }

    TempFolder Folder;
    LinuxFiles Files;
    OnePicture Web;
    PauseSettings Pause;
    CoverImages Covers{&Web, Files, Pause};
    const std::string Picture = std::string(2000, 'p');
};

TEST_F(CoverFilesTest, ALinkIsReplacedAndWhatItLeadsToStays) {
    std::ofstream(Folder / "diary.txt") << "dear diary";
    fs::create_symlink("diary.txt", Folder / "song.jpg");
    Save("http://127.0.0.1/a");
    EXPECT_EQ(Content("diary.txt"), "dear diary");
    EXPECT_FALSE(fs::is_symlink(Folder / "song.jpg"));
    EXPECT_EQ(Content("song.jpg"), Picture);
}

TEST_F(CoverFilesTest, NothingIsMadeWhereALinkLeadsToNothing) {
    fs::create_symlink("planted", Folder / "song.jpg");
    Save("http://127.0.0.1/a");
    EXPECT_FALSE(fs::exists(Folder / "planted"));
    EXPECT_EQ(Content("song.jpg"), Picture);
}

TEST_F(CoverFilesTest, TheSecondNameOfAFileKeepsItsContent) {
    std::ofstream(Folder / "diary.txt") << "dear diary";
    fs::create_hard_link(Folder / "diary.txt", Folder / "song.jpg");
    Save("http://127.0.0.1/a");
    EXPECT_EQ(Content("diary.txt"), "dear diary");
    EXPECT_EQ(Content("song.jpg"), Picture);
}

TEST_F(CoverFilesTest, AFolderOfTheNameStays) {
    fs::create_directory(Folder / "song.jpg");
    Save("http://127.0.0.1/a");
    EXPECT_TRUE(fs::is_directory(Folder / "song.jpg"));
}

}  // namespace
}  // namespace Corvetape
