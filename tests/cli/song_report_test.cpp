#include "cli/song_report.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace Corvetape {
namespace {

ClosedSong Song() {
    ClosedSong song;
    song.Fate = SongFate::Kept;
    song.BeginFrame = 44100;
    song.EndFrame = 44100 * 61 + 22050;
    song.Frames = 44100 * 60 + 22050;
    song.Whole = true;
    song.Media.Artist = "Ann \"A\"";
    song.Media.Song = "Line\nTwo";
    song.Media.TempFileName = "261121120000";
    return song;
}

TEST(SongAsJson, HoldsSecondsAndFramesOfTheInput) {
    const auto object = nlohmann::json::parse(SongAsJson(Song(), "/music/a \"b\".wav"));
    EXPECT_EQ(object["begin"], 1.0);
    EXPECT_EQ(object["end"], 61.5);
    EXPECT_EQ(object["frames"], 44100 * 60 + 22050);
    EXPECT_EQ(object["kept"], true);
    EXPECT_EQ(object["reason"], "kept");
    EXPECT_EQ(object["artist"], "Ann \"A\"");
    EXPECT_EQ(object["title"], "Line\nTwo");
    EXPECT_EQ(object["file"], "/music/a \"b\".wav");
    EXPECT_EQ(object["lost_frames"], 0);
    EXPECT_EQ(object["clipped"], 0);
    EXPECT_EQ(object["whole"], true);
    EXPECT_EQ(object.size(), 11u);
}

TEST(SongAsJson, IsOneLineWithItsFieldsInTheirOrder) {
    ClosedSong song;
    song.FramesPerSecond = 48000;
    song.BeginFrame = 24000;
    song.EndFrame = 24048;
    song.Frames = 48;
    song.LostFrames = 7;
    song.ClippedSamples = 8;
    EXPECT_EQ(
        SongAsJson(song, ""),
        "{\"begin\":0.500,\"end\":0.501,\"frames\":48,\"kept\":false,\"reason\":\"unwanted\",\"artist\":\"\","
        "\"title\":\"\",\"file\":\"\",\"lost_frames\":7,\"clipped\":8,\"whole\":false}");
}

TEST(FateText, HasAWordForEachFate) {
    EXPECT_EQ(FateText(SongFate::Kept), "kept");
    EXPECT_EQ(FateText(SongFate::Short), "short");
    EXPECT_EQ(FateText(SongFate::Unwanted), "unwanted");
    EXPECT_EQ(FateText(SongFate::Aborted), "aborted");
}

TEST(SongAsLine, GivesFateLengthAndName) {
    EXPECT_EQ(SongAsLine(Song()), "kept         1:00  Ann \"A\" - Line Two");
}

TEST(SongAsLine, IsOneLineWhateverTheTitleHolds) {
    ClosedSong song = Song();
    song.Media.Artist = "\x1b[2J\a";
    EXPECT_EQ(SongAsLine(song), "kept         1:00  [2J  - Line Two");
}

TEST(SongAsLine, ReportsWhatWasLostAndThatThereIsMore) {
    ClosedSong song = Song();
    song.LostFrames = 44100 / 2;
    EXPECT_EQ(SongAsLine(song), "kept         1:00  Ann \"A\" - Line Two  (0.50 s lost)");
    song.LostFrames = 0;
    song.Continues = true;
    EXPECT_EQ(SongAsLine(song), "kept         1:00  Ann \"A\" - Line Two  (goes on in a next file)");
}

TEST(SongAsLine, ReportsWhatIsWrongWithASongThatIsKept) {
    ClosedSong song = Song();
    const std::string name = "  Ann \"A\" - Line Two";
    song.Whole = false;
    EXPECT_EQ(SongAsLine(song), "kept         1:00" + name + "  (not whole)");
    song.ClippedSamples = 1;
    song.DeviceChanges = 2;
    song.LostFrames = 44100;
    EXPECT_EQ(SongAsLine(song),
              "kept         1:00" + name + "  (1.00 s lost, 2 device changes, 1 clipped sample)");
    song.Fate = SongFate::Short;
    EXPECT_EQ(SongAsLine(song), "short        1:00" + name + "  (1.00 s lost, 2 device changes)");
}

TEST(SongReport, SaysThatNothingButTheTitleHasEndedASong) {
    ClosedSong song = Song();
    song.Whole = false;
    song.Trust.End = Certainty::Unsure;
    EXPECT_EQ(nlohmann::json::parse(SongAsJson(song, ""))["by_title_alone"], false);
    song.Trust.AgainstEvidence = true;
    EXPECT_EQ(nlohmann::json::parse(SongAsJson(song, ""))["by_title_alone"], true);
    EXPECT_NE(SongAsLine(song).find("ended by its title alone, end unsure"), std::string::npos);
}

TEST(SongAsLine, DoesNotCallAPartOfASongBroken) {
    ClosedSong song = Song();
    song.Whole = false;
    song.Media.FilePart = 2;
    EXPECT_EQ(SongAsLine(song), "kept         1:00  Ann \"A\" - Line Two");
}

TEST(SongName, IsArtistAndTitleOrWhatThereIs) {
    STATIONANDSONGDATA media;
    media.TempFileName = "261121120000";
    EXPECT_EQ(SongName(media), "261121120000");
    media.Artist = "Ann";
    EXPECT_EQ(SongName(media), "261121120000");
    media.Song = "One";
    EXPECT_EQ(SongName(media), "Ann - One");
    media.Artist.clear();
    EXPECT_EQ(SongName(media), "One");
}

TEST(LengthText, HasHoursOnlyWhereThereAreSome) {
    EXPECT_EQ(LengthText(0), "0:00");
    EXPECT_EQ(LengthText(59), "0:59");
    EXPECT_EQ(LengthText(3599), "59:59");
    EXPECT_EQ(LengthText(3600), "1:00:00");
    EXPECT_EQ(LengthText(100 * 3600 + 61), "100:01:01");
}

}  // namespace
}  // namespace Corvetape
