#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "audio/spectrum.h"
#include "platform/wave_in.h"

namespace Corvetape {

inline constexpr size_t MelBands = 32;         ///< triangles from 40 Hz to 15 kHz
inline constexpr size_t MelCoefficients = 12;  ///< of the cosine transform of the mel bands
inline constexpr size_t StereoCoefficients = 2;
inline constexpr size_t TextureSize = MelCoefficients + StereoCoefficients;

using MelSpectrum = std::array<float, MelBands>;  ///< log10 of the power of each triangle, -4 and more
using Texture = std::array<float, TextureSize>;

/// What a slot of 50 ms sounds like, as far as the search for a boundary between two songs asks.
struct SlotFeatures {
    MelSpectrum Mel{};  ///< of the middle channel
    Texture Sound{};    ///< shape of the mel spectrum, then how wide the stereo image is and where
    float Flux = 0;     ///< mean change of the mel bands since the slot before; 0 without one
};

/// What each mel band adds to each coefficient.
using MelShapeTable = std::array<std::array<float, MelCoefficients>, MelBands>;

/// The first coefficients of the orthonormal cosine transform of a mel spectrum, halved: how the part of a
/// texture that comes from the middle channel follows from the mel spectrum.
const MelShapeTable& ShapeOfMel();

/// Measures slots one after the other. Nothing is allocated but in the constructor.
class FeatureMeter {
 public:
    /// `framesPerSecond` is 44100 or 48000.
    explicit FeatureMeter(uint32_t framesPerSecond);

    /// The features of the next slot. The middle 2048 of its frames are looked at; of a slot that is
    /// shorter all, with silence after them.
    SlotFeatures Measure(std::span<const Frame> frames);

    /// Forgets the slot before: the next one follows something else, and has no flux.
    void Restart() { Before.reset(); }

 private:
    struct Triangle {
        size_t FirstBin = 0;
        std::vector<float> Weights;
    };
    using BandPowers = std::array<float, MelBands>;

    BandPowers Bands();

    std::array<float, Spectrum::Size> Window;
    std::array<Triangle, MelBands> Triangles;
    Corvetape::Spectrum Fourier;
    std::optional<MelSpectrum> Before;
};

/// The features of the last slots, by the number of the slot, which only grows. Older ones are forgotten.
/// Nothing is allocated but in the constructor.
class FeatureHistory {
 public:
    /// Keeps `slots` of them, at least one.
    explicit FeatureHistory(size_t slots);

    void Add(const SlotFeatures& features);

    /// Forgets all; the next slot that is added has the number `slot`, 0 or more.
    void Restart(int64_t slot);

    int64_t First() const { return Oldest; }  ///< the oldest slot that is kept
    int64_t End() const { return Next; }      ///< one more than the newest

    /// A slot from First() up to, not including, End().
    const SlotFeatures& operator[](int64_t slot) const {
        return Kept[static_cast<size_t>(slot) % Kept.size()];
    }

 private:
    std::vector<SlotFeatures> Kept;
    int64_t Oldest = 0;
    int64_t Next = 0;
};

}  // namespace Corvetape
