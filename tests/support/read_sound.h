#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/linux/sound/sound_file_source.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// The frames of a sound file as 16-bit stereo at its own rate; none and a failure if it cannot be read.
inline std::vector<Frame> ReadSound(const std::string& path) {
    const auto opened = SoundFileSource::Open(path, SoundFileSource::NativeRate(path));
    if (!opened.Source) {
        ADD_FAILURE() << opened.Error;
        return {};
    }
    std::vector<Frame> frames(static_cast<size_t>(opened.Source->TotalFrames()));
    frames.resize(opened.Source->Read(frames));
    return frames;
}

}  // namespace Corvetape
