#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "platform/wave_in.h"

namespace Corvetape {

/// What a source knows of the piece that it is playing. Empty texts where it knows nothing.
struct SourceMedia {
    std::string StationName;
    std::string Artist;
    std::string Song;
    std::string Album;
    std::string Cover;

    bool operator==(const SourceMedia&) const = default;
};

/// A signal that is made or read on demand: a sound file, a made-up radio, a script. It knows no time.
class SoundSource {
 public:
    virtual ~SoundSource() = default;

    /// Frames per second of what Read gives.
    virtual uint32_t FramesPerSecond() const = 0;

    /// Fills `frames` from its beginning and returns how many it could fill; fewer only at the end.
    virtual size_t Read(std::span<Frame> frames) = 0;

    /// Passes over `frames` without giving them, as if they had been read; stops at the end.
    virtual void Skip(uint64_t frames) {
        std::array<Frame, 1024> passed;
        while (frames > 0) {
            const auto part = static_cast<size_t>(std::min<uint64_t>(frames, passed.size()));
            if (Read(std::span(passed).first(part)) < part) return;
            frames -= part;
        }
    }

    /// What plays at the present position.
    virtual SourceMedia NowPlaying() const { return {}; }
};

}  // namespace Corvetape
