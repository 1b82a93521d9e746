// Folders that are changed while the program runs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/desktop_notes.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

/// Short songs that are handed over at once, on a machine with a second folder for each kind of files.
WorldOptions ShortSongs() {
    WorldOptions options = Starting("", {{ProviderOfRadio, "LengthOfPause", "500"},
                                         {ProviderOfRadio, "IgnoreShortSongs", "2"},
                                         {"DoNotChange", "EncodeDelay", "0"}});
    options.Radio = NumberedRadio({10, 10, 10, 10});
    options.Connect = [](World& world, Machine&, RunOptions&) {
        world.Disk().MakeFolders("/home/user/big");
        world.Disk().MakeFolders("/home/user/tunes");
    };
    return options;
}

/// Chooses another folder on the page of the options.
void Choose(World& world, size_t index, const std::string& folder) {
    world.Computer.Dialogs.FolderAnswers = {folder};
    world.Form().cmdGetDir[index].Press();
}

TEST(ChangedFolder, ForTemporaryFilesTakesSongsFromTheNextStartOn) {
    World world(ShortSongs());
    ASSERT_TRUE(world.StartRecording());
    Choose(world, 0, "/home/user/big");
    EXPECT_THAT(world.Boxes().back(), HasSubstr("when Corvetape is started the next time"));
    world.RunFor(18 - world.Now());
    ASSERT_THAT(world.Transferred, SizeIs(1));
    EXPECT_EQ(world.Transferred[0].TempFile, std::string(SongTempFolder) + "/Band 1 - Song 1.wav");
    EXPECT_EQ(world.Values().Folders.SongTempFolder, SongTempFolder);
    world.Finish();

    world.Made();
    ASSERT_TRUE(world.StartRecording());
    EXPECT_EQ(world.Values().Folders.SongTempFolder, "/home/user/big/Corvet");
    world.RunFor(25);
    ASSERT_GE(world.Transferred.size(), 2U);
    EXPECT_THAT(world.Transferred.back().TempFile, testing::StartsWith("/home/user/big/Corvet/"));
}

TEST(ChangedFolder, ForTemporaryFilesLeavesThatOfTheStartToBeDeleted) {
    WorldOptions options = ShortSongs();
    options.Settings.push_back({"Options", "DelTempFolder", "1"});
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.Disk().Put("/home/user/big/Corvet/of somebody.wav", "samples");
    Choose(world, 0, "/home/user/big");
    world.RunFor(18 - world.Now());
    world.Finish();
    EXPECT_FALSE(world.Disk().Exists(SongTempFolder));
    EXPECT_TRUE(world.Disk().Exists("/home/user/big/Corvet/of somebody.wav"));
}

TEST(ChangedFolder, ForMusicTakesTheNextSong) {
    World world(ShortSongs());
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(18 - world.Now());
    Choose(world, 1, "/home/user/tunes");
    world.RunFor(30 - world.Now());
    ASSERT_THAT(world.Transferred, SizeIs(2));
    EXPECT_THAT(world.Transferred[0].MusicFile, testing::StartsWith(MusicFolder));
    EXPECT_THAT(world.Transferred[1].MusicFile, testing::StartsWith("/home/user/tunes/"));
}

}  // namespace
}  // namespace Corvetape::Test
