#pragma once

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "audio/wav_file.h"
#include "platform/linux/files/linux_files.h"
#include "platform/wave_in.h"
#include "support/read_sound.h"
#include "support/test_sound.h"

namespace Corvetape::Test {

inline constexpr uint32_t Rate = 44100;

/// A recording of three songs of noise with silence between them. All are on boundaries of 50 ms, so that
/// each song must come out with its first and last frame.
struct Recording {
    std::vector<Frame> Frames;
    std::vector<std::vector<Frame>> Songs;
};

struct RecordingShape {
    uint32_t Seed = 1;
    uint32_t FramesPerSecond = Rate;
    size_t Songs = 3;
    size_t Seconds = 3;  ///< of the first song
    size_t Growth = 1;   ///< seconds that each next song is longer
};

inline Recording MakeRecording(const RecordingShape& shape = {}) {
    Recording made;
    const size_t rate = shape.FramesPerSecond;
    for (uint32_t song = 0; song < shape.Songs; ++song) {
        made.Songs.push_back(Noise((shape.Seconds + song * shape.Growth) * rate, shape.Seed * 100 + song));
        made.Frames.insert(made.Frames.end(), made.Songs.back().begin(), made.Songs.back().end());
        made.Frames.insert(made.Frames.end(), rate, Frame{});
    }
    return made;
}

/// Writes a sound file in a format of libsndfile; with one channel only the left one.
inline void WriteSound(const std::string& path, int format, std::span<const Frame> frames, int channels = 2,
                       uint32_t rate = Rate) {
    SF_INFO info{};
    info.samplerate = static_cast<int>(rate);
    info.channels = channels;
    info.format = format;
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_WRITE, &info), sf_close);
    ASSERT_NE(file, nullptr) << path << ": " << sf_strerror(nullptr);
    // As floats: this library's MP3 encoder takes whole numbers for full scale.
    std::vector<float> samples;
    for (const Frame& frame : frames) {
        samples.push_back(static_cast<float>(frame.Left) / 32768);
        if (channels == 2) samples.push_back(static_cast<float>(frame.Right) / 32768);
    }
    const auto count = static_cast<sf_count_t>(frames.size());
    ASSERT_EQ(sf_writef_float(file.get(), samples.data(), count), count);
}

/// The text of a tag in a WAV file.
inline std::string TagOf(const std::string& path, const std::string& id) {
    LinuxFiles files;
    const std::optional<WavInfo> info = ReadWavInfo(files, path);
    if (!info) return "no WAV file";
    for (const auto& [name, text] : info->Tags) {
        if (name == id) return text;
    }
    return "";
}

}  // namespace Corvetape::Test
