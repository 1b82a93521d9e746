// Each seed makes a radio, a failing machine and a user who presses everything; the book checks the outcome.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "scenario/soak/hand.h"

namespace Corvetape::Test {
namespace {

constexpr uint64_t SeedsOfATest = 2000;

/// A number from the environment.
uint64_t NumberOf(const char* name, uint64_t otherwise) {
    const char* text = std::getenv(name);
    return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

/// Songs end by everything that is known, more often than not, and unsure ones may keep their margins. Titles
/// come late by what is usual for the station, more or less.
void AddAutomatic(uint64_t seed, const std::string& source, WorldOptions& options) {
    SimRandom chance(MixSeed(seed, 6));
    constexpr std::array<const char*, 3> hours = {"0", "1", "24"};
    options.Settings.push_back({"Options", "KeepMargins", chance.Pick(hours)});
    options.Settings.push_back({"Options", "FadeGoesTo", std::to_string(chance.Below(3))});
    if (chance.Chance(0.5)) options.Settings.push_back({source, "EndOfSongDetection", "3"});
    if (chance.Chance(0.3)) return;
    const double usual = chance.Between(-1.0, 6.0);
    options.TitleDelay = [seed, usual](size_t song) {
        return usual + SimRandom(MixSeed(seed, 100 + song)).Between(0.0, 0.8);
    };
}

WorldOptions WorldOf(uint64_t seed, double seconds, Book& book) {
    SimRandom chance(MixSeed(seed, 1));
    RandomRadioOptions radio;
    radio.Seed = seed;
    radio.Seconds = seconds;
    radio.ShortestSong = 5;
    radio.LongestSong = 25;
    radio.RestChance = 0.3;
    radio.ClickChance = 0.2;
    radio.OverlapChance = 0.1;
    radio.OverlapSeconds = 1;
    radio.Stamped = chance.Chance(0.5);

    WorldOptions options;
    options.Radio = RandomRadio(radio);
    for (RadioScript::Item& item : options.Radio.Items) {
        SourceMedia& media = item.Song.Media;
        if (media.Song.empty()) continue;
        media.Album = AlbumOf + media.Song;
        media.Cover = CoverOf + media.Song;
    }
    std::vector<std::string> covers;
    for (const RadioScript::Item& item : options.Radio.Items) covers.push_back(item.Song.Media.Cover);
    options.Connect = [covers](World& world, Machine& machine, RunOptions&) {
        machine.Web = &world.Web;
        for (const std::string& cover : covers) world.Web.Bodies[cover] = PictureAt(cover);
    };
    options.Radio.Pause(600).SilenceForever();  // of zeros, one buffer is like the next
    options.Machine.Seed = seed;
    const auto number = [&chance](int64_t low, int64_t high) {
        return std::to_string(chance.Between(low, high));
    };
    // Without a source of titles the recording is put in order every second, whatever the disk has said.
    options.TellsTitles = chance.Chance(0.7);
    const std::string source = options.TellsTitles ? ProviderOfRadio : NoStationData;
    const bool automatic = PlaysAutomatic(seed);
    options.Settings = {
        {source, "EndOfSongDetection", number(0, automatic ? 3 : 2)},
        {source, "LengthOfPause", std::to_string(50 * chance.Between(int64_t{1}, int64_t{20}))},
        {source, "IgnoreShortSongs", number(0, 8)},
        {source, "EndOfSongTimer", number(3, 30)},
        {source, "DetectSilenceByPeak", number(0, 1)},
        {source, "IgnorePauseFor", chance.Chance(0.2) ? "300" : "0"},
        {"Options", "InfoAfterSilence", number(5, 30)},
        {"Options", "LowTempSpace", "1"},
        {"Options", "LowMusicSpace", "1"},
        {"Options", "DelTempFolder", number(0, 1)},
        {"Options", "StoreCoverImage", "1"},
        {"DoNotChange", "EncodeDelay", number(0, 6000)},
        {"DoNotChange", "PollRecordingBuffers", number(0, automatic ? 3 : 2)}};
    if (automatic) AddAutomatic(seed, source, options);
    // Half of the radios give albums and covers with the titles, the others up to some seconds later.
    SimRandom late(MixSeed(seed, 4));
    if (late.Chance(0.5)) {
        options.AlbumDelay = late.Between(0.0, 8.0);
        options.CoverDelay = late.Between(0.0, 8.0);
    }
    options.EncodingTime = std::chrono::milliseconds(chance.Between(int64_t{1}, int64_t{4000}));
    options.Through = [&book](Machine machine) { return book.Through(machine); };
    options.OnClosed = [&book](const HeardSong& song) { book.Closed(song); };
    options.OnTransferred = [&book](const TransferredSong& song) { book.Transferred(song); };
    options.Encode = [&book](World& world, const TransferredSong& song) {
        book.Encoded(song);
        world.Disk().Delete(song.TempFile);
    };
    return options;
}

/// What comes out of a run.
struct Life {
    std::string Problems;
    std::string Story;
    size_t Kept = 0;
    size_t Closed = 0;
    size_t CutAgain = 0;
    double Seconds = 0;
};

/// Lives through the seed.
Life LiveThrough(uint64_t seed) {
    SimRandom chance(MixSeed(seed, 2));
    const double seconds = chance.Between(20.0, 120.0);
    Book book;
    World world(WorldOf(seed, seconds, book));
    book.Watch(world);
    Hand hand(world, book, seed);
    book.OnClosed = [&hand](const HeardSong& song) { hand.NoteSong(song); };
    const auto runOn = [&](double duration) {
        world.RunUntil(
            [&book] {
                book.AfterEvent();
                return false;
            },
            duration);
    };
    if (!world.Start()) return {"the program does not start\n", "", 0, 0, 0, 0};
    const double restlessness = chance.Between(0.5, 12.0);
    while (world.Now() < seconds && world.Recorder->Running()) {
        hand.Act();
        runOn(chance.Between(0.0, restlessness));
    }
    if (chance.Chance(0.5)) {
        hand.Restore();
        if (world.Recorder->Running()) runOn(20);
    }
    world.Finish();
    book.AfterEvent();
    world.Recorder.reset();
    book.ProgramEnded();
    hand.Restore();
    // The next start deals with what the end has left.
    world.Computer.System.AliveRuns.clear();
    world.Made();
    if (world.Load()) {
        runOn(12);
        world.Finish();
        book.ProgramEnded();
    }
    book.Finished();
    SimRandom cuts(MixSeed(seed, 7));
    book.CutAgain(cuts);
    return {book.Problems(),    hand.Story(),         book.SongsKept(),
            book.SongsClosed(), book.SongsCutAgain(), book.SecondsBooked()};
}

std::string HowToRepeat(uint64_t seed) {
    return "seed " + std::to_string(seed) + "; alone: CORVETAPE_SEED=" + std::to_string(seed) +
           " test-soak\n";
}

TEST(Soak, WhateverIsPressedAndWhateverFailsNothingWantedIsLostWithoutAReport) {
    const bool alone = std::getenv("CORVETAPE_SEED") != nullptr;
    const uint64_t first = NumberOf("CORVETAPE_SEED", NumberOf("CORVETAPE_FIRST_SEED", 1));
    const uint64_t count = alone ? 1 : NumberOf("CORVETAPE_SEEDS", SeedsOfATest);
    size_t kept = 0;
    size_t closed = 0;
    size_t cutAgain = 0;
    size_t failed = 0;
    double seconds = 0;
    for (uint64_t seed = first; seed < first + count && failed < 20; ++seed) {
        const Life run = LiveThrough(seed);
        kept += run.Kept;
        closed += run.Closed;
        cutAgain += run.CutAgain;
        seconds += run.Seconds;
        if (!run.Problems.empty()) ++failed;
        EXPECT_TRUE(run.Problems.empty()) << run.Problems << HowToRepeat(seed);
        if (alone) std::cout << run.Story;
    }
    std::cout << count << " seeds: " << kept << " of " << closed << " songs kept in " << seconds / 3600
              << " hours of radio, " << cutAgain << " cut again\n";
    EXPECT_GT(alone ? 1 : kept, 0U);
}

}  // namespace
}  // namespace Corvetape::Test
