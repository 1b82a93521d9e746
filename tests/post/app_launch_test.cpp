#include "post/options/app_launch.h"

#include <gtest/gtest.h>

#include "post/post_bench.h"

namespace Corvetape {
namespace {

class LaunchAppTest : public ::testing::Test {
 protected:
    void Launch(const std::string& path, const std::string& parameters, int32_t result) {
        Bench.Sim.Processes.OnShellOpen = [result](const ShellCall&) { return result; };
        LaunchApp(path, parameters, Bench.Sim.Processes, Bench.Journal);
    }

    Testing::PostBench Bench;
};

TEST_F(LaunchAppTest, IsLoggedAsStartWithProgramAndParameters) {
    Launch("/usr/bin/player", "--quiet %Temp%", 33);
    EXPECT_EQ(Bench.LogLines(), "START\t/usr/bin/player\t--quiet %Temp%\n");
    const ShellCall expected{"/usr/bin/player", "--quiet %Temp%", "/usr/bin/"};
    ASSERT_EQ(Bench.Sim.Processes.ShellCalls.size(), 1U);
    EXPECT_EQ(Bench.Sim.Processes.ShellCalls[0], expected);
}

TEST_F(LaunchAppTest, AResultOfThirtyTwoOrLessIsAnErrorLine) {
    Launch("/usr/bin/player", "", 2);
    Launch("/usr/bin/player", "", 32);
    EXPECT_EQ(
        Bench.LogLines(),
        "START\t/usr/bin/player\t\nERROR\t2 (File not found)\nSTART\t/usr/bin/player\t\nERROR\t32 (DDL not "
        "found)\n");
}

TEST_F(LaunchAppTest, AnEmptyPathFailsWithItsErrorLine) {
    Launch("", "", 2);
    EXPECT_EQ(Bench.LogLines(), "START\t\t\nERROR\t2 (File not found)\n");
    EXPECT_EQ(Bench.Sim.Processes.ShellCalls[0].WorkingFolder, "");
}

TEST_F(LaunchAppTest, AProgramWithoutFolderHasNoWorkingFolder) {
    Launch("player", "", 33);
    EXPECT_EQ(Bench.Sim.Processes.ShellCalls[0].WorkingFolder, "");
}

}  // namespace
}  // namespace Corvetape
