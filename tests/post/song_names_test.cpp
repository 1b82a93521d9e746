#include "post/transfer/song_names.h"

#include <gtest/gtest.h>

#include <string>

#include "core/text/placeholders.h"

namespace Corvetape {
namespace {

class SongNamesTest : public ::testing::Test {
 protected:
    SongNamesTest() {
        Options.MusicFolderTemplate = "%Genre%";
        Options.MusicFileTemplate = {"yymmddhhnnss", "%Artist% - %Title%"};
        Folders.Paths = {"/temp", "/music", "/log"};
        Folders.SongTempFolder = "/temp/Corvet";
        Media.SongMedia.StationName = "Pop";
        Media.SongMedia.Artist = "Artist";
        Media.SongMedia.Song = "Title";
        Media.SongMedia.Album = "Album";
        Media.SongMedia.TempFileName = "240131120000";
    }

    SongNames Names() { return NameSong(Media, Options, Folders, Mode); }

    MediaState Media;
    Settings Options;
    WorkingFolders Folders;
    EndOfSong Mode = EndOfSong::Silence;
};

TEST_F(SongNamesTest, ASongWithTitleIsNamedByTheTemplateInItsSubfolder) {
    const SongNames names = Names();
    EXPECT_TRUE(names.HasSongData);
    EXPECT_EQ(names.FinalName, "Artist - Title");
    EXPECT_EQ(names.SubFolder, "/Pop");
    EXPECT_EQ(names.SourceBase, "/temp/Corvet/Artist - Title");
    EXPECT_EQ(names.TargetBase, "/music/Pop/Artist - Title");
}

TEST_F(SongNamesTest, ASongWithoutTitleKeepsItsTimeStampAndHasNoSubfolder) {
    Media.SongMedia.Song.clear();
    const SongNames names = Names();
    EXPECT_FALSE(names.HasSongData);
    EXPECT_EQ(names.FinalName, "240131120000");
    EXPECT_EQ(names.SubFolder, "");
    EXPECT_EQ(names.SourceBase, "/temp/Corvet/240131120000");
    EXPECT_EQ(names.TargetBase, "/music/240131120000");
}

TEST_F(SongNamesTest, WithMediaDataSwitchedOffTheTimeStampStays) {
    Media.StationDataEnabled = false;
    EXPECT_EQ(Names().FinalName, "240131120000");
}

TEST_F(SongNamesTest, APieceOfFixedTimeKeepsItsTimeStamp) {
    Mode = EndOfSong::FixedTime;
    EXPECT_EQ(Names().FinalName, "240131120000");
    EXPECT_EQ(Names().SubFolder, "");
    Mode = EndOfSong::MediaData;
    EXPECT_EQ(Names().FinalName, "Artist - Title");
}

TEST_F(SongNamesTest, WithoutArtistTheNameBeginsWithTheHyphen) {
    Media.SongMedia.Artist.clear();
    EXPECT_EQ(Names().FinalName, "- Title");
}

TEST_F(SongNamesTest, WithoutStationThereIsNoSubfolder) {
    Media.SongMedia.StationName.clear();
    EXPECT_EQ(Names().SubFolder, "");
    EXPECT_EQ(Names().FinalName, "Artist - Title");
}

TEST_F(SongNamesTest, TheSubfolderCanBeSwitchedOff) {
    Options.UseMusicSubfolder = false;
    EXPECT_EQ(Names().TargetBase, "/music/Artist - Title");
}

TEST_F(SongNamesTest, AFolderTemplateThatYieldsNothingMakesNoSubfolder) {
    Options.MusicFolderTemplate = " ";
    EXPECT_EQ(Names().TargetBase, "/music/Artist - Title");
}

TEST_F(SongNamesTest, BackslashAndSlashOfTheFolderTemplateSeparateFolders) {
    Options.MusicFolderTemplate = "%Genre%\\%Artist%";
    EXPECT_EQ(Names().SubFolder, "/Pop/Artist");
    Options.MusicFolderTemplate = "%Genre%/%Artist%/";
    EXPECT_EQ(Names().SubFolder, "/Pop/Artist");
}

TEST_F(SongNamesTest, ASlashOfTheMediaDataSeparatesNothing) {
    Options.MusicFolderTemplate = "%Genre%/%Artist%";
    Media.SongMedia.Artist = "AC/DC";
    Media.SongMedia.Song = "Back?";
    EXPECT_EQ(Names().SubFolder, "/Pop/AC_DC");
    EXPECT_EQ(Names().FinalName, "AC_DC - Back_");
}

TEST_F(SongNamesTest, ABackslashOfTheMediaDataIsNoFolderInAFileName) {
    Media.SongMedia.Song = "a\\b";
    EXPECT_EQ(Names().FinalName, "Artist - a_b");
}

TEST_F(SongNamesTest, NoMediaDataLeadOutOfTheFolders) {
    for (const char* evil : {"..", "../../etc", "..\\..\\etc", "/etc", ".", "\\..\\.."}) {
        Options.MusicFolderTemplate = "%Genre%/%Artist%";
        Options.MusicFileTemplate[1] = "%Title%";
        Media.SongMedia.StationName = Media.SongMedia.Artist = Media.SongMedia.Song = evil;
        const SongNames names = Names();
        const std::string path = "/" + names.TargetBase.substr(1) + "/";
        EXPECT_EQ(path.find("/../"), std::string::npos) << path;
        EXPECT_EQ(path.find("/./"), std::string::npos) << path;
        EXPECT_EQ(names.FinalName.find('/'), std::string::npos) << path;
        EXPECT_TRUE(path.starts_with("/music/")) << path;
    }
}

TEST_F(SongNamesTest, ATemplateThatYieldsNothingGivesAnEmptyName) {
    Options.MusicFileTemplate[1] = "%Album%";
    Media.SongMedia.Album.clear();
    const SongNames names = Names();
    EXPECT_TRUE(names.HasSongData);
    EXPECT_EQ(names.FinalName, "");
    EXPECT_EQ(names.SourceBase + ".wav", "/temp/Corvet/.wav");
    EXPECT_EQ(names.TargetBase, "/music/Pop/");
}

TEST_F(SongNamesTest, APartOfASongHasItsNumberInTheName) {
    Media.SongMedia.FilePart = 2;
    EXPECT_EQ(Names().FinalName, "Artist - Title (2)");
    EXPECT_EQ(Names().WholeName, "Artist - Title");
    EXPECT_EQ(Names().TargetBase, "/music/Pop/Artist - Title (2)");
}

TEST_F(SongNamesTest, APartOfAnUnknownSongKeepsItsTimeStamp) {
    Media.SongMedia.Song.clear();
    Media.SongMedia.FilePart = 2;
    EXPECT_EQ(Names().FinalName, "240131120000");
}

TEST_F(SongNamesTest, ALongNameIsCutSoThatItsFileCanExist) {
    Media.SongMedia.Song = std::string(5000, 'x');
    Media.SongMedia.FilePart = 12;
    EXPECT_EQ(Names().FinalName.size(), SafePartBytes);
    EXPECT_TRUE(Names().FinalName.ends_with("x (12)"));
    Media.SongMedia.FilePart = 0;
    EXPECT_EQ(Names().FinalName.size(), SafePartBytes);
}

TEST(TagText, KeepsEverythingThatATagCanHold) {
    const std::string text = "\"it's\" $x `y` \n\t-- \xc3\xa9 \xf0\x9f\x98\x80 %1 \\r\\n";
    EXPECT_EQ(TagText(text), text);
    EXPECT_EQ(TagText(""), "");
}

TEST(TagText, BytesThatAreNoTextBecomeTheReplacementCharacter) {
    EXPECT_EQ(TagText("a\xff\xc3z\xc3"), "a\xEF\xBF\xBD\xEF\xBF\xBDz\xEF\xBF\xBD");
}

TEST(TagText, NulCharactersAreLeftOut) {
    EXPECT_EQ(TagText(std::string("a\0b", 3)), "ab");
}

TEST(TagText, ALongTextIsCutBetweenTwoCharacters) {
    EXPECT_EQ(TagText(std::string(3000, 'a')).size(), 2048U);
    std::string wide = "a";
    for (int32_t i = 0; i < 2000; ++i) wide += "\xc3\xa9";
    EXPECT_EQ(TagText(wide).size(), 2047U);
}

}  // namespace
}  // namespace Corvetape
