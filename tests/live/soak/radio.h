#pragma once

#include <array>
#include <cstdint>

#include "platform/wave_in.h"

namespace Corvetape {

/// A made-up radio at 44.1 kHz that plays for ever. Each frame follows from its number alone, and two frames
/// in a row are nowhere else, so that whatever was recorded of it can be put to its place.
class Radio {
 public:
    static constexpr uint64_t FramesPerSecond = 44100;

    /// Digital silence between the songs, noise within them, up to 8000 loud.
    static Frame At(uint64_t frame);
    static bool Sounds(uint64_t frame);

 private:
    static constexpr std::array<uint64_t, 5> SongSeconds = {97, 143, 178, 61, 122};
    static constexpr uint64_t PauseSeconds = 2;
};

}  // namespace Corvetape
