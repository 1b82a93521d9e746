#include "recording/song_notices.h"

#include <gtest/gtest.h>

#include "sim/sim_machine.h"

namespace Corvetape {
namespace {

class NotedNotices : public Notices {
 public:
    void Notify(const Notice& notice) override { All.push_back(notice); }
    std::vector<Notice> All;
};

class SongNoticesTest : public testing::Test {
 protected:
    SongNoticesTest() {
        Computer.Files.Put("/opt/corvetape/english.lang", "61710=kept\n61711=not made\n");
        Texts.Load("english");
        Options.NotifySongs = true;
        Song.MusicFile = "/home/user/Music/Radio/20261122 1200.mp3";
        Song.TempFile = "/home/user/.cache/Corvet/a.wav";
        Song.Media.Artist = "Marrow & Mint";
        Song.Media.Song = "<b>Little</b> Umbrellas";
    }

    SimMachine Computer;
    clsLocalizeControls Texts{Computer.Files, "/opt/corvetape", Computer.Dialogs};
    Settings Options;
    NotedNotices Desktop;
    SongNotices Notifier{Options, Texts, Desktop};
    TransferredSong Song;
};

TEST_F(SongNoticesTest, AreOffByDefault) {
    EXPECT_FALSE(Settings().NotifySongs);
    Options.NotifySongs = Settings().NotifySongs;
    Notifier.SongTransferred(Song);
    EXPECT_TRUE(Desktop.All.empty());
}

TEST_F(SongNoticesTest, OneForEachSongWithItsNameAsTheTitle) {
    Notifier.SongTransferred(Song);
    ASSERT_EQ(Desktop.All.size(), 1U);
    EXPECT_EQ(Desktop.All[0], (Notice{"Marrow & Mint - <b>Little</b> Umbrellas", "kept"}));
    Song.Media.Artist.clear();
    Notifier.SongTransferred(Song);
    EXPECT_EQ(Desktop.All[1].Title, "<b>Little</b> Umbrellas");
}

TEST_F(SongNoticesTest, ASongWithoutANameIsCalledLikeItsFile) {
    Song.Media = {};
    Notifier.SongTransferred(Song);
    EXPECT_EQ(Desktop.All.at(0).Title, "20261122 1200");
    Song.MusicFile.clear();
    Notifier.SongTransferred(Song);
    EXPECT_EQ(Desktop.All.at(1).Title, "a");
}

TEST_F(SongNoticesTest, SayWhenNoMusicFileCouldBeMade) {
    Song.Problem = "no encoder";
    Notifier.SongTransferred(Song);
    EXPECT_EQ(Desktop.All.at(0).Text, "not made");
}

}  // namespace
}  // namespace Corvetape
