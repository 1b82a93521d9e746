// Starts that find many songs of earlier runs: the recording does not wait for them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "post/transfer/song_notes.h"
#include "scenario/story.h"

namespace Corvetape::Test {
namespace {

using testing::SizeIs;

constexpr int Many = 5000;

/// A song without sound that a run left which is gone: it is deleted.
void Leave(World& world, int number) {
    const std::string base = std::string(SongTempFolder) + "/left " + std::to_string(number);
    SongNote note;
    note.Run = "gone-1";
    world.Disk().Put(base + ".wav", "RIFF");
    world.Disk().Put(base + ".note", SongNoteText(note));
}

size_t NotesLeft(World& world) {
    return ListNotedSongs(world.Disk(), SongTempFolder).size();
}

struct Effort {
    uint64_t Start = 0;          ///< operations of the disk before the first second
    uint64_t MostInASecond = 0;  ///< of the recording after that
    uint64_t Listings = 0;       ///< of the folder with the songs, over all that time
    size_t KeptSongs = 0;
};

Effort RecordBeside(int songs) {
    WorldOptions options;
    options.Radio = EvenRadio(2, 60);
    World world(std::move(options));
    for (int i = 0; i < songs; ++i) Leave(world, i);
    Effort effort;
    FileFault look;
    look.Pattern = SongTempFolder;
    look.Operation = FileOperation::Look;
    look.Error = 0;
    look.Delay = std::chrono::milliseconds(1);
    world.Disk().AddFault(look);
    world.Disk().DelayWith([&](std::chrono::milliseconds) { ++effort.Listings; });
    const uint64_t before = world.Disk().OperationCount();
    EXPECT_TRUE(world.Load());
    effort.Start = world.Disk().OperationCount() - before;
    EXPECT_TRUE(world.RunUntil([&] { return world.Form().chkStartStop[0].Enabled(); }, 5));
    world.Form().chkStartStop[0].Value(1);
    for (int second = 0; second < 140; ++second) {
        const uint64_t count = world.Disk().OperationCount();
        world.RunFor(1);
        effort.MostInASecond = std::max(effort.MostInASecond, world.Disk().OperationCount() - count);
    }
    for (int second = 0; second < 60 && NotesLeft(world) > 1; ++second) world.RunFor(1);
    EXPECT_LE(NotesLeft(world), 1u) << "all are dealt with in the end; the present song has a note";
    world.Finish();
    effort.KeptSongs = KeptTitles(world).size();
    return effort;
}

TEST(SongsOfEarlierRuns, ThousandsOfThemAreDealtWithBesideTheRecordingAFewAtATime) {
    const Effort none = RecordBeside(0);
    const Effort many = RecordBeside(Many);
    EXPECT_LE(many.Start, none.Start + 5) << "no song is looked at during the start";
    // Forty songs a second with less than twenty operations each.
    EXPECT_LE(many.MostInASecond, none.MostInASecond + 800);
    EXPECT_LE(many.Listings, none.Listings + 5) << "the folder is listed once, and not once for each song";
    EXPECT_EQ(many.KeptSongs, none.KeptSongs);
    EXPECT_EQ(none.KeptSongs, 2u);
}

TEST(SongsOfEarlierRuns, TheReportsOfTheirEncodersThatNobodyHasReadGo) {
    World world;
    const std::string folder = std::string(SongTempFolder) + "/";
    world.Computer.System.AliveRuns.insert("other-1");
    world.Disk().Put(folder + "gone-1-7.made", "/home/user/Music/One.mp3\n");
    world.Disk().Put(folder + "other-1-8.made", "/home/user/Music/Two.mp3\n");
    world.Disk().Put(folder + "well-made.made", "a text of the user");
    ASSERT_TRUE(world.Start());
    world.RunFor(5);
    EXPECT_FALSE(world.Disk().Exists(folder + "gone-1-7.made"));
    EXPECT_TRUE(world.Disk().Exists(folder + "other-1-8.made"));
    EXPECT_TRUE(world.Disk().Exists(folder + "well-made.made"));
    world.Finish();
}

}  // namespace
}  // namespace Corvetape::Test
