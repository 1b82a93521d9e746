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

/// Three songs of 30 s with titles, which end by everything that is known.
WorldOptions TitledWatchedBy(Book& book) {
    WorldOptions options = WatchedBy(book);
    RadioScript radio;
    for (uint64_t number = 1; number <= 3; ++number) {
        ScriptSong song;
        song.Seconds = 30;
        song.Seed = number;
        const std::string title = "Song " + std::to_string(number);
        song.Media = {"Radio", "Band", title, AlbumOf + title, CoverOf + title};
        radio.Song(std::move(song));
    }
    options.Radio = radio.SilenceForever();
    options.TellsTitles = true;
    for (const char* source : {ProviderOfRadio, NoStationData}) {
        options.Settings.push_back({source, "EndOfSongDetection", "3"});
        options.Settings.push_back({source, "IgnoreShortSongs", "0"});
    }
    return options;
}

void EndWatched(World& world, Book& book) {
    world.Finish();
    book.AfterEvent();
    world.Recorder.reset();
    book.ProgramEnded();
}

/// Recording goes on at a wish for the third song. The first two ended before, and nobody wanted them.
TEST(Book, KnowsThatSongsEndedWhileNothingWasRecorded) {
    Book book;
    World world(TitledWatchedBy(book));
    book.Watch(world);
    ASSERT_TRUE(world.Start());
    Watch(world, book, 20);
    world.Disk().SetFreeSpace("/", 0);
    Watch(world, book, 50);
    ASSERT_FALSE(world.Values().Flags.RecordingEnabled) << "the disk is full";
    world.Disk().SetCapacity("/", uint64_t{1} << 40U);
    Press(book, world.Form().chkStartStop[0]);
    Watch(world, book, 40);
    EndWatched(world, book);
    ASSERT_GE(world.Closed.size(), 2U);
    EXPECT_EQ(world.Closed.front().Song.Fate, SongFate::Unwanted);
    EXPECT_EQ(world.Closed.back().Song.Fate, SongFate::Kept);
    EXPECT_EQ(book.Problems(), "");
}

/// A title has ended the song by media data while nothing was recorded. A click in the mode by time means
/// what comes then.
TEST(Book, KnowsThatAClickByTimeSetsATitlesCutAside) {
    Book book;
    WorldOptions options = TitledWatchedBy(book);
    for (IniLine& line : options.Settings) {
        if (line.Key == "EndOfSongDetection") line.Value = "1";
    }
    World world(std::move(options));
    book.Watch(world);
    frmMain& form = world.Form();
    ASSERT_TRUE(world.Start());
    Watch(world, book, 20);
    world.Values().Flags.EndAtOnce();
    Watch(world, book, 12);
    ASSERT_TRUE(world.Values().Cut.CutPending);
    world.Disk().SetFreeSpace("/", 0);  // the click does not resume the recording
    Press(book, form.optEndOfSong[2]);
    Press(book, form.chkStartStop[0]);
    Press(book, form.optEndOfSong[1]);
    ASSERT_TRUE(world.Closed.empty());
    world.Disk().SetCapacity("/", uint64_t{1} << 40U);
    world.Values().Flags.ResumeForUser();
    Watch(world, book, 10);
    EndWatched(world, book);
    EXPECT_EQ(book.Problems(), "");
}

}  // namespace
}  // namespace Corvetape::Test
