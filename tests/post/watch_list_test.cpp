#include "post/lists/watch_list.h"

#include <gtest/gtest.h>

#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

constexpr auto Include = WatchListKind::Include;
constexpr auto Exclude = WatchListKind::Exclude;

class WatchListsTest : public testing::Test {
 protected:
    WatchListsTest() {
        Machine.Files.MakeFolder("/home/user/log");
        Folders.Paths[2] = "/home/user/log";
    }

    std::string FileText(WatchListKind kind) {
        return Machine.Files.ReadAll(Lists.FileOf(kind), 1 << 20).value_or("(none)");
    }

    SimMachine Machine;
    WorkingFolders Folders;
    WatchLists Lists{Machine.Files, Folders};
};

TEST_F(WatchListsTest, AMissingFileIsNoErrorAndLeavesTheListAsItWas) {
    ASSERT_TRUE(Lists.Add(Exclude, "One"));
    EXPECT_FALSE(Lists.LoadWatchList(Exclude));
    EXPECT_TRUE(Lists.List(Exclude).Holds("one"));
}

TEST_F(WatchListsTest, EachAddedEntryIsSavedAtOnceInItsOrder) {
    EXPECT_TRUE(Lists.AddToWatchList(Exclude, "  Zebra "));
    EXPECT_TRUE(Lists.AddToWatchList(Exclude, "Ape"));
    EXPECT_EQ(FileText(Exclude), "Zebra\r\nApe\r\n");
    EXPECT_EQ(FileText(Include), "(none)");
}

TEST_F(WatchListsTest, AnEntryThatDiffersInCaseOnlyIsDroppedInSilence) {
    EXPECT_TRUE(Lists.AddToWatchList(Include, "Ann - One"));
    EXPECT_FALSE(Lists.AddToWatchList(Include, "ANN - ONE"));
    EXPECT_EQ(FileText(Include), "Ann - One\r\n");
}

TEST_F(WatchListsTest, AnEmptyEntryIsNone) {
    EXPECT_FALSE(Lists.AddToWatchList(Include, "   "));
    EXPECT_EQ(FileText(Include), "(none)");
}

TEST_F(WatchListsTest, AnEntryStaysOneLine) {
    EXPECT_TRUE(Lists.AddToWatchList(Exclude, "One\r\n*"));
    EXPECT_EQ(FileText(Exclude), "One  *\r\n");
}

TEST_F(WatchListsTest, ALineEndAtTheEndOfAnEntryIsABlankThere) {
    EXPECT_TRUE(Lists.AddToWatchList(Exclude, "\none\r\n"));
    EXPECT_EQ(FileText(Exclude), "one\r\n");
    EXPECT_FALSE(Lists.AddToWatchList(Exclude, "\r\n"));
}

TEST_F(WatchListsTest, AFileIsReadLineByLineWithoutItsDoubles) {
    ASSERT_TRUE(Machine.Files.Append(Lists.FileOf(Exclude), "One\r\none\nTwo \n\n#3\r\nlast"));
    ASSERT_TRUE(Lists.LoadWatchList(Exclude));
    EXPECT_EQ(Lists.List(Exclude).Entries(), (std::vector<std::string>{"One", "Two ", "#3", "last"}));
}

TEST_F(WatchListsTest, TheMarkOfAnEditorAtTheBeginningOfAFileIsNoPartOfAnEntry) {
    ASSERT_TRUE(Machine.Files.Append(Lists.FileOf(Include), "\xEF\xBB\xBFOne\r\nTwo\r\n"));
    ASSERT_TRUE(Lists.LoadWatchList(Include));
    EXPECT_EQ(Lists.List(Include).Entries(), (std::vector<std::string>{"One", "Two"}));
}

TEST_F(WatchListsTest, AFirstEntryThatBeginsWithThatMarkKeepsItInItsFile) {
    ASSERT_TRUE(Lists.AddToWatchList(Include, "\xEF\xBB\xBFOne"));
    ASSERT_TRUE(Lists.LoadWatchList(Include));
    EXPECT_EQ(Lists.List(Include).Entries(), (std::vector<std::string>{"\xEF\xBB\xBFOne"}));
}

TEST_F(WatchListsTest, ReadingReplacesTheWholeListOfItsIndexOnly) {
    Lists.Add(Include, "Kept");
    Lists.Add(Exclude, "Gone");
    Lists.Add(Exclude, "Gone too*");
    ASSERT_TRUE(Machine.Files.Append(Lists.FileOf(Exclude), "One\r\n"));
    ASSERT_TRUE(Lists.LoadWatchList(Exclude));
    EXPECT_FALSE(Lists.IsSongExcluded("Gone"));
    EXPECT_FALSE(Lists.IsSongExcluded("Gone too"));
    EXPECT_TRUE(Lists.IsSongExcluded("One"));
    EXPECT_TRUE(Lists.List(Include).Holds("Kept"));
}

TEST_F(WatchListsTest, TheFilesAreCalledIncludeAndExclude) {
    EXPECT_EQ(Lists.FileOf(Include), "/home/user/log/Include.txt");
    EXPECT_EQ(Lists.FileOf(Exclude), "/home/user/log/Exclude.txt");
}

TEST_F(WatchListsTest, APatternOnTheFirstListKeepsASongOfTheSecond) {
    Lists.Add(Exclude, "Ann - *");
    Lists.Add(Include, "*[(]live)");
    EXPECT_TRUE(Lists.IsSongExcluded("Ann - One"));
    EXPECT_FALSE(Lists.IsSongExcluded("Ann - One (Live)"));
    EXPECT_FALSE(Lists.IsSongExcluded("Bob - One"));
}

TEST_F(WatchListsTest, BlanksAndAccentsInsideANameCount) {
    Lists.Add(Exclude, "Caf\xC3\xA9");
    EXPECT_FALSE(Lists.IsSongExcluded("Cafe"));
    EXPECT_FALSE(Lists.IsSongExcluded(" Caf\xC3\xA9"));
    EXPECT_TRUE(Lists.IsSongExcluded("CAF\xC3\x89"));
}

TEST_F(WatchListsTest, AListThatCannotBeWrittenHoldsInMemory) {
    Folders.Paths[2] = "/home/user/nowhere";
    EXPECT_TRUE(Lists.AddToWatchList(Exclude, "One"));
    EXPECT_FALSE(Lists.SaveWatchList(Exclude));
    EXPECT_TRUE(Lists.IsSongExcluded("one"));
}

TEST_F(WatchListsTest, ASongOnBothListsIsKept) {
    Lists.Add(Exclude, "Ann - *");
    EXPECT_TRUE(Lists.IsSongExcluded("Ann - One"));
    Lists.Add(Include, "ann - one");
    EXPECT_FALSE(Lists.IsSongExcluded("Ann - One"));
    EXPECT_TRUE(Lists.IsSongExcluded("Ann - Two"));
}

TEST_F(WatchListsTest, AnEntryBetweenStarsExcludesEverySongThatHoldsItInAnyCase) {
    Lists.Add(Exclude, "*polka*");
    EXPECT_TRUE(Lists.IsSongExcluded("Big Band - POLKA Night"));
    EXPECT_FALSE(Lists.IsSongExcluded("Big Band - Waltz"));
}

TEST_F(WatchListsTest, AnEntryWithoutWildcardsExcludesTheExactNameOnly) {
    Lists.Add(Exclude, "Ann - One");
    EXPECT_TRUE(Lists.IsSongExcluded("ann - one"));
    EXPECT_FALSE(Lists.IsSongExcluded("Ann - One (live)"));
}

TEST_F(WatchListsTest, ANameWithSignsOfAPatternIsAPatternToo) {
    Lists.Add(Exclude, "Ann - No. #1");
    EXPECT_FALSE(Lists.IsSongExcluded("Ann - No. #1"));
    EXPECT_TRUE(Lists.IsSongExcluded("Ann - No. 51"));
    Lists.Add(Exclude, "Bob - No. [#]1 [[]live]");
    EXPECT_TRUE(Lists.IsSongExcluded("Bob - No. #1 [live]"));
}

TEST_F(WatchListsTest, ARemovedEntryIsGoneAndCanBeAddedAgain) {
    Lists.Add(Exclude, "Ann*");
    Lists.Add(Exclude, "Bob");
    Lists.Add(Exclude, "Cleo");
    EXPECT_EQ(Lists.RemoveAll(Exclude, std::vector<std::string>{"ANN*", "bob", "bob", "nobody"}), 2U);
    EXPECT_EQ(Lists.List(Exclude).Entries(), std::vector<std::string>{"Cleo"});
    EXPECT_FALSE(Lists.IsSongExcluded("Ann"));
    EXPECT_FALSE(Lists.IsSongExcluded("Bob"));
    EXPECT_TRUE(Lists.Add(Exclude, "Bob"));
}

TEST(WatchedName, HasArtistTitleAndAlbumAsAFileName) {
    STATIONANDSONGDATA media;
    media.StationName = "FM";
    media.Artist = "AC/DC";
    media.Song = "Back?";
    media.Album = "B";
    EXPECT_EQ(WatchedName("%artist% - %TITLE% (%Album%) %Station%", media), "AC_DC - Back_ (B) %Station%");
    media.Artist.clear();
    EXPECT_EQ(WatchedName("%Artist% - %Title%", media), "- Back_");
}

TEST(WatchedName, DoesNotGrowWithValuesThatHoldPlaceholders) {
    const auto repeated = [](std::string_view text, size_t count) {
        std::string result;
        for (size_t i = 0; i < count; ++i) result += text;
        return result;
    };
    STATIONANDSONGDATA media;
    media.Artist = repeated("%Title%", 10'000);
    media.Song = repeated("%Album%", 10'000);
    media.Album = std::string(100'000, 'x');
    // 10,000,000,000,000 bytes if it were taken at its word.
    EXPECT_EQ(WatchedName("%Artist%", media), std::string(240, 'x'));
}

TEST(NameOfDroppedFile, IsTheNameOfAMusicFileInAFolder) {
    EXPECT_EQ(NameOfDroppedFile("/music/Pop/Ann - One.mp3"), "Ann - One");
    EXPECT_EQ(NameOfDroppedFile("C:\\music\\ Ann .WMA"), "Ann");
    EXPECT_EQ(NameOfDroppedFile("/music/a.b.ogg"), "a.b");
    EXPECT_EQ(NameOfDroppedFile("/music/a.wav"), "a");
    EXPECT_EQ(NameOfDroppedFile("/music/a.flac"), "");
    EXPECT_EQ(NameOfDroppedFile("/music/mp3"), "");
    EXPECT_EQ(NameOfDroppedFile("a.mp3"), "");
    EXPECT_EQ(NameOfDroppedFile("/a.mp3"), "");
    EXPECT_EQ(NameOfDroppedFile("/music/two\nlines.mp3"), "");  // an entry is one line of its file
}

TEST(NameOfDroppedFile, IsNoneIfItWouldBeTwoLinesOfTheList) {
    EXPECT_EQ(NameOfDroppedFile("/music/One\nTwo.mp3"), "");
    EXPECT_EQ(NameOfDroppedFile("/music/One\rTwo.mp3"), "");
    EXPECT_EQ(NameOfDroppedFile("/mu\nsic/One.mp3"), "One");
}

TEST(WatchedName, OfAnEntryMadeWithTheSameTemplateMatchesWithoutAnArtistToo) {
    STATIONANDSONGDATA media;
    media.Song = "One";
    WatchList list;
    list.Add(WatchedName("%Artist% - %Title%", media));
    EXPECT_TRUE(list.Holds(WatchedName("%ARTIST% - %title%", media)));
}

}  // namespace
}  // namespace Corvetape
