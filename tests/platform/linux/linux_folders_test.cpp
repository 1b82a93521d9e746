#include "platform/linux/files/linux_folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/temp_folder.h"

namespace Corvetape {
namespace {

class LinuxFoldersTest : public testing::Test {
 protected:
    LinuxFoldersTest() {
        Set("HOME", folder.Path());
        for (const char* name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "Temp", "TEMP", "Tmp", "TMP", "temp"}) {
            Set(name, std::nullopt);
        }
    }
    ~LinuxFoldersTest() override {
        for (const auto& [name, value] : before) {
            if (value) {
                setenv(name.c_str(), value->c_str(), 1);
            } else {
                unsetenv(name.c_str());
            }
        }
    }

    void Set(const std::string& name, const std::optional<std::string>& value) {
        const char* const old = std::getenv(name.c_str());
        before.try_emplace(name, old != nullptr ? std::optional<std::string>(old) : std::nullopt);
        if (value) {
            setenv(name.c_str(), value->c_str(), 1);
        } else {
            unsetenv(name.c_str());
        }
    }
    void UserDirs(const std::string& content) const {
        std::filesystem::create_directories(folder / ".config");
        std::ofstream(folder / ".config/user-dirs.dirs") << content;
    }

    TempFolder folder;
    std::map<std::string, std::optional<std::string>> before;
};

TEST_F(LinuxFoldersTest, FoldersHaveTheirUsualNamesAndAreCreated) {
    LinuxFolders folders;
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyDocuments), folder / "Documents");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyMusic), folder / "Music");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyVideo), folder / "Videos");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyPictures), folder / "Pictures");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::AppData), folder / ".config");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::CommonAppData), "/usr/local/share");
    EXPECT_EQ(folders.ShellFolderPath(static_cast<ShellFolder>(99)), "");
    struct stat status {};
    ASSERT_EQ(stat((folder / "Music").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(LinuxFoldersTest, TheUsersOwnNamesComeFromUserDirs) {
    UserDirs(
        "# comment\n"
        "XDG_MUSIC_DIR=\"$HOME/Musik\"\n"
        "  XDG_DOCUMENTS_DIR = \"/elsewhere/Do\\\"cs/\"\n"
        "XDG_VIDEOS_DIR=\"relative\"\n"
        "XDG_PICTURES_DIR=\"$HOMEPAGE/x\"\n"
        "XDG_MUSIC_DIR_X=\"$HOME/no\"\n");
    std::filesystem::create_directories(folder / "elsewhere");
    LinuxFolders folders;
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyMusic), folder / "Musik");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyVideo), folder / "Videos") << "relative is invalid";
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyPictures), folder / "Pictures");
    UserDirs("XDG_MUSIC_DIR=\"" + (folder / "M 1/\\\"x\\\"/") + "\"\nXDG_DOCUMENTS_DIR=\"$HOME/\"\n");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyMusic), folder / "M 1/\"x\"");
    EXPECT_TRUE(std::filesystem::is_directory(folder / "M 1/\"x\""));
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyDocuments), folder.Path()) << "switched off: the home";
}

TEST_F(LinuxFoldersTest, VariablesOfTheDesktopCountIfTheyAreWholePaths) {
    Set("XDG_CONFIG_HOME", folder / "conf/");
    Set("XDG_CACHE_HOME", "relative");
    LinuxFolders folders;
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::AppData), folder / "conf");
    EXPECT_EQ(folders.Environment("Temp"), folder / ".cache");
}

TEST_F(LinuxFoldersTest, TempIsTheCacheFolderUnlessSomebodyHasSetIt) {
    LinuxFolders folders;
    EXPECT_EQ(folders.Environment("Temp"), folder / ".cache");
    EXPECT_EQ(folders.Environment("TMP"), folder / ".cache");
    EXPECT_TRUE(std::filesystem::is_directory(folder / ".cache"));
    Set("TEMP", "/somewhere");
    EXPECT_EQ(folders.Environment("Temp"), "/somewhere");
    EXPECT_EQ(folders.Environment("UserProfile"), folder.Path());
}

TEST_F(LinuxFoldersTest, VariablesAreComparedExactlyThenIgnoringCase) {
    Set("Corvet_Test", "mixed");
    LinuxFolders folders;
    EXPECT_EQ(folders.Environment("CORVET_test"), "mixed");
    Set("CORVET_TEST", "upper");
    EXPECT_EQ(folders.Environment("Corvet_Test"), "mixed");
    EXPECT_EQ(folders.Environment("CORVET_TEST"), "upper");
    EXPECT_EQ(folders.Environment("CORVET_TES"), std::nullopt);
}

TEST_F(LinuxFoldersTest, WithoutASearchPathThereIsTheUsualOne) {
    Set("PATH", std::nullopt);
    Set("Path", std::nullopt);
    LinuxFolders folders;
    EXPECT_EQ(folders.Environment("Path"), "/usr/local/bin:/usr/bin:/bin");
    EXPECT_TRUE(folders.FindProgram("sh"));
}

TEST_F(LinuxFoldersTest, SettingPathSetsTheSearchPath) {
    Set("PATH", "/bin");
    Set("Path", std::nullopt);
    LinuxFolders folders;
    EXPECT_TRUE(folders.SetEnvironment("Path", "/bin:/opt/x"));
    EXPECT_STREQ(std::getenv("PATH"), "/bin:/opt/x");
    EXPECT_EQ(std::getenv("Path"), nullptr);
    EXPECT_EQ(folders.Environment("Path"), "/bin:/opt/x");
    Set("Corvet_New", std::nullopt);
    EXPECT_TRUE(folders.SetEnvironment("Corvet_New", "1"));
    EXPECT_STREQ(std::getenv("Corvet_New"), "1");
}

TEST_F(LinuxFoldersTest, AGivenHomeHoldsEveryFolderWhateverTheEnvironmentSays) {
    Set("XDG_CONFIG_HOME", "/elsewhere");
    Set("XDG_CACHE_HOME", "/elsewhere");
    Set("TEMP", "/elsewhere");
    UserDirs("XDG_MUSIC_DIR=\"/elsewhere\"\n");
    const std::string home = folder / "a/b";
    LinuxFolders folders(home + "/");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::AppData), home + "/config");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::CommonAppData), home + "/share");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyMusic), home + "/Music");
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyDocuments), home + "/Documents");
    EXPECT_EQ(folders.Environment("UserProfile"), home);
    EXPECT_EQ(folders.Environment("Temp"), home + "/cache");
    EXPECT_EQ(folders.Environment("TMP"), home + "/cache");
    EXPECT_TRUE(std::filesystem::is_directory(home + "/Music"));
    EXPECT_TRUE(std::filesystem::is_directory(home + "/cache"));
    EXPECT_TRUE(folders.SetEnvironment("Temp", "/chosen"));
    EXPECT_EQ(folders.Environment("TEMP"), "/chosen");
}

TEST_F(LinuxFoldersTest, ARelativeHomeIsMeantFromThePresentFolder) {
    const std::filesystem::path here = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    LinuxFolders folders("sub");
    std::filesystem::current_path(here);
    EXPECT_EQ(folders.ShellFolderPath(ShellFolder::MyMusic),
              std::filesystem::canonical(folder.Path()).string() + "/sub/Music");
}

TEST_F(LinuxFoldersTest, TheProgramFolderIsThatOfTheProgramFileThatLinksLeadTo) {
    EXPECT_EQ(LinuxFolders().ProgramFolder(),
              std::filesystem::read_symlink("/proc/self/exe").parent_path().string());
}

TEST_F(LinuxFoldersTest, ProgramsAreFoundInTheOrderOfTheSearchPath) {
    const auto make = [&](const std::string& name, mode_t mode) {
        std::filesystem::create_directories(std::filesystem::path(folder / name).parent_path());
        std::ofstream(folder / name) << "#!/bin/sh\n";
        chmod((folder / name).c_str(), mode);
    };
    make("one/tool", 0644);
    make("two/tool", 0755);
    make("three/tool", 0755);
    std::filesystem::create_directories(folder / "zero/tool");
    Set("PATH", "relative::" + (folder / "zero") + ":" + (folder / "one") + ":" + (folder / "two/") + ":" +
                    (folder / "three"));
    LinuxFolders folders;
    EXPECT_EQ(folders.FindProgram("tool"), folder / "two/tool");
    EXPECT_EQ(folders.FindProgram(folder / "three/tool"), folder / "three/tool");
    EXPECT_EQ(folders.FindProgram(folder / "one/tool"), std::nullopt);
    EXPECT_EQ(folders.FindProgram("none"), std::nullopt);
    EXPECT_EQ(folders.FindProgram(""), std::nullopt);
    EXPECT_EQ(folders.SearchPathSeparator(), ':');
    std::filesystem::current_path(folder / "two");
    Set("PATH", ".:" + (folder / "one") + ":");
    EXPECT_EQ(folders.FindProgram("tool"), std::nullopt) << "the present folder is not searched";
    std::filesystem::current_path("/");
}

}  // namespace
}  // namespace Corvetape
