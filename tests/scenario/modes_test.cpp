// The three ways of noticing the end of a song, from the input to the music file.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::Gt;
using testing::SizeIs;

constexpr uint64_t BufferFrames = 2205;
constexpr uint64_t Second = 44100;

WorldOptions MadeFor(RadioScript radio, int mode, std::vector<IniLine> more = {}) {
    WorldOptions options;
    options.Radio = std::move(radio);
    options.Settings = {{ProviderOfRadio, "EndOfSongDetection", std::to_string(mode)},
                        {ProviderOfRadio, "LengthOfPause", "500"},
                        {ProviderOfRadio, "IgnoreShortSongs", "5"}};
    options.Settings.insert(options.Settings.end(), more.begin(), more.end());
    return options;
}

/// Records the whole radio and 20 seconds more, and ends the program.
void RecordAll(World& world) {
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(static_cast<double>(world.Truth()->Length()) / world.Truth()->FramesPerSecond() + 20);
    world.Finish();
}

std::vector<std::string> MusicFiles(const World& world) {
    std::vector<std::string> files;
    for (const TransferredSong& song : world.Transferred) files.push_back(song.MusicFile);
    return files;
}

std::string Music(const std::string& name) {
    return MusicFolder + ("/" + name) + ".wav";
}

TEST(EndOfSongBySilence, EachSongBecomesAMusicFileWithItsName) {
    World world(MadeFor(NumberedRadio({30, 40, 50}), 0));
    RecordAll(world);
    EXPECT_THAT(MusicFiles(world), ElementsAre(Music("Radio/Band 1 - Song 1"), Music("Radio/Band 2 - Song 2"),
                                               Music("Radio/Band 3 - Song 3")));
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST(EndOfSongBySilence, AMusicFileHoldsTheWholeSongAndItsTags) {
    World world(MadeFor(NumberedRadio({30, 40}), 0));
    RecordAll(world);
    const auto kept = KeptSongs(world);
    ASSERT_THAT(kept, SizeIs(2));
    for (size_t i = 0; i < kept.size(); ++i) {
        const ScriptedSong& song = world.Truth()->Songs()[i];
        EXPECT_LE(kept[i].RadioBegin, song.Begin);
        EXPECT_GE(kept[i].RadioEnd, song.End);
        EXPECT_LT(kept[i].RadioEnd - kept[i].RadioBegin, song.End - song.Begin + 2 * BufferFrames);
        EXPECT_TRUE(kept[i].Song.Whole);
    }
    const auto info = ReadWavInfo(world.Disk(), Music("Radio/Band 2 - Song 2"));
    ASSERT_TRUE(info);
    using Tag = std::pair<std::string, std::string>;
    EXPECT_THAT(info->Tags, ElementsAre(Tag("IGNR", "Radio"), Tag("IART", "Band 2"), Tag("IALB", "Album 2"),
                                        Tag("INAM", "Song 2")));
}

TEST(EndOfSongByMediaData, SongsAreCutInTheirPauses) {
    World world(MadeFor(NumberedRadio({30, 40, 50}), 1));
    RecordAll(world);
    const auto kept = KeptSongs(world);
    ASSERT_THAT(kept, SizeIs(3));
    for (size_t i = 0; i < kept.size(); ++i) {
        EXPECT_LT(kept[i].RadioBegin, world.Truth()->Songs()[i].Begin + BufferFrames);
        EXPECT_GT(kept[i].RadioEnd + BufferFrames, world.Truth()->Songs()[i].End);
    }
    EXPECT_EQ(MusicFiles(world)[1], Music("Radio/Band 2 - Song 2"));
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST(EndOfSongByMediaData, ALateAlbumReachesTheSongInTheFileWithoutACut) {
    WorldOptions options = MadeFor(NumberedRadio({60}), 1);
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    world.RunFor(30);
    ASSERT_EQ(world.Values().Media.SongMedia.Song, "Song 1");
    world.Values().Media.CurrentMedia.Album = "An earlier reading";  // the next one then differs in it alone
    world.Values().Media.SongMedia.Album = "An earlier reading";
    world.RunFor(2);
    EXPECT_EQ(world.Values().Media.SongMedia.Album, "Album 1");
    EXPECT_FALSE(world.Values().Cut.CutPending);
}

/// One song of ten minutes with a short rest every four seconds, so that nothing but the clock cuts.
WorldOptions ByTheClock(int duplicate, double secondsBetweenRests = 4) {
    return MadeFor(NumberedRadio({600}, {.SecondsBetweenRests = secondsBetweenRests}), 2,
                   {{ProviderOfRadio, "EndOfSongTimer", "60"},
                    {ProviderOfRadio, "DuplicatepartOfSong", std::to_string(duplicate)}});
}

int32_t LoudestOf(std::span<const Frame> frames) {
    int32_t loudest = 0;
    for (const Frame& frame : frames) {
        loudest = std::max({loudest, std::abs(int32_t{frame.Left}), std::abs(int32_t{frame.Right})});
    }
    return loudest;
}

TEST(EndOfSongByTime, PiecesMeetInTheQuietestStretchNearTheMinute) {
    World world(ByTheClock(0));
    RecordAll(world);
    const auto kept = KeptSongs(world);
    ASSERT_THAT(kept, SizeIs(Gt(9U)));
    for (size_t i = 1; i < 9; ++i) {
        const uint64_t thrown = kept[i].RadioBegin - kept[i - 1].RadioEnd;
        EXPECT_GE(thrown, 5 * BufferFrames);  // a rest of 0.3 s has so many whole buffers
        EXPECT_EQ(LoudestOf(FramesOfRadio(world.Truth(), kept[i - 1].RadioEnd, thrown)), 10);
        EXPECT_NEAR(static_cast<double>(kept[i].RadioEnd - kept[i].RadioBegin), 60.0 * Second, 6.1 * Second);
    }
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST(EndOfSongByTime, SoundOfOneLevelCountsAsOneLongPauseAndTheWindowIsThrownAway) {
    World world(ByTheClock(0, 0));
    RecordAll(world);
    const auto kept = KeptSongs(world);
    ASSERT_THAT(kept, SizeIs(Gt(9U)));
    for (size_t i = 1; i < 9; ++i) {
        // Three seconds before the cut and the three after it that have arrived.
        EXPECT_EQ(kept[i].RadioBegin - kept[i - 1].RadioEnd, 120 * BufferFrames);
    }
}

TEST(EndOfSongByTime, TheDuplicatedPartIsInBothPieces) {
    World world(ByTheClock(1));
    RecordAll(world);
    const auto kept = KeptSongs(world);
    ASSERT_THAT(kept, SizeIs(Gt(9U)));
    for (size_t i = 1; i < 9; ++i) {
        // Three seconds before and three after the cut; the new piece begins one slot after the window.
        EXPECT_EQ(kept[i - 1].RadioEnd - kept[i].RadioBegin, 119 * BufferFrames);
    }
    EXPECT_EQ(MusicComparedWithRadio(world), "");
}

TEST(EndOfSongByTime, PiecesAreNamedByTheirTimeAndNotByTheSong) {
    World world(ByTheClock(0));
    RecordAll(world);
    ASSERT_FALSE(world.Transferred.empty());
    for (const TransferredSong& song : world.Transferred) {
        EXPECT_EQ(song.MusicFile, Music(song.Media.TempFileName));
        EXPECT_TRUE(std::regex_match(song.Media.TempFileName, std::regex("2405141[0-9]+")));
    }
}

TEST(FullFiles, ASongGoesOnInNextFilesWithoutALostFrame) {
    for (const int mode : {0, 1}) {
        WorldOptions options = MadeFor(NumberedRadio({100, 30}), mode);
        options.MaxSongBytes = 30 * Second * sizeof(Frame) + 1000;
        World world(std::move(options));
        RecordAll(world);
        const auto kept = KeptSongs(world);
        ASSERT_THAT(kept, SizeIs(Gt(4U)));
        for (size_t i = 1; i < 4; ++i) EXPECT_EQ(kept[i].RadioBegin, kept[i - 1].RadioEnd);
        EXPECT_LT(kept[0].RadioBegin, world.Truth()->Songs()[0].Begin + BufferFrames);
        EXPECT_GT(kept[3].RadioEnd + BufferFrames, world.Truth()->Songs()[0].End);
        for (const HeardSong& song : kept) EXPECT_LE(song.Song.Frames, 30 * Second + 250);
        EXPECT_EQ(MusicFiles(world)[0], Music("Radio/Band 1 - Song 1 (1)"));
        EXPECT_EQ(MusicFiles(world)[3], Music("Radio/Band 1 - Song 1 (4)"));
        EXPECT_EQ(MusicComparedWithRadio(world), "");
    }
}

TEST(OpticalInput, RecordsAt48KilohertzInAllThreeModes) {
    for (const int mode : {0, 1, 2}) {
        World world(MadeFor(NumberedRadio({30, 40}), mode,
                            {{"Mixer", "SPDIF48kHz", "1"}, {ProviderOfRadio, "EndOfSongTimer", "60"}}));
        RecordAll(world);
        ASSERT_FALSE(world.Transferred.empty());
        const auto info = ReadWavInfo(world.Disk(), world.Transferred[0].MusicFile);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->Format, MakeWaveFormat(48000));
        EXPECT_EQ(MusicComparedWithRadio(world), "");
    }
}

/// Names and contents of all music files.
std::map<std::string, uint64_t> MusicHashes(World& world) {
    std::map<std::string, uint64_t> hashes;
    for (const std::string& path : world.Disk().Tree(MusicFolder)) {
        if (const auto hash = world.Disk().HashOfFile(path)) hashes[path] = *hash;
    }
    return hashes;
}

TEST(BufferReturnModes, AllFourGiveTheSameSongs) {
    std::vector<std::map<std::string, uint64_t>> songs;
    for (const char* mode : {"0", "1", "2", "3"}) {
        World world(MadeFor(NumberedRadio({30, 40, 50}), 0, {{"DoNotChange", "PollRecordingBuffers", mode}}));
        RecordAll(world);
        songs.push_back(MusicHashes(world));
        EXPECT_EQ(MusicComparedWithRadio(world), "");
    }
    EXPECT_THAT(songs[0], SizeIs(3));
    for (const auto& each : songs) EXPECT_EQ(each, songs[0]);
}

TEST(BufferReturnModes, AllFourGiveTheSameSongsByMediaData) {
    std::vector<std::map<std::string, uint64_t>> songs;
    for (const char* mode : {"0", "1", "2", "3"}) {
        World world(MadeFor(NumberedRadio({30, 40, 50}), 1, {{"DoNotChange", "PollRecordingBuffers", mode}}));
        RecordAll(world);
        songs.push_back(MusicHashes(world));
    }
    EXPECT_THAT(songs[0], SizeIs(3));
    for (const auto& each : songs) EXPECT_EQ(each, songs[0]);
}

TEST(GainAboveAll, TheAmplifiedSoundIsWhatLandsInTheFile) {
    WorldOptions options = MadeFor(NumberedRadio({30}), 0);
    options.Settings.push_back({std::string("Mixer") + ProviderOfRadio, "LevelMultiplier", "150"});
    World world(std::move(options));
    RecordAll(world);
    ASSERT_THAT(world.Transferred, SizeIs(1));
    const auto frames = FramesOfWav(world.Disk(), world.Transferred[0].MusicFile);
    ASSERT_TRUE(frames);
    const HeardSong song = KeptSongs(world)[0];
    const auto played = FramesOfRadio(world.Truth(), song.RadioBegin, frames->size());
    size_t wrong = 0;
    for (size_t i = 0; i < played.size(); ++i) {
        const Frame louder = {static_cast<int16_t>(played[i].Left * 150 / 100),
                              static_cast<int16_t>(played[i].Right * 150 / 100)};
        wrong += (*frames)[i] == louder ? 0 : 1;
    }
    EXPECT_EQ(wrong, 0U);
}

}  // namespace
}  // namespace Corvetape::Test
