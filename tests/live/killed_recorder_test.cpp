// The built command line, killed in the middle of a song, and its next start.
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <span>

#include "live/recorder.h"
#include "live/sound_server.h"
#include "live/test_process.h"
#include "support/live_session.h"
#include "support/read_sound.h"
#include "support/temp_folder.h"
#include "support/test_sound.h"

namespace Corvetape {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr size_t Second = 44100;

/// Parameter: how songs end.
class KilledRecorderTest : public testing::TestWithParam<int> {
 protected:
    KilledRecorderTest() { server.Start(); }

    TestProcess::Start Recording(std::vector<std::string> arguments) const {
        TestProcess::Start start;
        start.Command = {CORVETAPE_BINARY_DIR "/bin/corvetape-cli",
                         "record",
                         "--home",
                         folder / "home",
                         "--input",
                         "radio.monitor",
                         "--set",
                         "Source.IgnoreShortSongs=1",
                         "--set",
                         "Source.EndOfSongDetection=" + std::to_string(GetParam())};
        start.Command.insert(start.Command.end(), arguments.begin(), arguments.end());
        start.Environment = {{"PULSE_SERVER", server.Address()}};
        start.Output = folder / "printed";
        return start;
    }

    /// Bytes of the largest WAV file below a folder of the recorder's home, with its path; 0 without one.
    std::pair<uint64_t, std::string> LargestIn(const std::string& below) const {
        std::pair<uint64_t, std::string> largest;
        std::error_code gone;
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(folder / ("home/" + below), gone)) {
            if (entry.path().extension() != ".wav") continue;
            largest = std::max(largest, {entry.file_size(gone), entry.path().string()});
        }
        return largest;
    }

    /// What was heard from the first sound on.
    static std::span<const Frame> FromFirstSound(std::span<const Frame> frames) {
        const auto first = std::ranges::find_if(frames, [](const Frame& frame) { return frame != Frame{}; });
        return frames.subspan(static_cast<size_t>(first - frames.begin()));
    }

    LiveSession session;
    SoundServer server{ServerKind::PulseAudio};
    const TempFolder folder;
};

TEST_P(KilledRecorderTest, LosesLessThanASecondOfWhatHadArrived) {
    const std::vector<Frame> noise = Noise(40 * Second, 77);
    WriteWave(server.Folder / "noise.wav", noise, Second);
    // Beside the recorder, something that notes what the server gives.
    Recorder witness(session, server.Address());
    ASSERT_TRUE(witness.Begin("radio.monitor"));
    auto recorder = std::make_unique<TestProcess>(Recording({}));
    ASSERT_TRUE(session.WaitFor(
        [&] {
            // One that a busy machine's server has not answered in time has ended.
            if (recorder->Wait(milliseconds(0))) recorder = std::make_unique<TestProcess>(Recording({}));
            return server.Recordings() == 2;
        },
        seconds(60)));
    auto player = server.Play(server.Folder / "noise.wav");
    // Long enough for the ring to have been drained once, and to hold some seconds again.
    const auto heard = [&] { return FromFirstSound(witness.Frames); };
    ASSERT_TRUE(session.WaitFor([&] { return heard().size() > 13 * Second; }, seconds(120)));
    recorder->Kill();
    const size_t heardThen = heard().size();
    witness.End();
    player.reset();

    TestProcess next(Recording({"--seconds", "4"}));
    EXPECT_EQ(next.Wait(seconds(60)), 0);
    const std::string song = LargestIn("Music").second;
    ASSERT_NE(song, "") << "nothing was recovered";
    const std::vector<Frame> frames = ReadSound(song);
    const std::span<const Frame> found = FromFirstSound(frames);
    ASSERT_GT(found.size(), 8 * Second);
    // The recorder may have begun while it played already. From there on nothing is missing.
    const auto begin = std::ranges::search(noise, found.first(100)).begin();
    ASSERT_NE(begin, noise.end());
    const auto end = static_cast<size_t>(begin - noise.begin()) + found.size();
    EXPECT_EQ(Comparison(std::span(begin, found.size()), found), "equal");
    EXPECT_GT(end + Second, heardThen);
    RecordProperty("FramesLost", static_cast<int>(heardThen) - static_cast<int>(end));
}

std::string NameOfMode(const testing::TestParamInfo<int>& mode) {
    constexpr std::array<const char*, 4> names = {"BySilence", "ByMediaData", "ByFixedTime", "Automatic"};
    return names[static_cast<size_t>(mode.param)];
}

INSTANTIATE_TEST_SUITE_P(Modes, KilledRecorderTest, testing::Range(0, 4), NameOfMode);

}  // namespace
}  // namespace Corvetape
