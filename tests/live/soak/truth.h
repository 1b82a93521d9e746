#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "live/soak/radio.h"

namespace Corvetape {

/// Frames of the radio from `Begin` to before `End`.
struct Stretch {
    uint64_t Begin = 0;
    uint64_t End = 0;

    uint64_t Frames() const { return End - Begin; }
};

/// What became of the radio's sound: each kept frame put to its place.
class Truth {
 public:
    /// Knows the first `frames` of the radio.
    explicit Truth(uint64_t frames);

    /// Takes what a kept file holds.
    void Take(std::span<const Frame> kept);

    /// Stretches of sound from the first kept frame up to `end` that no file has.
    std::vector<Stretch> Missing(uint64_t end) const;

    uint64_t FirstKept() const;

    /// The last kept frame before `frame` and the first one from there on.
    Stretch GapAround(uint64_t frame) const;

    uint64_t KeptFrames = 0;     ///< of the radio's sound, each once
    uint64_t TwiceFrames = 0;    ///< that were kept before
    uint64_t SilentFrames = 0;   ///< of silence in the files
    uint64_t ForeignFrames = 0;  ///< that the radio has never played

 private:
    static constexpr uint64_t AnchorDistance = 441;

    size_t Place(std::span<const Frame> kept, size_t from);
    void Keep(uint64_t frame);

    std::map<uint64_t, uint64_t> Anchors;  ///< place of two frames in a row
    std::vector<bool> Kept;
};

}  // namespace Corvetape
