// What an installation consists of.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <filesystem>

#include "core/version.h"
#include "packaging/command.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

namespace fs = std::filesystem;

const std::string Packaging = CORVETAPE_SOURCE_DIR "/packaging/";
const std::string Build = CORVETAPE_BINARY_DIR;

TEST(DesktopEntry, IsValid) {
    const ShellResult result = RunShell("desktop-file-validate " + Packaging + "corvetape.desktop");
    EXPECT_EQ(result.ExitCode, 0) << result.Text;
    EXPECT_EQ(result.Text, "");
}

TEST(DesktopEntry, ItsActionsPressWhatTheProgramKnows) {
    const std::string entry = TextOfFile(Packaging + "corvetape.desktop");
    const std::set<std::string> pressed = AllOf(entry, "--press ([a-z]+)");
    EXPECT_EQ(pressed, (std::set<std::string>{"record", "quit"}));
    for (const std::string& button : pressed) {
        EXPECT_NE(RunShell(Build + "/bin/corvetape --help").Text.find(button), std::string::npos);
    }
}

TEST(Metadata, AreValidAndOfThisVersion) {
    const std::string file = Packaging + "net.corvetape.Corvetape.metainfo.xml";
    const ShellResult result = RunShell("appstreamcli validate --no-net " + file);
    EXPECT_EQ(result.ExitCode, 0) << result.Text;
    EXPECT_EQ(AllOf(TextOfFile(file), "release version=\"([^\"]+)\"").count(ProgramVersion), 1U);
}

TEST(Packages, TheirChangesAreOfThisVersion) {
    const std::string changes = TextOfFile(Packaging + "changelog");
    EXPECT_EQ(changes.rfind(std::string("corvetape (") + ProgramVersion + ") ", 0), 0U) << changes;
}

TEST(ManualPages, AreWellFormed) {
    for (const std::string name : {"corvetape", "corvetape-cli"}) {
        const ShellResult result =
            RunShell("groff -man -Tutf8 -ww -z " CORVETAPE_SOURCE_DIR "/docs/man/" + name + ".1");
        EXPECT_EQ(result.ExitCode, 0);
        EXPECT_EQ(result.Text, "") << name;
    }
}

TEST(Installation, RunsFromWhereverItIs) {
    const TempFolder folder;
    const ShellResult installed =
        RunShell("cmake --install " + Build + " --prefix " + folder.Path() + "/usr");
    ASSERT_EQ(installed.ExitCode, 0) << installed.Text;
    const std::string bin = folder / "usr/bin/";
    EXPECT_EQ(RunShell(bin + "corvetape-cli --version").ExitCode, 0);
    EXPECT_EQ(RunShell(bin + "corvetape --help").ExitCode, 0);
    const ShellResult recorded = RunShell(
        bin + "corvetape-cli record --input demo --speed 100 --seconds 60 --home " + (folder / "home"));
    EXPECT_EQ(recorded.ExitCode, 0) << recorded.Text;
    EXPECT_NE(recorded.Text.find("kept"), std::string::npos) << recorded.Text;
}

TEST(Installation, HasTheManualThatTheProgramShowsBesideIt) {
    const TempFolder folder;
    ASSERT_EQ(RunShell("cmake --install " + Build + " --prefix " + folder.Path() + "/usr").ExitCode, 0);
    const fs::path program = fs::canonical(folder / "usr/bin/corvetape").parent_path();
    for (const fs::path& place : {program, fs::path(Build) / "bin"}) {
        const std::string manual = TextOfFile(place / "manual/manual.md");
        EXPECT_EQ(manual, TextOfFile(CORVETAPE_SOURCE_DIR "/docs/manual.md"));
        for (const auto& page : fs::directory_iterator(place / "manual")) {
            for (const std::string& link : AllOf(TextOfFile(page.path()), "\\]\\(([^):#]+)")) {
                EXPECT_TRUE(fs::exists(place / "manual" / link)) << page << ": " << link << " is not there";
            }
        }
    }
}

TEST(Installation, HasIconsOfEverySize) {
    const TempFolder folder;
    ASSERT_EQ(RunShell("cmake --install " + Build + " --prefix " + folder.Path()).ExitCode, 0);
    const fs::path icons = fs::path(folder.Path()) / "share/icons/hicolor";
    EXPECT_TRUE(fs::exists(icons / "scalable/apps/corvetape.svg"));
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const std::string name = std::to_string(size);
        const QImage image(QString::fromStdString(icons / (name + "x" + name) / "apps/corvetape.png"));
        ASSERT_EQ(image.size(), QSize(size, size));
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "round corners";
        EXPECT_GT(image.pixelColor(size / 2, size / 8).red(), 150) << "the red of the icon";
    }
}

}  // namespace
}  // namespace Corvetape
