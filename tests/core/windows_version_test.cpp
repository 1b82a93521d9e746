#include "core/windows_version.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

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

}  // namespace
}  // namespace Corvetape
