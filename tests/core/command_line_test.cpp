#include "core/settings/command_line.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace Corvetape
