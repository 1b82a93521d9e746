// Songs that were cut in the wrong place are cut again: what was kept of them, and what comes out.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenario/recut_desk.h"

namespace Corvetape::Test {
namespace {

using testing::Contains;
using testing::EndsWith;
using testing::Not;
using testing::SizeIs;

constexpr uint32_t Rate = 44100;
const std::string Margins = std::string(SongTempFolder) + "/margins";

/// Songs of the very same noise without a gap: nothing but their titles says where one ends.
RadioScript SongsAlike(int count, double seconds) {
    RadioScript radio;
    radio.Pause(3);
    for (int i = 1; i <= count; ++i) {
        ScriptSong song;
        song.Seconds = seconds;
        song.Seed = static_cast<uint64_t>(i);
        const std::string text = std::to_string(i);
        song.Media = {"Radio", "Band " + text, "Song " + text, "Album " + text, ""};
        radio.Song(std::move(song));
    }
    return radio.SilenceForever();
}

WorldOptions Unsure(std::vector<IniLine> more = {}, int songs = 3) {
    WorldOptions options;
    options.Radio = SongsAlike(songs, 40);
    options.Settings = {{AnySourceSection, "EndOfSongDetection", "3"}};
    options.Settings.insert(options.Settings.end(), more.begin(), more.end());
    return options;
}

/// A world that has recorded, and the recut beside it.
class RecutWorld {
 public:
    explicit RecutWorld(std::vector<IniLine> more = {}, double second = 125)
        : Place(Unsure(std::move(more))) {
        EXPECT_TRUE(Place.StartRecording());
        RunTo(Place, second);
        Place.Finish();
        Desk.emplace(Place);
    }

    std::optional<KeptMargins> Of(const std::string& title) { return Desk->Of(title); }

    std::string Cut(const std::string& title, const RecutWish& wish) { return Desk->Cut(title, wish); }

    std::string MusicFile(const std::string& number) {
        return std::string(MusicFolder) + "/Radio/Band " + number + " - Song " + number + ".wav";
    }

    std::string Compared(const std::string& number, const RecutWish& moved) {
        return Desk->Compared(Desk->Heard("Song " + number), MusicFile(number), moved);
    }

    World Place;
    std::optional<RecutDesk> Desk;
};

TEST(Recut, ASongWithUnsureCutsIsCutAgainToTheSampleWithinItsMargins) {
    RecutWorld world;
    const auto margins = world.Of("Song 2");
    ASSERT_TRUE(margins);
    EXPECT_EQ(margins->Begin, Certainty::Unsure);
    EXPECT_EQ(margins->End, Certainty::Unsure);
    const auto room = world.Desk->Recut.RoomOf(*margins);
    ASSERT_TRUE(room);
    EXPECT_DOUBLE_EQ(room->BeginEarliest, -15);
    EXPECT_DOUBLE_EQ(room->EndLatest, 15);
    EXPECT_EQ(margins->MusicFile, world.MusicFile("2"));
    EXPECT_TRUE(margins->MusicKnown);
    EXPECT_EQ(world.Compared("2", {0, 0}), "equal");
    RecutWish moved;
    for (const RecutWish& wish : {RecutWish{-3.2, 0}, RecutWish{5.55, 0}, RecutWish{0, -4.01},
                                  RecutWish{0, 7.3}, RecutWish{-1, 1}, RecutWish{2.5, -2.5}}) {
        ASSERT_EQ(world.Cut("Song 2", wish), "");
        moved = {moved.Begin + wish.Begin, moved.End + wish.End};
        EXPECT_EQ(world.Compared("2", moved), "equal") << moved.Begin << ", " << moved.End;
    }
    EXPECT_EQ(world.Compared("1", {0, 0}), "equal") << "the neighbours stay as they are";
    EXPECT_EQ(world.Compared("3", {0, 0}), "equal");
}

TEST(Recut, NothingIsKeptOfSongsWhoseCutsAreSure) {
    WorldOptions options = Unsure();
    options.Radio = EvenRadio(3, 60);
    World world(std::move(options));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 230);
    world.Finish();
    EXPECT_THAT(KeptSongs(world), SizeIs(3));
    EXPECT_THAT(world.Disk().Tree(Margins), Not(Contains(EndsWith(".note"))));
}

TEST(Recut, TheTemporarySongMayBeGoneOrChanged) {
    RecutWorld world({{"Options", "DelTemp", "1"}});
    for (const std::string& path : world.Place.Disk().Tree()) {
        const bool temporary = path.starts_with(SongTempFolder) && !path.starts_with(Margins);
        if (temporary && path.ends_with(".wav")) world.Place.Disk().Delete(path);
    }
    ASSERT_EQ(world.Cut("Song 2", {-2, 2}), "");
    EXPECT_EQ(world.Compared("2", {-2, 2}), "equal");
}

TEST(Recut, ASongThatStaysInItsFolderIsWrittenAgainThere) {
    RecutWorld world({{"Options", "EncodeOffline", "1"}});
    const auto margins = world.Of("Song 2");
    ASSERT_TRUE(margins);
    const std::string path = std::string(SongTempFolder) + "/Band 2 - Song 2.wav";
    EXPECT_EQ(margins->MusicFile, path);
    const auto before = FramesOfWav(world.Place.Disk(), path);
    ASSERT_EQ(world.Cut("Song 2", {-1, 0}), "");
    const auto after = FramesOfWav(world.Place.Disk(), path);
    ASSERT_TRUE(before && after);
    ASSERT_EQ(after->size(), before->size() + Rate);
    EXPECT_EQ(Comparison(*before, std::span(*after).subspan(Rate)), "equal");
}

TEST(Recut, ALaterRunClearsAwayWhatACrashHasLeft) {
    World world(Unsure({{"Options", "KeepMargins", "1"}}));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 80);
    ASSERT_TRUE(world.Disk().IsFolder(Margins));
    world.Recorder.reset();
    world.Computer.Processes.KillAll();
    world.Made();
    ASSERT_TRUE(world.Start());
    world.RunFor(100 * 60);
    for (const std::string& path : world.Disk().Tree()) {
        EXPECT_FALSE(path.starts_with(Margins + "/") && !path.ends_with('/')) << path;
    }
}

TEST(Recut, MarginsGoWithTheTemporaryFilesOfTheirRun) {
    RecutWorld world({{"Options", "DelTempFolder", "1"}});
    EXPECT_FALSE(world.Place.Disk().IsFolder(SongTempFolder));
}

TEST(Recut, MarginsMakeRoomBeforeAShortDiskEndsTheRecording) {
    World world(Unsure({{"Options", "LowTempSpace", "100"}, {"Options", "LowMusicSpace", "100"}}, 4));
    ASSERT_TRUE(world.StartRecording());
    RunTo(world, 110);
    ASSERT_TRUE(world.Disk().IsFolder(Margins));
    const auto kept = [&] {
        const auto tree = world.Disk().Tree();
        return std::ranges::count_if(tree,
                                     [](const std::string& path) { return path.starts_with(Margins + "/"); });
    };
    ASSERT_GT(kept(), 0);
    // Ten minutes of sound are 106 MB.
    world.Disk().SetFreeSpace("/", 205ULL * 1024 * 1024);
    RunTo(world, 190);
    EXPECT_TRUE(world.Values().Flags.RecordCurrentSong) << "the room that they took was enough";
    EXPECT_FALSE(world.Values().Flags.DisableAtEndOfSong);
}

}  // namespace
}  // namespace Corvetape::Test
