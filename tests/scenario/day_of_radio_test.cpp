// A day of radio through the whole program, twice.

#include <gtest/gtest.h>

#include <future>

#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

constexpr double DaySeconds = 24 * 3600;
constexpr uint64_t BufferFrames = 2205;

/// What a day has left behind.
struct Day {
    uint64_t DiskHistory = 0;  ///< over every byte that was written, in order
    uint64_t Files = 0;        ///< over the names and contents of what is there at the end
    std::vector<std::string> Songs;
    std::string Faults;  ///< one line for each thing that is not as it should be
    uint64_t FramesLost = 0;
    size_t TitledSongs = 0;
};

/// Jingles without a title, short rests inside songs and clicks in pauses, day and night.
RadioScript DayScript() {
    RandomRadioOptions options;
    options.Seed = 20240514;
    options.Seconds = DaySeconds;
    options.RestChance = 0.5;
    options.ClickChance = 0.2;
    options.JingleChance = 0.2;
    options.Stamped = true;
    RadioScript script = RandomRadio(options);
    return script.Pause(3).SilenceForever();
}

std::string CheckedSong(World& world, const TransferredSong& song) {
    const HeardSong* heard = world.HeardAs(song);
    if (heard == nullptr) return song.TempFile + " was never closed\n";
    const std::string compared = ComparedWithRadio(world, *heard, song.TempFile);
    return compared == "equal" ? "" : compared + "\n";
}

/// Holds the songs that were kept against what the radio has played.
void CompareWithRadio(World& world, Day& day) {
    std::vector<ScriptedSong> titled;
    for (const ScriptedSong& song : world.Truth()->Songs()) {
        if (!song.Media.Song.empty()) titled.push_back(song);
    }
    day.TitledSongs = titled.size();
    size_t next = 0;
    for (const HeardSong& heard : world.Closed) {
        if (heard.Song.Fate != SongFate::Kept || next == titled.size()) continue;
        const ScriptedSong& song = titled[next];
        const uint64_t late = heard.RadioBegin > song.Begin ? heard.RadioBegin - song.Begin : 0;
        const uint64_t early = heard.RadioEnd < song.End ? song.End - heard.RadioEnd : 0;
        day.FramesLost = std::max({day.FramesLost, late, early});
        const bool alone = (next == 0 || heard.RadioBegin >= titled[next - 1].End) &&
                           (next + 1 == titled.size() || heard.RadioEnd <= titled[next + 1].Begin);
        if (!alone) day.Faults += "song " + std::to_string(next) + " holds a piece of another\n";
        if (heard.Song.Media.Song != song.Media.Song || heard.Song.Media.Artist != song.Media.Artist) {
            day.Faults += "song " + std::to_string(next) + " is called " + heard.Song.Media.Song + "\n";
        }
        ++next;
    }
    if (next != titled.size()) day.Faults += std::to_string(next) + " songs were kept\n";
}

Day LiveThrough() {
    Day day;
    WorldOptions options;
    options.Radio = DayScript();
    options.Settings = {{ProviderOfRadio, "LengthOfPause", "500"},
                        {ProviderOfRadio, "SilenceAmplitude", "30"},
                        {ProviderOfRadio, "QuitAfterSilence", "60"}};
    options.Encode = [&day](World& world, const TransferredSong& song) {
        day.Faults += CheckedSong(world, song);
        day.Songs.push_back(song.MusicFile);
        world.Disk().Delete(song.TempFile);  // a day of songs would fill the memory
    };
    World world(std::move(options));
    if (!world.StartRecording()) return day;
    world.RunFor(static_cast<double>(world.Truth()->Length()) / 44100 + 5);
    CompareWithRadio(world, day);
    world.Finish();

    day.DiskHistory = world.Disk().HistoryHash();
    ContentHash files;
    for (const std::string& path : world.Disk().Tree()) {
        files.Add(path);
        files.Add(world.Disk().HashOfFile(path).value_or(0));
    }
    day.Files = files.Value();
    if (world.Disk().OpenHandles() != 0) day.Faults += "a file was left open\n";
    if (!world.Logged("ERROR").empty()) day.Faults += world.Logged("ERROR")[0] + "\n";
    return day;
}

class DayOfRadio : public testing::Test {
 protected:
    /// Two days on two machines at the same time: they know nothing of each other.
    static void SetUpTestSuite() {
        auto other = std::async(std::launch::async, LiveThrough);
        First = LiveThrough();
        Second = other.get();
    }

    static inline Day First;
    static inline Day Second;
};

TEST_F(DayOfRadio, EverySongIsKeptWithNothingOfAnotherOne) {
    EXPECT_EQ(First.Faults, "");
    EXPECT_GT(First.TitledSongs, 350U);
    EXPECT_EQ(First.Songs.size(), First.TitledSongs);
}

TEST_F(DayOfRadio, No50MillisecondsOfAnySongAreLost) {
    EXPECT_LT(First.FramesLost, BufferFrames);
}

TEST_F(DayOfRadio, TwoRunsGiveTheSameBytes) {
    EXPECT_EQ(First.Songs, Second.Songs);
    EXPECT_EQ(First.DiskHistory, Second.DiskHistory);
    EXPECT_EQ(First.Files, Second.Files);
}

}  // namespace
}  // namespace Corvetape::Test
