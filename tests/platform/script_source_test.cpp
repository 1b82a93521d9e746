#include "sim/script_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <vector>

#include "platform/virtual/sim_random.h"
#include "sim/content_hash.h"
#include "sim/frame_stamp.h"

namespace Corvetape {
namespace {

ScriptSong SongOf(double seconds, uint64_t seed, int16_t peak = 12000) {
    ScriptSong song;
    song.Seconds = seconds;
    song.Seed = seed;
    song.PeakLeft = song.PeakRight = peak;
    song.Media.Song = "Song " + std::to_string(seed);
    return song;
}

std::vector<Frame> ReadFrames(SoundSource& source, size_t count) {
    std::vector<Frame> frames(count);
    frames.resize(source.Read(frames));
    return frames;
}

std::vector<Frame> ReadAll(const RadioScript& script, uint32_t rate = 44100) {
    ScriptSource source(script, rate);
    return ReadFrames(source, static_cast<size_t>(source.Truth().Length()) + 10);
}

std::pair<int32_t, int32_t> PeaksOf(std::span<const Frame> frames) {
    int32_t left = 0;
    int32_t right = 0;
    for (const Frame& frame : frames) {
        left = std::max(left, std::abs(int32_t{frame.Left}));
        right = std::max(right, std::abs(int32_t{frame.Right}));
    }
    return {left, right};
}

TEST(AmplitudeOf, Minus70DecibelsAreTenUnits) {
    EXPECT_EQ(AmplitudeOf(-70), 10);
    EXPECT_EQ(AmplitudeOf(0), 32767);
    EXPECT_EQ(AmplitudeOf(-20), 3277);
    EXPECT_EQ(AmplitudeOf(6), 32767);
    EXPECT_EQ(AmplitudeOf(-120), 0);
}

TEST(RadioTimeline, ReportsWhereEverySongBeginsAndEnds) {
    RadioScript script;
    script.Pause(1.0)
        .Song(SongOf(10, 1))
        .Pause(1.5)
        .Click(5000, 0.01)
        .Silence(0.5)
        .Song(SongOf(20, 2))
        .Pause(1);
    const RadioTimeline at44(script, 44100);
    ASSERT_EQ(at44.Songs().size(), 2U);
    EXPECT_EQ(at44.Songs()[0], (ScriptedSong{44100, 44100 * 11, SongOf(10, 1).Media}));
    EXPECT_EQ(at44.Songs()[1].Begin, 44100U * 13 + 441);
    EXPECT_EQ(at44.Songs()[1].End, 44100U * 33 + 441);
    EXPECT_EQ(at44.Length(), 44100U * 34 + 441);

    const RadioTimeline at48(script, 48000);
    EXPECT_EQ(at48.Songs()[0].Begin, 48000U);
    EXPECT_EQ(at48.Length(), 48000U * 34 + 480);
}

TEST(RadioTimeline, AFastRadioIsShorterInFrames) {
    RadioScript script;
    script.Song(SongOf(1000, 1)).Drift(100);
    EXPECT_EQ(RadioTimeline(script, 44100).Length(), 44'095'590U);  // 44100000 / 1.0001
}

TEST(RadioTimeline, BetweenSongsTheMediaAreThoseOfTheLastSong) {
    RadioScript script;
    script.Pause(1).Song(SongOf(2, 1)).Pause(1).Song(SongOf(2, 2));
    const RadioTimeline line(script, 44100);
    EXPECT_EQ(line.MediaAt(0).Song, "");
    EXPECT_EQ(line.MediaAt(44099).Song, "");
    EXPECT_EQ(line.MediaAt(44100).Song, "Song 1");
    EXPECT_EQ(line.MediaAt(44100 * 4 - 1).Song, "Song 1");
    EXPECT_EQ(line.MediaAt(44100 * 4).Song, "Song 2");
    EXPECT_EQ(line.MediaAt(44100 * 100).Song, "Song 2");
}

TEST(ScriptSource, LevelsAreThoseOfTheScriptInEveryBuffer) {
    ScriptSong song = SongOf(3, 7);
    song.PeakLeft = 3000;
    song.PeakRight = 25000;
    RadioScript script;
    script.Pause(1, -70).Song(song).Silence(1).Click(4000, 0.05);
    const std::vector<Frame> frames = ReadAll(script);
    for (size_t at = 0; at < 20; ++at)
        EXPECT_EQ(PeaksOf(std::span(frames).subspan(at * 2205, 2205)), std::pair(10, 10));
    for (size_t at = 20; at < 80; ++at) {
        EXPECT_EQ(PeaksOf(std::span(frames).subspan(at * 2205, 2205)), std::pair(3000, 25000));
    }
    EXPECT_EQ(PeaksOf(std::span(frames).subspan(44100 * 4, 44100)), std::pair(0, 0));
    EXPECT_EQ(PeaksOf(std::span(frames).subspan(44100 * 5, 2205)), std::pair(4000, 4000));
}

TEST(ScriptSource, TonesAndChordsReachTheirPeakAndNeverPassIt) {
    for (const SongSound sound : {SongSound::Tone, SongSound::Chord}) {
        ScriptSong song = SongOf(2, 3);
        song.PeakLeft = 8000;
        song.PeakRight = 32767;
        song.Sound = sound;
        const std::vector<Frame> frames = ReadAll(RadioScript().Song(song));
        EXPECT_EQ(PeaksOf(frames), std::pair(8000, 32767));
        for (size_t at = 0; at + 2205 <= frames.size(); at += 2205) {
            EXPECT_GT(PeaksOf(std::span(frames).subspan(at, 2205)).first, 4000);
        }
    }
}

TEST(ScriptSource, TheEndComesOnceAndReadsNothingMore) {
    ScriptSource source(RadioScript().Song(SongOf(0.06, 1)), 44100);
    std::vector<Frame> buffer(2205);
    EXPECT_EQ(source.Read(buffer), 2205U);
    EXPECT_EQ(source.Read(buffer), 441U);
    EXPECT_EQ(source.Read(buffer), 0U);
}

TEST(ScriptSource, SilenceForeverFollowsTheLastItem) {
    ScriptSource source(RadioScript().Song(SongOf(1, 1)).SilenceForever(), 44100);
    source.Skip(44100ULL * 3600 * 24 * 30);
    const std::vector<Frame> frames = ReadFrames(source, 5000);
    EXPECT_EQ(frames, std::vector<Frame>(5000));
    EXPECT_EQ(source.Truth().Length(), 44100U);
}

TEST(ScriptSource, FramesDoNotDependOnThePortionsTheyAreReadIn) {
    RandomRadioOptions options;
    options.Seconds = 60;
    options.ShortestSong = 5;
    options.LongestSong = 12;
    options.RestChance = 1;
    options.OverlapChance = 0.5;
    options.ClickChance = 0.5;
    options.JingleChance = 0.3;
    for (uint64_t seed = 1; seed <= 5; ++seed) {
        options.Seed = seed;
        const RadioScript script = RandomRadio(options);
        const std::vector<Frame> whole = ReadAll(script);
        ScriptSource source(script, 44100);
        SimRandom random(seed);
        std::vector<Frame> pieces;
        while (pieces.size() < whole.size()) {
            const auto part =
                ReadFrames(source, static_cast<size_t>(random.Between(int64_t{1}, int64_t{5000})));
            pieces.insert(pieces.end(), part.begin(), part.end());
        }
        EXPECT_TRUE(whole == pieces) << "seed " << seed;
        for (int jump = 0; jump < 50; ++jump) {
            const auto at = static_cast<size_t>(random.Below(whole.size() - 100));
            source.Seek(at);
            const auto part = ReadFrames(source, 100);
            EXPECT_TRUE(std::ranges::equal(part, std::span(whole).subspan(at, 100))) << "seed " << seed;
        }
    }
}

TEST(ScriptSource, SkipPassesOverExactlySoManyFrames) {
    const RadioScript script = RadioScript().Song(SongOf(10, 9));
    const std::vector<Frame> whole = ReadAll(script);
    ScriptSource source(script, 44100);
    ReadFrames(source, 1000);
    source.Skip(12345);
    EXPECT_EQ(ReadFrames(source, 1)[0], whole[13345]);
    source.Skip(44100 * 100);
    EXPECT_TRUE(ReadFrames(source, 1).empty());
}

TEST(ScriptSource, SongsOfDifferentSeedsDiffer) {
    std::set<uint64_t> hashes;
    for (uint64_t seed = 1; seed <= 500; ++seed) {
        ScriptSource source(RadioScript().Song(SongOf(0.5, seed)), 44100);
        hashes.insert(HashOf(std::span<const Frame>(ReadFrames(source, 2205))));
    }
    EXPECT_EQ(hashes.size(), 500U);
}

TEST(ScriptSource, ARestIsQuietAndTheSongGoesOnAfterIt) {
    ScriptSong song = SongOf(10, 5);
    song.Rests = {{4, 0.4, -70}};
    const std::vector<Frame> with = ReadAll(RadioScript().Song(song));
    song.Rests.clear();
    const std::vector<Frame> without = ReadAll(RadioScript().Song(song));
    ASSERT_EQ(with.size(), without.size());
    const size_t begin = 4 * 44100;
    const size_t end = begin + 17640;
    EXPECT_TRUE(std::equal(with.begin(), with.begin() + begin, without.begin()));
    EXPECT_TRUE(std::equal(with.begin() + end, with.end(), without.begin() + end));
    EXPECT_EQ(PeaksOf(std::span(with).subspan(begin, end - begin)), std::pair(10, 10));
}

TEST(ScriptSource, FadesRiseAndFallAcrossTheirLength) {
    ScriptSong song = SongOf(10, 5, 20000);
    song.FadeInSeconds = 2;
    song.FadeOutSeconds = 1;
    const std::vector<Frame> frames = ReadAll(RadioScript().Song(song));
    const auto peakAt = [&](double second) {
        return PeaksOf(std::span(frames).subspan(static_cast<size_t>(second * 44100), 882)).first;
    };
    EXPECT_LT(peakAt(0), 220);
    EXPECT_NEAR(peakAt(1), 10000, 250);
    EXPECT_EQ(peakAt(5), 20000);
    EXPECT_NEAR(peakAt(9.5), 10000, 450);
    EXPECT_LT(peakAt(9.98), 420);
    EXPECT_EQ(frames[0], Frame{});
}

TEST(ScriptSource, OverlappingSongsFadeIntoOneAnother) {
    ScriptSong first = SongOf(10, 1, 15000);
    first.OverlapSeconds = 3;
    RadioScript script;
    script.Song(first).Song(SongOf(10, 2, 15000)).Pause(1);
    const RadioTimeline line(script, 44100);
    EXPECT_EQ(line.Songs()[0].End, 441000U);
    EXPECT_EQ(line.Songs()[1].Begin, 308700U);
    EXPECT_EQ(line.Songs()[1].End, 308700U + 441000);

    const std::vector<Frame> frames = ReadAll(script);
    const std::vector<Frame> alone = ReadAll(RadioScript().Song(SongOf(10, 2, 15000)));
    // Half way both sound at half their level; after the fade the second song sounds as if alone.
    const size_t middle = 308700 + 66150;
    const Frame a = ReadAll(RadioScript().Song(SongOf(10, 1, 15000)))[middle];
    const Frame b = alone[66150];
    EXPECT_NEAR(frames[middle].Left, (a.Left + b.Left) / 2, 2);
    EXPECT_TRUE(
        std::equal(frames.begin() + 441000, frames.begin() + 308700 + 441000, alone.begin() + 132300));
}

TEST(ScriptSource, AnOverlapBeforeAPauseIsNone) {
    ScriptSong song = SongOf(10, 1);
    song.OverlapSeconds = 3;
    const RadioTimeline line(RadioScript().Song(song).Pause(1).Song(SongOf(5, 2)), 44100);
    EXPECT_EQ(line.Songs()[1].Begin, 441000U + 44100);
}

TEST(ScriptSource, StampedSongsCarryTheirFrameNumbers) {
    RadioScript script;
    script.Pause(1).Song(SongOf(3, 1)).Pause(1).Song(SongOf(3, 2)).Stamped();
    const std::vector<Frame> frames = ReadAll(script);
    const RadioTimeline line(script, 44100);
    for (const ScriptedSong& song : line.Songs()) {
        for (uint64_t frame = song.Begin; frame < song.End; ++frame) {
            ASSERT_EQ(FrameOfStamp(frames[static_cast<size_t>(frame)], 0), frame);
        }
    }
    EXPECT_EQ(PeaksOf(std::span(frames).first(44100)), std::pair(10, 10));
}

TEST(FrameStamp, IsFoundNearestToWhatIsExpected) {
    for (const uint64_t frame :
         {0ULL, 1ULL, 32767ULL, 32768ULL, (1ULL << 30) - 1, 1ULL << 30, 113'000'000'000ULL}) {
        for (const int64_t off : {0LL, 1LL, -1LL, 400'000'000LL, -400'000'000LL}) {
            const int64_t near = static_cast<int64_t>(frame) + off;
            if (near < 0) continue;
            EXPECT_EQ(FrameOfStamp(StampOf(frame), static_cast<uint64_t>(near)), frame)
                << frame << " " << off;
        }
    }
}

TEST(FrameStamp, NoFiftyMillisecondsOfStampsAreSilent) {
    for (uint64_t begin = 0; begin < 40000; begin += 7) {
        EXPECT_GT(std::max(std::abs(StampOf(begin).Right), std::abs(StampOf(begin + 2204).Right)), 1000);
    }
}

TEST(RandomRadio, IsTheSameForTheSameSeedAndAnotherForAnother) {
    RandomRadioOptions options;
    options.Seconds = 600;
    const auto hashOf = [&](uint64_t seed) {
        options.Seed = seed;
        return HashOf(std::span<const Frame>(ReadAll(RandomRadio(options))));
    };
    EXPECT_EQ(hashOf(1), hashOf(1));
    EXPECT_NE(hashOf(1), hashOf(2));
}

TEST(RandomRadio, KeepsToItsLengthsAndMakesNoTwoSongsAlike) {
    RandomRadioOptions options;
    options.Seed = 42;
    options.Seconds = 24 * 3600;
    const RadioTimeline line(RandomRadio(options), 44100);
    std::set<std::pair<std::string, std::string>> names;
    uint64_t lastEnd = 0;
    for (const ScriptedSong& song : line.Songs()) {
        EXPECT_GE(song.End - song.Begin, 120U * 44100);
        EXPECT_LE(song.End - song.Begin, 300U * 44100 + 1);
        EXPECT_GE(song.Begin - lastEnd, 44100U);
        EXPECT_LE(song.Begin - lastEnd, 110251U);
        lastEnd = song.End;
        names.emplace(song.Media.Artist, song.Media.Song);
    }
    EXPECT_GT(line.Length(), 24U * 3600 * 44100);
    EXPECT_LT(line.Length() - lastEnd, 110251U);
    EXPECT_EQ(names.size(), line.Songs().size());
    EXPECT_GT(names.size(), 280U);
}

}  // namespace
}  // namespace Corvetape
