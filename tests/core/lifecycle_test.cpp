#include "core/lifecycle.h"

#include <gtest/gtest.h>

#include "core/fakes.h"
#include "core/settings/command_line.h"
#include "core/settings/registry.h"
#include "core/text/placeholders.h"

namespace Corvetape {
namespace {

TEST(ReadSwitches, EachSwitchHasItsEffect) {
    EXPECT_EQ(ReadSwitches(""), Switches{});
    EXPECT_TRUE(ReadSwitches("-update").Update);
    EXPECT_TRUE(ReadSwitches("-regclasses").RegClasses);
    EXPECT_TRUE(ReadSwitches("-wizard").Wizard);
    EXPECT_TRUE(ReadSwitches("-hide").Hide);
    EXPECT_TRUE(ReadSwitches("-dontask").DontAsk);
    EXPECT_TRUE(ReadSwitches("-auto").Auto);
    EXPECT_TRUE(ReadSwitches("-quit").Quit);
    EXPECT_EQ(ReadSwitches("-time 90").TimeMinutes, 90);
}

TEST(ReadSwitches, ASwitchSetsNoOther) {
    Switches expected;
    expected.Hide = true;
    EXPECT_EQ(ReadSwitches("-hide"), expected);
}

TEST(ReadSwitches, TheTableStandsInTheOrderOfEffect) {
    std::vector<std::string_view> texts;
    for (const SwitchRow& row : SwitchTable()) texts.push_back(row.Text);
    EXPECT_EQ(texts, (std::vector<std::string_view>{"-update", "-regclasses", "-wizard", "-hide", "-dontask",
                                                    "-auto", "-quit", "-time"}));
}

TEST(ReadSwitches, SwitchesNeedNoSeparation) {
    const Switches switches = ReadSwitches("-auto-quit");
    EXPECT_TRUE(switches.Auto);
    EXPECT_TRUE(switches.Quit);
}

TEST(ReadSwitches, CaseAndPlaceDoNotCount) {
    const Switches switches = ReadSwitches("\"/opt/x-Hide/corvetape\" foo-AUTO");
    EXPECT_TRUE(switches.Hide);
    EXPECT_TRUE(switches.Auto);
}

TEST(ReadSwitches, TheNumberOfTimeNeedsNoBlank) {
    EXPECT_EQ(ReadSwitches("-TIME 90").TimeMinutes, 90);
    EXPECT_EQ(ReadSwitches("-time90").TimeMinutes, 90);
    EXPECT_EQ(ReadSwitches("-time   90 -quit").TimeMinutes, 90);
    EXPECT_EQ(ReadSwitches("-time90-quit").TimeMinutes, 90);
}

TEST(ReadSwitches, TimeAloneIsZeroMinutes) {
    EXPECT_EQ(ReadSwitches("-time").TimeMinutes, 0);
    EXPECT_EQ(ReadSwitches("-time abc").TimeMinutes, 0);
    EXPECT_EQ(ReadSwitches("-auto").TimeMinutes, std::nullopt);
}

TEST(ReadSwitches, TheFirstTimeCounts) {
    EXPECT_EQ(ReadSwitches("-time 5 -time 7").TimeMinutes, 5);
}

TEST(ReadSwitches, OddNumbersOfTimeGiveADefinedResult) {
    EXPECT_EQ(ReadSwitches("-time -5").TimeMinutes, -5);
    EXPECT_EQ(ReadSwitches("-time 1.5").TimeMinutes, 2);
    EXPECT_EQ(ReadSwitches("-time 99999999999999999999").TimeMinutes, 2147483647);
    EXPECT_EQ(ReadSwitches("-time -1e999").TimeMinutes, -2147483647 - 1);
}

class PauseTest : public testing::Test {
 protected:
    StandingClock Time;
    CountingLoop Loop{Time};
};

TEST_F(PauseTest, WaitsInStepsOfTenMillisecondsWithEvents) {
    Time.Now = {2009, 12, 31, 1, 0, 0, 0};
    PauseWithEvents(Time, Loop, 500);
    EXPECT_GE(Loop.Slept.count(), 500);
    EXPECT_LE(Loop.Slept.count(), 510);
    EXPECT_EQ(Loop.Processed, Loop.Slept.count() / 10);
}

TEST_F(PauseTest, RunsAtLeastOnce) {
    PauseWithEvents(Time, Loop, 0);
    EXPECT_EQ(Loop.Processed, 1);
    EXPECT_EQ(Loop.Slept.count(), 10);
}

TEST_F(PauseTest, HandlesWorkThatCameMeanwhile) {
    bool done = false;
    Loop.Post([&] { done = true; });
    PauseWithEvents(Time, Loop, 10);
    EXPECT_TRUE(done);
}

TEST_F(PauseTest, AcrossMidnightItLastsHalfAnHourLonger) {
    Time.Now = {2009, 12, 31, 23, 59, 59, 500};
    PauseWithEvents(Time, Loop, 1000);
    // A day counts 84600 seconds here instead of 86400: the wait is 1800 s longer.
    EXPECT_NEAR(static_cast<double>(Loop.Slept.count()), 1'801'000.0, 20.0);
}

TEST_F(PauseTest, AClockThatDoesNotMoveCountsAsPastMidnight) {
    struct StillLoop : CountingLoop {
        using CountingLoop::CountingLoop;
        void Sleep(std::chrono::milliseconds) override { ++Sleeps; }
        int Sleeps = 0;
    } loop(Time);
    PauseWithEvents(Time, loop, 5000);
    EXPECT_EQ(loop.Sleeps, 1);
}

TEST(SystemVersions, OnlyPlatformTwoIsTheNTFamily) {
    EXPECT_TRUE(IsWindowsNT({2, 5, 1, 2600}));
    EXPECT_FALSE(IsWindowsNT({1, 4, 10, 0}));
    EXPECT_FALSE(IsWindowsNT({0, 6, 0, 0}));
}

TEST(SystemVersions, VistaIsMajorVersionSixOfTheNTFamily) {
    EXPECT_TRUE(IsWindowsVista({2, 6, 1, 7600}));
    EXPECT_FALSE(IsWindowsVista({2, 5, 1, 2600}));
    EXPECT_FALSE(IsWindowsVista({2, 10, 0, 0}));
    EXPECT_FALSE(IsWindowsVista({1, 6, 0, 0}));
}

TEST(WindowsTag, EverySystemHasItsLetters) {
    EXPECT_EQ(WindowsTag({2, 3, 51, 1057}, "."), "NT.3.51.1057");
    EXPECT_EQ(WindowsTag({2, 4, 0, 1381}, "."), "NT.4.0.1381");
    EXPECT_EQ(WindowsTag({2, 5, 0, 2195}, "-"), "2K-5-0-2195");
    EXPECT_EQ(WindowsTag({2, 5, 1, 2600}, "."), "XP.5.1.2600");
    EXPECT_EQ(WindowsTag({2, 5, 2, 3790}, "."), "XP.5.2.3790");
    EXPECT_EQ(WindowsTag({2, 6, 1, 7600}, ""), "VI617600");
    EXPECT_EQ(WindowsTag({2, 10, 0, 19045}, "."), ".10.0.19045");
    EXPECT_EQ(WindowsTag({1, 4, 0, 950}, "."), "95.4.0.950");
    EXPECT_EQ(WindowsTag({1, 4, 10, 1998}, "."), "98.4.10.1998");
    EXPECT_EQ(WindowsTag({1, 4, 90, 3000}, "."), "ME.4.90.3000");
    EXPECT_EQ(WindowsTag({1, 4, 20, 1}, "."), ".4.20.1");
}

TEST(WindowsTag, OnlyTheLow16BitsOfTheBuildCount) {
    EXPECT_EQ(WindowsTag({1, 4, 10, 0x040A07CE}, "."), "98.4.10.1998");
}

TEST(WindowsTag, AnotherPlatformGivesNothing) {
    EXPECT_EQ(WindowsTag({0, 3, 11, 1}, "."), "");
    EXPECT_EQ(WindowsTag({3, 6, 0, 1}, "."), "");
}

class SearchPathTest : public testing::Test {
 protected:
    MemoryFiles Disk;
    StandingClock Time;
    TableFolders Places;
    RegistryBranches Registry{Disk, "/u", "/m"};
    Placeholders Expansion{Time, Places, Registry};
};

TEST_F(SearchPathTest, TheCommonFolderIsPutBehindIt) {
    EXPECT_EQ(CommonDataFolder(Places), "/var/lib/Corvet");
    ExtendSearchPath(Places, Expansion, "/var/lib/Corvet");
    EXPECT_EQ(Places.Variables["PATH"], "/usr/bin:/bin:/var/lib/Corvet");
}

TEST_F(SearchPathTest, AFolderThatItHoldsAlreadyIsNotAddedIgnoringCase) {
    Places.Variables["PATH"] = "/VAR/lib/corvet:/bin";
    ExtendSearchPath(Places, Expansion, "/var/lib/Corvet");
    EXPECT_EQ(Places.Variables["PATH"], "/VAR/lib/corvet:/bin");
}

TEST_F(SearchPathTest, WithoutASearchPathTheFolderIsAllOfIt) {
    Places.Variables.erase("PATH");
    ExtendSearchPath(Places, Expansion, "/var/lib/Corvet");
    EXPECT_EQ(Places.Variables["PATH"], "/var/lib/Corvet");
}

TEST_F(SearchPathTest, AFailureIsIgnored) {
    Places.SetFails = true;
    ExtendSearchPath(Places, Expansion, "/var/lib/Corvet");
    EXPECT_EQ(Places.Variables["PATH"], "/usr/bin:/bin");
}

TEST(StoredPosition, MovesTheWindowToLeftAndTop) {
    EXPECT_EQ(StoredPosition("300;300;9000;7000"), (WindowPosition{300, 300}));
    EXPECT_EQ(StoredPosition("-1;5;1;1"), (WindowPosition{-1, 5}));
}

TEST(StoredPosition, WithoutACommonBitTheWindowStays) {
    EXPECT_EQ(StoredPosition("0;500;9000;7000"), std::nullopt);
    EXPECT_EQ(StoredPosition("4096;3072;9000;7000"), std::nullopt);
}

TEST(StoredPosition, FewerThanFourPiecesAreNoPosition) {
    EXPECT_EQ(StoredPosition(""), std::nullopt);
    EXPECT_EQ(StoredPosition("300;300;9000"), std::nullopt);
    EXPECT_EQ(StoredPosition("a;b;c;d"), std::nullopt);
    EXPECT_EQ(StoredPosition("300;300;1;1;1"), (WindowPosition{300, 300}));
}

}  // namespace
}  // namespace Corvetape
