// The cuts of a made-up hour with known boundaries, held against the radio frame by frame.

#include <gtest/gtest.h>

#include "platform/virtual/sim_random.h"
#include "scenario/song_audio.h"

namespace Corvetape::Test {
namespace {

constexpr uint64_t BufferFrames = 2205;
constexpr size_t SongsOfTheHour = 18;
constexpr double NoiseFloor = -70;

/// 18 songs of three to three and a half minutes. Gaps of 1.0 to 2.5 s; in each song rests of 0.1 to 0.4 s
/// that are as quiet as a gap. One gap is long enough to press something in it.
RadioScript MadeUpHour(SongSound sound) {
    SimRandom random(18);
    RadioScript script;
    script.Pause(3, NoiseFloor);
    for (uint64_t number = 1; number <= SongsOfTheHour; ++number) {
        ScriptSong song;
        song.Seconds = random.Between(180.0, 210.0);
        song.Seed = number;
        song.Sound = sound;
        song.PeakLeft = static_cast<int16_t>(random.Between(int64_t{3000}, int64_t{30000}));
        song.PeakRight = static_cast<int16_t>(random.Between(int64_t{3000}, int64_t{30000}));
        for (double at = 20; at < song.Seconds - 20; at += random.Between(25.0, 40.0)) {
            song.Rests.push_back({at, random.Between(0.1, 0.4), NoiseFloor});
        }
        song.Media = {"Radio Hour", "Band " + std::to_string(number), "Song " + std::to_string(number), "",
                      ""};
        script.Song(std::move(song));
        // The first gaps are the shortest and the longest that occur.
        const double gap = number == 1 ? 1.0 : (number == 2 ? 2.5 : random.Between(1.0, 2.5));
        script.Pause(gap, NoiseFloor);
    }
    return script.Pause(20, NoiseFloor).SilenceForever();
}

double SecondsOf(const RadioTimeline& radio, uint64_t frame) {
    return static_cast<double>(frame) / radio.FramesPerSecond();
}

/// A world with the hour on the air. Each song is compared with the radio when it would be encoded, and goes.
class HourWorld : public World {
 public:
    explicit HourWorld(WorldOptions options) : World(std::move(options)) {
        Setup.Encode = [this](World&, const TransferredSong& song) {
            const HeardSong* heard = HeardAs(song);
            const std::string compared =
                heard == nullptr ? "never closed" : ComparedWithRadio(*this, *heard, song.TempFile);
            if (compared != "equal") Differences += song.MusicFile + ": " + compared + "\n";
            Disk().Delete(song.TempFile);
        };
    }

    std::string Differences;  ///< of files from the radio, one a line
};

/// What is wrong with the songs of the hour; empty if nothing is.
std::string Judgement(HourWorld& world) {
    const auto radio = world.Truth();
    std::vector<HeardSong> kept;
    for (const HeardSong& song : world.Closed) {
        if (song.Song.Fate == SongFate::Kept) kept.push_back(song);
    }
    if (kept.size() != radio->Songs().size()) return std::to_string(kept.size()) + " songs were kept";
    if (world.Transferred.size() != kept.size()) return "not all were handed over";
    std::string faults = world.Differences;
    for (size_t number = 0; number < kept.size(); ++number) {
        const ScriptedSong& song = radio->Songs()[number];
        const std::string name = song.Media.Song + " ";
        const HeardSong& heard = kept[number];
        if (heard.RadioBegin >= song.Begin + BufferFrames) faults += name + "lacks its beginning\n";
        if (heard.RadioEnd + BufferFrames <= song.End) faults += name + "lacks its end\n";
        if (number > 0 && heard.RadioBegin < radio->Songs()[number - 1].End)
            faults += name + "begins early\n";
        if (number + 1 < kept.size() && heard.RadioEnd > radio->Songs()[number + 1].Begin) {
            faults += name + "ends late\n";
        }
        const std::string music =
            std::string(MusicFolder) + "/Radio Hour/" + song.Media.Artist + " - " + song.Media.Song + ".wav";
        if (world.Transferred[number].MusicFile != music) {
            faults += name + "is called " + world.Transferred[number].MusicFile + "\n";
        }
    }
    return faults;
}

/// Runs past the end of the hour, with its last song handed over.
void PlayTheHour(HourWorld& world) {
    world.RunFor(SecondsOf(*world.Truth(), world.Truth()->Length()) + 10 - world.Now());
}

class CutsBySilence : public testing::TestWithParam<SongSound> {};

TEST_P(CutsBySilence, WithCalibratedValuesEveryBoundaryIsFoundAndNoneInvented) {
    WorldOptions options;
    options.Radio = MadeUpHour(GetParam());
    HourWorld world(std::move(options));
    ASSERT_TRUE(world.Load());
    frmMain& form = world.Form();
    form.tbsMain.Select("TAB_AUDIO");  // the quietest level is measured while it is shown
    ASSERT_TRUE(world.RunUntil([&] { return world.Now() > 2.8; }, 5));

    // In the pause ahead of the first song.
    form.cmdAutoPauseParams.Press();
    EXPECT_EQ(form.txtSilenceAmplitude.Text(), "30");  // 20 above noise at -70 dBFS
    EXPECT_EQ(form.txtEndOfSilenceAmplitude.Text(), "36");
    EXPECT_EQ(form.chkDetectSilenceByPeak.Value(), 0);
    ASSERT_TRUE(form.txtLengthOfPause.SetValueText("500"));
    form.tbsMain.Select("TAB_RECORDING");
    form.chkStartStop[0].Value(1);

    PlayTheHour(world);
    EXPECT_EQ(Judgement(world), "");
}

INSTANTIATE_TEST_SUITE_P(Sounds, CutsBySilence, testing::Values(SongSound::Noise, SongSound::Chord));

/// Delays of titles by chance, other ones for each song.
std::function<double(size_t)> DelaysUpTo(double longest) {
    return [longest](size_t song) {
        SimRandom random(MixSeed(7, song));
        return song == 3 ? longest : random.Between(0.0, longest);
    };
}

WorldOptions HourByTitles(double longestDelay) {
    WorldOptions options;
    options.Radio = MadeUpHour(SongSound::Noise);
    options.TitleDelay = DelaysUpTo(longestDelay);
    options.Settings = {{ProviderOfRadio, "EndOfSongDetection", "1"}};
    return options;
}

TEST(CutsByMediaData, WithTitlesUpTo2500MillisecondsLateNothingOfASongIsLost) {
    HourWorld world(HourByTitles(2.5));
    ASSERT_TRUE(world.StartRecording());
    // A title that is 2.5 s late is seen up to half a second later; the window has to begin ahead of the gap.
    world.Form().sldEndOfSongThreshold(0).Value(-8);
    PlayTheHour(world);
    world.Finish();
    EXPECT_EQ(Judgement(world), "");
}

TEST(CutsByMediaData, TheDefaultWindowCoversTitlesUpTo2400MillisecondsLate) {
    HourWorld world(HourByTitles(2.4));
    ASSERT_TRUE(world.StartRecording());
    PlayTheHour(world);
    world.Finish();
    EXPECT_EQ(Judgement(world), "");
}

}  // namespace
}  // namespace Corvetape::Test
