#include "recording/run_songs.h"

#include <gtest/gtest.h>

namespace Corvetape::Test {
namespace {

ClosedSong Song(SongFate fate, const std::string& name) {
    ClosedSong song;
    song.Fate = fate;
    song.Frames = 44100 * 60;
    song.Whole = true;
    song.Media.TempFileName = name;
    return song;
}

TransferredSong HandedOn(const std::string& name, const std::string& job) {
    TransferredSong song;
    song.Media.TempFileName = name;
    song.JobName = job;
    song.MusicFile = job.empty() ? "" : "/music/" + name + ".mp3";
    return song;
}

TEST(RunSongs, ASongOnTheListOfThoseToDropSaysSo) {
    RunSongs songs;
    ClosedSong listed = Song(SongFate::Unwanted, "a");
    listed.Media.Artist = "Ann";
    listed.Media.Song = "One";
    ClosedSong other = listed;
    other.Media.Song = "Two";
    songs.SongClosed(listed);
    EXPECT_FALSE(songs.Songs()[0].OnList);
    songs.SongExcluded(listed.Media);
    songs.SongClosed(other);
    EXPECT_FALSE(songs.Songs()[0].OnList) << "the one before it is closed late";
    songs.SongClosed(listed);
    EXPECT_TRUE(songs.Songs()[0].OnList);
    listed.Fate = SongFate::Kept;
    songs.SongClosed(listed);
    EXPECT_FALSE(songs.Songs()[0].OnList) << "somebody wanted it all the same";
}

TEST(RunSongs, AreListedNewestFirstWithTheirSums) {
    RunSongs songs;
    songs.SongClosed(Song(SongFate::Kept, "a"));
    songs.SongClosed(Song(SongFate::Short, "b"));
    ASSERT_EQ(songs.Songs().size(), 2U);
    EXPECT_EQ(songs.Songs()[0].Fate, SongFate::Short);
    EXPECT_EQ(songs.Songs()[0].Progress, SongProgress::None);
    EXPECT_EQ(songs.Songs()[1].Health, SongHealth::Whole);
    EXPECT_EQ(songs.KeptSongs(), 1U);
    EXPECT_EQ(songs.OtherSongs(), 1U);
    EXPECT_EQ(songs.KeptSeconds(), 60U);
}

TEST(RunSongs, FollowTheirEncoders) {
    RunSongs songs;
    std::vector<size_t> changed;
    songs.ProgressChanged.Connect([&changed](size_t row) { changed.push_back(row); });
    songs.SongClosed(Song(SongFate::Kept, "a"));
    songs.SongClosed(Song(SongFate::Kept, "b"));
    EXPECT_EQ(songs.Songs()[1].Progress, SongProgress::Waiting);
    songs.SongTransferred(HandedOn("a", "job1"));
    EXPECT_EQ(songs.Songs()[1].Progress, SongProgress::Encoding);
    songs.SongTransferred(HandedOn("b", "job2"));
    std::vector<std::string> failed;
    songs.EncoderFailed.Connect(
        [&](const RunSong& song, int32_t error) { failed.push_back(song.JobName + std::to_string(error)); });
    songs.JobEnded({"job1", 0});
    songs.JobEnded({"job2", 1});
    EXPECT_EQ(failed, std::vector<std::string>{"job21"});
    EXPECT_EQ(songs.Songs()[1].Progress, SongProgress::Made);
    EXPECT_EQ(songs.Songs()[0].Progress, SongProgress::Failed);
    EXPECT_EQ(changed, (std::vector<size_t>{1, 0, 1, 0}));
}

TEST(RunSongs, WithoutACommandTheRecordingStaysOrTheProblemShows) {
    RunSongs songs;
    songs.SongClosed(Song(SongFate::Kept, "a"));
    songs.SongTransferred(HandedOn("a", ""));
    EXPECT_EQ(songs.Songs()[0].Progress, SongProgress::Stays);
    TransferredSong refused = HandedOn("a", "");
    refused.Problem = "no encoder";
    songs.SongTransferred(refused);
    EXPECT_EQ(songs.Songs()[0].Progress, SongProgress::Failed);
}

TEST(RunSongs, SongsOfEarlierRunsAreNotAmongThem) {
    RunSongs songs;
    songs.SongTransferred(HandedOn("old", "job"));
    songs.JobEnded({"job", 0});
    EXPECT_TRUE(songs.Songs().empty());
}

TEST(RunSongs, LostSoundIsWorseThanAMissingEnd) {
    RunSongs songs;
    ClosedSong song = Song(SongFate::Kept, "a");
    song.LostFrames = 1;
    songs.SongClosed(song);
    EXPECT_EQ(songs.Songs()[0].Health, SongHealth::Damaged);
}

TEST(RunSongs, ASongMayBeKeptAfterwards) {
    RunSongs songs;
    ClosedSong dropped = Song(SongFate::Unwanted, "");
    dropped.TempPath = "/tmp/a.wav";
    songs.SongClosed(dropped);
    songs.KeptAfterwards(0);
    songs.KeptAfterwards(1);  // there is none
    EXPECT_EQ(songs.KeptSongs(), 1U);
    EXPECT_EQ(songs.OtherSongs(), 0U);
    EXPECT_EQ(songs.KeptSeconds(), 60U);
    songs.SongTransferred(HandedOn("a", "job"));
    EXPECT_EQ(songs.Songs()[0].Progress, SongProgress::Encoding);
}

TEST(RunSongs, TakeTheNameThatAMusicFileGot) {
    RunSongs songs;
    songs.SongClosed(Song(SongFate::Kept, "a"));
    songs.SongTransferred(HandedOn("a", "job"));
    songs.MusicMade("job", "/music/a (2).mp3");
    EXPECT_EQ(songs.Songs()[0].MusicFile, "/music/a (2).mp3");
}

}  // namespace
}  // namespace Corvetape::Test
