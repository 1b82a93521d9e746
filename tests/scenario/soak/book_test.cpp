// Tests of the book itself.

#include <gtest/gtest.h>

#include "scenario/soak/book.h"

namespace Corvetape::Test {
namespace {

constexpr uint64_t BufferBytes = 8820;

WorldOptions WatchedBy(Book& book) {
    WorldOptions options;
    ScriptSong song;
    song.Seconds = 600;
    song.Seed = 1;
    options.Radio = RadioScript().Song(std::move(song));
    options.TellsTitles = false;
    options.Settings = {{NoStationData, "EndOfSongDetection", "2"},
                        {NoStationData, "IgnoreShortSongs", "0"},
                        {NoStationData, "IgnorePauseFor", "0"}};
    options.Through = [&book](Machine machine) { return book.Through(machine); };
    options.OnClosed = [&book](const HeardSong& closed) { book.Closed(closed); };
    options.OnTransferred = [&book](const TransferredSong& closed) { book.Transferred(closed); };
    return options;
}

/// Runs while the book watches.
void Watch(World& world, Book& book, double seconds) {
    world.RunUntil(
        [&book] {
            book.AfterEvent();
            return false;
        },
        seconds);
}

void Press(Book& book, Control& control) {
    book.BeforePress();
    control.Press();
    book.AfterPress();
}

/// A piece is followed round the ring while the input stands, a full disk breaks the round off, and the piece
/// goes on by silence when there is room again.
TEST(Book, FollowsAPieceThatGoesOnAfterARoundThroughTheRing) {
    Book book;
    World world(WatchedBy(book));
    book.Watch(world);
    ASSERT_TRUE(world.Start());
    frmMain& form = world.Form();
    form.optDuplicatePartOfSong[0].Value(true);
    Watch(world, book, 10);
    Press(book, form.chkStartStop[0]);
    Watch(world, book, 1.6);
    world.Computer.WaveIn.Stop(RadioName);
    world.Disk().SetFreeSpace("/", 50 * BufferBytes);
    Press(book, form.chkStartStop[0]);
    ASSERT_FALSE(world.Values().Flags.RecordingEnabled) << "the round was not broken off";
    Press(book, form.optEndOfSong[0]);
    world.Disk().SetCapacity("/", uint64_t{1} << 40U);
    Press(book, form.chkStartStop[0]);
    world.Computer.WaveIn.Restart(RadioName);
    Watch(world, book, 8);
    world.Finish();
    book.AfterEvent();
    world.Recorder.reset();
    book.ProgramEnded();
    ASSERT_EQ(world.Closed.size(), 1U);
    const ClosedSong& kept = world.Closed.back().Song;
    EXPECT_EQ(kept.Fate, SongFate::Kept);
    EXPECT_GT(kept.Frames, uint64_t{2205} * (32 + 40 + 150)) << "the piece, the round, and what came then";
    EXPECT_EQ(book.Problems(), "");
}

}  // namespace
}  // namespace Corvetape::Test
