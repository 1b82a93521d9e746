#include "platform/linux/processes/single_instance.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>

#include "support/live_session.h"
#include "support/temp_folder.h"

namespace Corvetape {
namespace {

using std::chrono::seconds;

class SingleInstanceTest : public testing::Test {
 protected:
    LiveSession session;
    TempFolder folder;
    int called = 0;
};

TEST_F(SingleInstanceTest, TheSecondOneIsRefusedAndBringsTheFirstForward) {
    LinuxSingleInstance first([&] { ++called; }, folder.Path());
    LinuxSingleInstance second({}, folder.Path());
    EXPECT_TRUE(first.Claim());
    EXPECT_TRUE(first.Claim()) << "it holds the place already";
    EXPECT_FALSE(second.Claim());
    second.ActivateOther();
    EXPECT_TRUE(session.WaitFor([&] { return called == 1; }, seconds(30)));
    second.ActivateOther();
    second.ActivateOther();
    EXPECT_TRUE(session.WaitFor([&] { return called == 3; }, seconds(30)));
}

TEST_F(SingleInstanceTest, ThePlaceIsFreeAfterTheEnd) {
    {
        LinuxSingleInstance first({}, folder.Path());
        EXPECT_TRUE(first.Claim());
    }
    LinuxSingleInstance second([&] { ++called; }, folder.Path());
    EXPECT_TRUE(second.Claim());
    LinuxSingleInstance third({}, folder.Path());
    EXPECT_FALSE(third.Claim());
    third.ActivateOther();
    EXPECT_TRUE(session.WaitFor([&] { return called == 1; }, seconds(30)));
}

TEST_F(SingleInstanceTest, WhoeverAsksWhetherAnotherOneRunsTakesNothing) {
    LinuxSingleInstance first({}, folder.Path());
    const LinuxSingleInstance asking({}, folder.Path());
    EXPECT_FALSE(asking.HeldByOther()) << "nobody has ever run";
    EXPECT_TRUE(first.Claim());
    EXPECT_TRUE(asking.HeldByOther());
    EXPECT_FALSE(first.HeldByOther()) << "it is its own";
}

TEST_F(SingleInstanceTest, APlaceThatWasLeftIsHeldByNobody) {
    EXPECT_TRUE(LinuxSingleInstance({}, folder.Path()).Claim());
    const LinuxSingleInstance asking({}, folder.Path());
    EXPECT_FALSE(asking.HeldByOther());
    EXPECT_TRUE(LinuxSingleInstance({}, folder.Path()).Claim()) << "asking has left nothing behind";
}

TEST_F(SingleInstanceTest, AKilledProgramLeavesThePlaceFree) {
    std::array<int, 2> claimed{};
    ASSERT_EQ(pipe(claimed.data()), 0);
    const pid_t other = fork();
    if (other == 0) {
        LinuxSingleInstance instance({}, folder.Path());
        const char letter = instance.Claim() ? 'y' : 'n';
        [[maybe_unused]] const ssize_t told = write(claimed[1], &letter, 1);
        for (;;) pause();
    }
    char letter = 0;
    ASSERT_EQ(read(claimed[0], &letter, 1), 1);
    EXPECT_EQ(letter, 'y');
    LinuxSingleInstance instance([&] { ++called; }, folder.Path());
    EXPECT_FALSE(instance.Claim());
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    EXPECT_TRUE(instance.Claim());
    LinuxSingleInstance({}, folder.Path()).ActivateOther();
    EXPECT_TRUE(session.WaitFor([&] { return called == 1; }, seconds(30)));
}

TEST_F(SingleInstanceTest, ThePathOfTheFolderMayBeLong) {
    const std::string deep = folder / (std::string(100, 'a') + "/" + std::string(100, 'b'));
    std::filesystem::create_directories(deep);
    LinuxSingleInstance first([&] { ++called; }, deep);
    EXPECT_TRUE(first.Claim());
    LinuxSingleInstance({}, deep).ActivateOther();
    EXPECT_TRUE(session.WaitFor([&] { return called == 1; }, seconds(30)));
}

TEST_F(SingleInstanceTest, WithoutAUsableFolderTheProgramRuns) {
    LinuxSingleInstance first({}, folder / "none");
    LinuxSingleInstance second({}, folder / "none");
    EXPECT_TRUE(first.Claim());
    EXPECT_TRUE(second.Claim());
    second.ActivateOther();
}

TEST_F(SingleInstanceTest, TheFolderIsTheSessionsRuntimeFolderOrAPrivateOne) {
    const char* const before = std::getenv("XDG_RUNTIME_DIR");
    const std::string kept = before != nullptr ? before : "";
    setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
    EXPECT_EQ(LinuxSingleInstance::DefaultFolder(), folder.Path());
    setenv("XDG_RUNTIME_DIR", (folder / "none").c_str(), 1);
    const std::string own = LinuxSingleInstance::DefaultFolder();
    struct stat status {};
    ASSERT_EQ(stat(own.c_str(), &status), 0) << own;
    EXPECT_EQ(status.st_uid, getuid());
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    if (before != nullptr) {
        setenv("XDG_RUNTIME_DIR", kept.c_str(), 1);
    } else {
        unsetenv("XDG_RUNTIME_DIR");
    }
}

}  // namespace
}  // namespace Corvetape
