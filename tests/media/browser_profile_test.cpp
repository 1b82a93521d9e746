#include "media/browser_profile.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "media/devtools_ports.h"
#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

constexpr const char* Path = "/opt/corvetape/MSIE.ini";

std::vector<ProviderProfile> Read(const std::string& content) {
    SimMachine machine;
    EXPECT_TRUE(machine.Files.MakeFolder("/opt/p"));
    EXPECT_TRUE(machine.Files.Append("/opt/p/MSIE.ini", content));
    return ReadProfiles(Profile(machine.Files, "/opt/p/MSIE.ini"));
}

TEST(ReadProfiles, TheExampleIsReadFieldByField) {
    const auto profiles = Read(
        "[- Example Radio]\nName=Example Radio\nWindow&Doc=IEFrame;*Example*;Example Player*;*player.htm*\n"
        "Station=-1;;(.*) - Player\nStationDesc=-2;Doc.title;\nArtist=0,nowplaying;artistcell;\n"
        "Title=0,nowplaying;4;^Title: (.*)$\nAlbum=\nCover=-4;coverimage;\nStatus=0;x;y\n"
        "Restart=0;Doc.forms(0).submit();\n");
    ASSERT_EQ(profiles.size(), 1u);
    const ProviderProfile expected{"Example Radio",
                                   "IEFrame",
                                   "*Example*",
                                   "Example Player*",
                                   "*player.htm*",
                                   {"-1", "", "(.*) - Player"},
                                   {"-2", "Doc.title", ""},
                                   {"0,nowplaying", "artistcell", ""},
                                   {"0,nowplaying", "4", "^Title: (.*)$"},
                                   {},
                                   {"-4", "coverimage", ""},
                                   {"0", "x", "y"},
                                   {"0", "Doc.forms(0).submit()", ""}};
    EXPECT_EQ(profiles[0], expected);
    EXPECT_FALSE(profiles[0].ReadsWindow());
}

TEST(ReadProfiles, OnlySectionsThatBeginWithADashAndABlankAreProfiles) {
    const auto profiles = Read("[-a]\nName=1\n[Radio]\nName=3\n[- x]\nName=5\n[x - y]\nName=6\n");
    ASSERT_EQ(profiles.size(), 1u);
    EXPECT_EQ(profiles[0].Name, "5");
}

TEST(ReadProfiles, AFileWithoutSuchSectionsHasNoProfiles) {
    EXPECT_TRUE(Read("[Radio]\nName=3\n").empty());
    EXPECT_TRUE(Read("").empty());
}

TEST(ReadProfiles, AHundredThousandProfilesAreReadUpToTheLimitAndCountedAtOnce) {
    std::string content;
    for (int i = 0; i < 100'000; ++i) {
        content += "[- " + std::to_string(100'000 + i) + "]\nName=" + std::to_string(i) + "\n";
    }
    SimMachine machine;
    machine.Files.Put(Path, content);
    const std::clock_t begin = std::clock();
    const Profile file(machine.Files, Path);
    const auto profiles = ReadProfiles(file);
    const size_t unread = CountUnreadProfiles(file);
    // Far below a second with optimization. Each compared with each, it is half a minute.
    EXPECT_LT((std::clock() - begin) / CLOCKS_PER_SEC, 5);
    EXPECT_EQ(profiles.size(), 32767U / 9 + 1) << "the last name is cut where the list ends";
    EXPECT_EQ(profiles.size() + unread, 100'000U);
}

TEST(ReadProfiles, NoneIsLeftOutOfAnOrdinaryFile) {
    SimMachine machine;
    machine.Files.Put(Path, "[- a]\nName=1\n[b]\n");
    EXPECT_EQ(CountUnreadProfiles(Profile(machine.Files, Path)), 0U);
}

TEST(ReadProfiles, AMissingFileHasNoProfiles) {
    SimMachine machine;
    EXPECT_TRUE(ReadProfiles(Profile(machine.Files, Path)).empty());
}

TEST(ReadProfiles, ProfilesKeepTheOrderOfTheFile) {
    const auto profiles = Read("[- b]\nName=B\n[- a]\nName=A\n[- c]\nName=C\n");
    ASSERT_EQ(profiles.size(), 3u);
    EXPECT_EQ(profiles[0].Name + profiles[1].Name + profiles[2].Name, "BAC");
}

TEST(ReadProfiles, TheNameIsTheKeyAndNotTheSection) {
    EXPECT_EQ(Read("[- a]\n")[0].Name, "");
    EXPECT_EQ(Read("[- a]\nName=x;y\n")[0].Name, "x;y");
}

TEST(ReadProfiles, AMissingKeyLeavesItsFieldsEmpty) {
    ProviderProfile expected;
    expected.Name = "N";
    EXPECT_EQ(Read("[- a]\nName=N\n")[0], expected);
}

TEST(ReadProfiles, AWindowWithTwoPartsMakesAProfileOfWindows) {
    const auto profile = Read("[- a]\nWindow&Doc=Class*;Title*\n")[0];
    EXPECT_EQ(profile.WindowClass, "Class*");
    EXPECT_EQ(profile.WindowTitle, "Title*");
    EXPECT_TRUE(profile.ReadsWindow());
}

TEST(ReadProfiles, ValuesBeyondTheLastPartAreIgnored) {
    const auto profile = Read("[- a]\nWindow&Doc=1;2;3;4;5\nTitle=-1;e;p;x;y\n")[0];
    EXPECT_EQ(profile.DocUrl, "4");
    EXPECT_EQ(profile.Title, (MediaFieldRule{"-1", "e", "p"}));
}

TEST(ReadProfiles, ASemicolonCutsAPattern) {
    EXPECT_EQ(Read("[- a]\nTitle=-1;;(.*);x$\n")[0].Title, (MediaFieldRule{"-1", "", "(.*)"}));
}

TEST(ReadProfiles, AValueEndsWhereItsBufferEnds) {
    const auto profile = Read("[- a]\nName=" + std::string(40'000, 'n') + "\n")[0];
    EXPECT_EQ(profile.Name.size(), 32766u);
}

TEST(ReadProfiles, TheListOfSectionNamesEndsWhereItsBufferEnds) {
    std::string content;
    // 40 names of 999 characters need 40,000 characters: 32 of them fit, and a part of the next.
    for (int i = 0; i < 40; ++i) {
        content += "[- " + std::to_string(100 + i) + std::string(994, 'x') + "]\nName=N\n";
    }
    const auto profiles = Read(content);
    ASSERT_EQ(profiles.size(), 33u);
    EXPECT_EQ(profiles[31].Name, "N");
    EXPECT_EQ(profiles[32].Name, "");  // no section has the name that was cut
}

TEST(ReadProfiles, AFileThatIsNotUtf8IsReadAsAnsi) {
    EXPECT_EQ(Read("[- a]\nName=Radio K\xF6ln\n")[0].Name, "Radio Köln");
}

TEST(ProfilePath, TheUsersOwnFileComesBeforeTheOneBesideTheProgram) {
    SimMachine machine;
    EXPECT_EQ(ProfilePath(machine.Files, "/home/user/Corvet.ini", "/opt/c"), "/opt/c/MSIE.ini");
    ASSERT_TRUE(machine.Files.Append("/home/user/MSIE.ini", ""));
    EXPECT_EQ(ProfilePath(machine.Files, "/home/user/Corvet.ini", "/opt/c"), "/home/user/MSIE.ini");
}

TEST(DevToolsPorts, PortsStandBetweenSemicolons) {
    EXPECT_EQ(DevToolsPorts("9222"), std::vector<uint16_t>{9222});
    EXPECT_EQ(DevToolsPorts("9222; 9333;9222"), (std::vector<uint16_t>{9222, 9333}));
}

TEST(DevToolsPorts, WhatIsNoPortIsPassedOver) {
    EXPECT_TRUE(DevToolsPorts("").empty());
    EXPECT_EQ(DevToolsPorts("x;0;-1;65536;65535;;"), std::vector<uint16_t>{65535});
}

TEST(DevToolsPorts, AListEndsAtSixteenPorts) {
    std::string list;
    for (int port = 1; port <= 40; ++port) list += std::to_string(port) + ";";
    EXPECT_EQ(DevToolsPorts(list).size(), 16u);
}

}  // namespace
}  // namespace Corvetape
