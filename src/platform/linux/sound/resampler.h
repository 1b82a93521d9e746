#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace Corvetape {

/// Converts a stereo signal from one rate to another: windowed sinc, one set of weights for each position
/// that an output frame can have between two input frames.
///
/// Frequencies up to 0.92 of the lower half rate pass, everything from that half rate on is kept below
/// -100 dB. The signal is not delayed: the first frame of the output is at the time of the first of the
/// input. The same input always gives the same output.
class Resampler {
 public:
    /// Fills interleaved left and right samples, whole frames, and returns how many frames it could fill;
    /// fewer only at the end.
    using Source = std::function<size_t(std::span<float> interleaved)>;

    /// Rates in frames per second, both at least 1.
    Resampler(uint32_t from, uint32_t to, Source source);

    /// Fills `interleaved` with whole frames; returns how many. Fewer only at the end of the source.
    size_t Read(std::span<float> interleaved);

 private:
    void MakeWeights(double cutoff);
    bool Refill();
    void WeightsAt(uint64_t position);

    Source Input;
    uint64_t Up = 1;    // output positions between two input frames
    uint64_t Down = 1;  // positions from one output frame to the next
    size_t Half = 0;    // input frames on each side that have weight
    size_t Taps = 0;
    size_t Phases = 0;           // sets of weights from one input frame to the next
    bool Blended = false;        // too many positions for a set each: neighbours are blended
    std::vector<float> Weights;  // phases + 1 sets
    std::vector<float> Blend;

    std::vector<float> Left;
    std::vector<float> Right;
    size_t Filled = 0;      // frames in left and right
    size_t At = 0;          // first frame that the next output frame needs
    uint64_t Position = 0;  // of the next output frame after frame at + half - 1, in 1/up
    size_t End = 0;         // frames of the signal in left and right; known once `ended`
    bool Ended = false;
    std::vector<float> Block;
};

}  // namespace Corvetape
