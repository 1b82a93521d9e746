#include "core/text/placeholders.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>

#include "core/fakes.h"
#include "core/media_state.h"
#include "core/settings/registry.h"

namespace Corvetape {
namespace {

using namespace std::string_view_literals;

class PlaceholdersTest : public testing::Test {
 protected:
    std::string Expand(std::string_view text) { return Expansion.ExpandPlaceholders(text); }
    void Environment(const char* name, const char* value) {
        Registry.WriteRegistryValue(RegistryRoot::CurrentUser, "Environment", name, std::string(value));
    }

    MemoryFiles Disk;
    StandingClock Time{{2009, 12, 31, 14, 5, 9, 0}};
    TableFolders Places;
    RegistryBranches Registry{Disk, "/user.reg", "/machine.reg"};
    Placeholders Expansion{Time, Places, Registry};
};

TEST_F(PlaceholdersTest, EveryPlaceholderHasItsExpansion) {
    EXPECT_EQ(Expand("%Temp%"), "/tmp/eva");
    EXPECT_EQ(Expand("%Tmp%"), "/tmp/tmp");
    EXPECT_EQ(Expand("%AppData%"), "/home/eva/.config");
    EXPECT_EQ(Expand("%MyDocuments%"), "/home/eva/Documents");
    EXPECT_EQ(Expand("%MyMusic%"), "/home/eva/Music");
    EXPECT_EQ(Expand("%MyPictures%"), "/home/eva/Pictures");
    EXPECT_EQ(Expand("%MyVideo%"), "/home/eva/Videos");
    EXPECT_EQ(Expand("%AppDir%"), "/opt/corvetape");
    EXPECT_EQ(Expand("%Now%"), "2009-12-31 14:05:09");
    EXPECT_EQ(Expand("%Date%"), "2009-12-31");
    EXPECT_EQ(Expand("%Day%"), "31");
    EXPECT_EQ(Expand("%Month%"), "12");
    EXPECT_EQ(Expand("%Year%"), "2009");
    EXPECT_EQ(Expand("%Year2%"), "09");
    EXPECT_EQ(Expand("%Time%"), "14:05:09");
    EXPECT_EQ(Expand("%Hour%"), "14");
    EXPECT_EQ(Expand("%Sec%"), "09");
    EXPECT_EQ(Expand("%UserProfileName%"), "eva");
    EXPECT_EQ(Expand("a%LF%b"), "a\r\nb");
}

TEST_F(PlaceholdersTest, TheMinuteIsAlwaysTwelve) {
    Time.Now = {2009, 3, 4, 5, 6, 7, 0};
    EXPECT_EQ(Expand("%Min%"), "12");
    EXPECT_EQ(Expand("%Month%"), "03");
}

TEST_F(PlaceholdersTest, TheCaseOfANameDoesNotCount) {
    EXPECT_EQ(Expand("%temp%\\%year%"), "/tmp/eva\\2009");
    EXPECT_EQ(Expand("%TEMP%"), "/tmp/eva");
    EXPECT_EQ(Expand("%MYMUSIC%"), "/home/eva/Music");
}

TEST_F(PlaceholdersTest, BlanksAtBothEndsAreTrimmed) {
    EXPECT_EQ(Expand("  /a b  "), "/a b");
}

TEST_F(PlaceholdersTest, TempComesFromTheRegistryBeforeTheEnvironment) {
    Environment("Temp", "/big/temp");
    EXPECT_EQ(Expand("%Temp% %Tmp%"), "/big/temp /tmp/tmp");
    Environment("TMP", "/big/tmp");
    EXPECT_EQ(Expand("%Temp% %Tmp%"), "/big/temp /big/tmp");
}

TEST_F(PlaceholdersTest, ATempFromTheRegistryMayHoldEnvironmentVariables) {
    Environment("Temp", "%UserProfile%/tmp");
    EXPECT_EQ(Expand("%Temp%/x"), "/home/eva/tmp/x");
}

TEST_F(PlaceholdersTest, AnExpansionIsPickedUpByALaterStep) {
    Environment("Temp", "/x/%Year%%LF%");
    EXPECT_EQ(Expand("%Temp%"), "/x/2009\r\n");
}

TEST_F(PlaceholdersTest, AnExpansionIsNotPickedUpByAnEarlierStep) {
    Places.Paths[ShellFolder::MyMusic] = "/m/%Temp%x%Tmp%";
    Environment("Temp", "/big");
    Places.Variables.erase("Temp");
    EXPECT_EQ(Expand("%MyMusic%"), "/m/%Temp%x/tmp/tmp");
}

TEST_F(PlaceholdersTest, EnvironmentVariablesAreExpanded) {
    EXPECT_EQ(Expand("%Path%:/x"), "/usr/bin:/bin:/x");
}

TEST_F(PlaceholdersTest, TheValueOfAVariableIsNotExpandedAgain) {
    Places.Variables["A"] = "%PATH%";
    EXPECT_EQ(Expand("%A%"), "%PATH%");
}

TEST_F(PlaceholdersTest, AnUnknownNameStays) {
    EXPECT_EQ(Expand("/m/%Foo%/x"), "/m/%Foo%/x");
    EXPECT_EQ(Expand("100%"), "100%");
    EXPECT_EQ(Expand("%%"), "%%");
}

TEST_F(PlaceholdersTest, TheSecondPercentSignOfAnUnknownNameMayBeginAnotherOne) {
    EXPECT_EQ(Expand("%no such%PATH%"), "%no such/usr/bin:/bin");
    EXPECT_EQ(Expand("50% of %PATH%"), "50% of /usr/bin:/bin");
}

TEST_F(PlaceholdersTest, AFolderThatDoesNotExistLeavesItsPlaceholder) {
    Places.Paths.erase(ShellFolder::MyMusic);
    EXPECT_EQ(Expand("%MyMusic%/x"), "%MyMusic%/x");
}

TEST_F(PlaceholdersTest, DoubledBackslashesCollapseFromTheSecondCharacterOn) {
    Places.Paths[ShellFolder::MyMusic] = "\\Music";
    EXPECT_EQ(Expand("\\\\server\\share\\%MyMusic%"), "\\\\server\\share\\Music");
    EXPECT_EQ(Expand("a\\\\b"), "a\\b");
    EXPECT_EQ(Expand("a\\\\\\\\b"), "a\\\\b");
    EXPECT_EQ(Expand("\\\\\\x"), "\\\\x");
    EXPECT_EQ(Expand("http://radio//x"), "http://radio//x");
    EXPECT_EQ(Expand(""), "");
}

TEST_F(PlaceholdersTest, ATextBeyondTheBufferIsNotExpanded) {
    const std::string fits = std::string(32766 - 6, 'x') + "%PATH%";
    EXPECT_EQ(Expand(fits).size(), size_t{32766});
    EXPECT_EQ(Expand(std::string(32766 - 20, 'x') + "%PATH%"),
              std::string(32766 - 20, 'x') + "/usr/bin:/bin");
    const std::string tooLong = std::string(32767 - 6, 'x') + "%PATH%";
    EXPECT_EQ(Expand(tooLong), tooLong);
}

TEST_F(PlaceholdersTest, ATextEndsAtANul) {
    EXPECT_EQ(Expand("/a\0/b"sv), "/a");
}

class MediaDataTest : public testing::Test {
 protected:
    MediaDataTest() {
        Media.SongMedia.Artist = "Anna";
        Media.SongMedia.Song = "Blue";
        Media.SongMedia.Album = "Colours";
        Media.SongMedia.StationName = "Pop";
        Media.ProviderName = "Demo";
    }
    std::string Expand(std::string_view text) { return ExpandMediaData(text, Media); }
    MediaState Media;
};

TEST_F(MediaDataTest, EveryPlaceholderHasItsField) {
    EXPECT_EQ(Expand("%Artist%|%Title%|%Album%|%Station%|%Genre%|%Source%"),
              "Anna|Blue|Colours|Pop|Pop|Demo");
}

TEST_F(MediaDataTest, TheSongInTheFileCountsAndNotTheOneThatPlays) {
    Media.CurrentMedia.Artist = "Zoe";
    EXPECT_EQ(Expand("%artist%"), "Anna");
}

TEST_F(MediaDataTest, AnEmptyFieldLeavesItsSeparator) {
    Media.SongMedia.Artist.clear();
    EXPECT_EQ(Expand("%Artist% - %Title%"), " - Blue");
    EXPECT_EQ(SanitizeFolderName(Expand("%Artist% - %Title%")), "- Blue");
}

TEST_F(MediaDataTest, ATitleWithALaterPlaceholderIsExpandedFurther) {
    Media.SongMedia.Song = "My %Album%, not %Artist%";
    EXPECT_EQ(Expand("%Artist% - %Title%"), "Anna - My Colours, not %Artist%");
}

TEST_F(MediaDataTest, OtherPlaceholdersStay) {
    EXPECT_EQ(Expand("%Date% %Foo% %Title"), "%Date% %Foo% %Title");
}

TEST_F(MediaDataTest, ATemplateOfNothingButAnEmptyFieldIsEmpty) {
    Media.SongMedia.Album.clear();
    EXPECT_EQ(SanitizeFileName(Expand("%Album%")), "");
}

TEST(FormatWith, ReplacesEachNumberByItsEntry) {
    EXPECT_EQ(FormatWith("%2 and %1, %2", std::vector<std::string>{"a", "b"}), "b and a, b");
}

TEST(FormatWith, AnEntryMayHoldTheNumberOfALaterOne) {
    EXPECT_EQ(FormatWith("%1", std::vector<std::string>{"<%2>", "b"}), "<b>");
    EXPECT_EQ(FormatWith("%2", std::vector<std::string>{"a", "<%1>"}), "<%1>");
}

TEST(FormatWith, TheFirstEntryHitsTheNumberTen) {
    EXPECT_EQ(FormatWith("%10", std::vector<std::string>{"a"}), "a0");
}

TEST(FormatWith, NothingElseIsTouched) {
    EXPECT_EQ(FormatWith("100% %x %3 %%", std::vector<std::string>{"a"}), "100% %x %3 %%");
    EXPECT_EQ(FormatWith("%1", {}), "%1");
}

TEST(SanitizeFolderName, ReplacesTheEightCharactersAndTrims) {
    EXPECT_EQ(SanitizeFolderName("  a/b:c*d?e\"f<g>h|i  "), "a_b_c_d_e_f_g_h_i");
}

TEST(SanitizeFolderName, KeepsTheBackslash) {
    EXPECT_EQ(SanitizeFolderName("Pop\\A/B"), "Pop\\A_B");
}

TEST(SanitizeFolderName, LeavesLengthDotsAndDeviceNames) {
    EXPECT_EQ(SanitizeFolderName("CON..."), "CON...");
    EXPECT_EQ(SanitizeFolderName(std::string(400, 'x')).size(), size_t{400});
}

TEST(SanitizeFileName, ReplacesTheBackslashToo) {
    EXPECT_EQ(SanitizeFileName("Pop\\A/B"), "Pop_A_B");
    EXPECT_EQ(SanitizeFileName("AC/DC: Back?"), "AC_DC_ Back_");
}

struct PathRow {
    const char* Path;
    std::array<const char*, 7> Pieces;  // in the order of PathPiece
};

void PrintTo(const PathRow& row, std::ostream* out) {
    *out << row.Path;
}

class PathPartTable : public testing::TestWithParam<PathRow> {};

TEST_P(PathPartTable, GivesEachPiece) {
    for (int32_t i = 1; i <= 7; ++i) {
        EXPECT_EQ(PathPart(GetParam().Path, PathPiece{i}), GetParam().Pieces[static_cast<size_t>(i - 1)])
            << GetParam().Path << " piece " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Paths, PathPartTable,
    testing::Values(PathRow{"C:\\a\\b\\song.1.mp3",
                            {"song.1", "mp3", "song.1.mp3", "a\\b", "b", "C:\\a\\b", "C:\\"}},
                    PathRow{"C:\\song", {"song", "", "song", "", "", "C:", "C:\\"}},
                    PathRow{"C:\\a\\", {"", "", "", "a", "a", "C:\\a", "C:\\"}},
                    PathRow{"C:\\a.b\\song", {"song", "", "song", "a.b", "a.b", "C:\\a.b", "C:\\"}},
                    PathRow{"\\\\server\\share\\x.y",
                            {"x", "y", "x.y", "\\server\\share", "share", "\\\\server\\share", ""}},
                    PathRow{"/home/eva/x.wav", {"x", "wav", "x.wav", "/home/eva", "eva", "/home/eva", ""}},
                    PathRow{"/home/eva", {"eva", "", "eva", "/home", "home", "/home", ""}},
                    PathRow{"/a/b/x", {"x", "", "x", "a/b", "b", "/a/b", ""}},
                    PathRow{"/.x", {"", "x", ".x", "", "", "", ""}},
                    PathRow{"/home/a: b/x", {"x", "", "x", "ome/a: b", "a: b", "/home/a: b", "/ho"}},
                    PathRow{"song.mp3", {"", "", "", "", "", "", ""}},
                    PathRow{"", {"", "", "", "", "", "", ""}}));

TEST(PathPart, OtherPiecesAreEmpty) {
    for (const int32_t other : {-1, 0, 8, 100}) EXPECT_EQ(PathPart("C:\\a\\b.c", PathPiece{other}), "");
}

TEST(NormalizePath, BackslashesBecomeSlashesAndNoneIsDoubledOrAtTheEnd) {
    EXPECT_EQ(NormalizePath("/home/eva/.config\\Corvet"), "/home/eva/.config/Corvet");
    EXPECT_EQ(NormalizePath("/a//b/\\c/"), "/a/b/c");
    EXPECT_EQ(NormalizePath("/"), "/");
    EXPECT_EQ(NormalizePath(""), "");
}

TEST(SafePathPart, AnOrdinaryNameStays) {
    EXPECT_EQ(SafePathPart("Anna - Blue \xC3\xA4\xE2\x82\xAC.1"), "Anna - Blue \xC3\xA4\xE2\x82\xAC.1");
}

TEST(SafePathPart, NeverLeadsOutOfItsFolder) {
    EXPECT_EQ(SafePathPart("."), "_");
    EXPECT_EQ(SafePathPart(".."), "_");
    EXPECT_EQ(SafePathPart(" .. "), "_");
    EXPECT_EQ(SafePathPart(""), "_");
    EXPECT_EQ(SafePathPart("   "), "_");
    EXPECT_EQ(SafePathPart("../../etc/passwd"), ".._.._etc_passwd");
    EXPECT_EQ(SafePathPart("..\\x"), ".._x");
    EXPECT_EQ(SafePathPart("/"), "_");
    EXPECT_EQ(SafePathPart("..."), "...");
}

TEST(SafePathPart, ControlCharactersAndBytesThatAreNoTextAreReplaced) {
    EXPECT_EQ(SafePathPart("a\nb\rc\td\0e\x7F"sv), "a_b_c_d_e_");
    EXPECT_EQ(SafePathPart("a\xC2\x85z"), "a_z");
    EXPECT_EQ(SafePathPart("a\xFFz\xC3"), "a_z_");
    EXPECT_EQ(SafePathPart("\xED\xA0\x80"), "___");
    EXPECT_EQ(SafePathPart("\xC0\xAF"), "__");
}

TEST(SafePathPart, IsCutBetweenTwoCharactersWithRoomForAnExtension) {
    EXPECT_EQ(SafePathPart(std::string(300, 'x')), std::string(240, 'x'));
    std::string umlauts = "x";
    for (int i = 0; i < 200; ++i) umlauts += "\xC3\xA4";
    const std::string cut = SafePathPart(umlauts);
    EXPECT_EQ(cut.size(), size_t{239});
    EXPECT_EQ(cut, umlauts.substr(0, 239));
    EXPECT_EQ(SafePathPart("abc def", 4), "abc");
    EXPECT_EQ(SafePathPart("..abc", 2), "_");
}

TEST(SafeRelativeFolder, BothSeparatorsDivideAndEmptyPartsFallAway) {
    EXPECT_EQ(SafeRelativeFolder("Pop\\A/B"), "Pop/A/B");
    EXPECT_EQ(SafeRelativeFolder("\\\\Pop\\ \\\\A//"), "Pop/A");
    EXPECT_EQ(SafeRelativeFolder("/etc"), "etc");
    EXPECT_EQ(SafeRelativeFolder(""), "");
    EXPECT_EQ(SafeRelativeFolder("\\"), "");
}

TEST(SafeRelativeFolder, NoPartLeadsUpwards) {
    EXPECT_EQ(SafeRelativeFolder("..\\../. /a"), "_/_/_/a");
    EXPECT_EQ(SafeRelativeFolder("C:\\x"), "C_/x");
}

TEST(ExpandMediaDataOfStrangers, StaysBoundedWhenTextsHoldPlaceholders) {
    MediaState media;
    const auto many = [](const std::string& piece) {
        std::string text;
        for (int i = 0; i < 2000; ++i) text += piece;
        return text;
    };
    media.SongMedia.Artist = many("%Title%");
    media.SongMedia.Song = many("%Album%");
    media.SongMedia.Album = many("%Station%");
    media.SongMedia.StationName = many("x");
    EXPECT_EQ(ExpandMediaData("%Artist%", media).size(), 65'536u);
}

}  // namespace
}  // namespace Corvetape
