// The loops over the samples. They are written plainly and left to the compiler, which makes wide
// instructions of them; where it can, a second version is made for processors with wider ones (programs that
// are not ELF have no linker that could choose between the two). Frames are taken by reference: of copies the
// compiler makes no such loop.
#include <algorithm>
#include <cfloat>
#include <cstddef>

#include "audio/analyze.h"

namespace Corvetape {

namespace {

constexpr int32_t Least = -32768;
constexpr int32_t Most = 32767;

int32_t Magnitude(int16_t sample) {
    return sample < 0 ? -sample : sample;
}

constexpr int32_t NoGain = 100;

/// Up to here the fast way may be taken, with any sample; not at all where floats are computed wider.
constexpr int32_t LargestFastGain = FLT_EVAL_METHOD == 0 ? 65'535 : -1;

/// A sample at a gain in per cent, truncated toward zero, if that fits into 16 bits; else a number of the
/// same sign that does not fit either. In single precision because processors without AVX2 multiply and
/// divide whole numbers of 32 bits slowly. A product that leads to 16 bits is below 2^22 and so
/// exact, and the truncated hundredth is right for every one of them.
int32_t AtGain(int16_t sample, float percent) {
    return static_cast<int32_t>(static_cast<float>(sample) * percent * 0.01F);
}

/// For gains of 0 to 100 per cent, at which nothing overflows.
#if defined(__x86_64__) && defined(__ELF__) && defined(__GNUC__) && !defined(__clang__)
[[gnu::target_clones("default", "avx2")]]
#endif
void Attenuate(std::span<Frame> frames, int32_t levelMultiplier) {
    const auto percent = static_cast<float>(levelMultiplier);
    for (Frame& frame : frames) {
        frame.Left = static_cast<int16_t>(AtGain(frame.Left, percent));
        frame.Right = static_cast<int16_t>(AtGain(frame.Right, percent));
    }
}

/// For gains above 100 per cent, without a branch. At such a gain full scale overflows again, so it does not
/// matter which channel overflowed first; and a sample keeps its sign, and 0 stays the only 0.
#if defined(__x86_64__) && defined(__ELF__) && defined(__GNUC__) && !defined(__clang__)
[[gnu::target_clones("default", "avx2")]]
#endif
void Boost(std::span<Frame> frames, int32_t levelMultiplier) {
    const auto percent = static_cast<float>(levelMultiplier);
    for (Frame& frame : frames) {
        const int32_t left = AtGain(frame.Left, percent);
        const int32_t right = AtGain(frame.Right, percent);
        const bool fits = (left >= Least) & (left <= Most) & (right >= Least) & (right <= Most);
        const int32_t fullLeft = left > 0 ? Most : left < 0 ? Least : 0;
        const int32_t fullRight = right >= 0 ? Most : Least;
        frame.Left = static_cast<int16_t>(fits ? left : fullLeft);
        frame.Right = static_cast<int16_t>(fits ? right : fullRight);
    }
}

void ToFullScale(Frame& frame) {
    if (frame.Left != 0) frame.Left = frame.Left > 0 ? Most : Least;
    frame.Right = frame.Right >= 0 ? Most : Least;  // a right 0 goes up: the asymmetry is a rule
}

void AmplifyExactly(std::span<Frame> frames, int32_t levelMultiplier) {
    const auto fits = [](int64_t value) { return value >= Least && value <= Most; };
    for (Frame& frame : frames) {
        const int64_t left = int64_t{frame.Left} * levelMultiplier / 100;
        if (fits(left)) {
            frame.Left = static_cast<int16_t>(left);
        } else {
            ToFullScale(frame);
        }
        const int64_t right = int64_t{frame.Right} * levelMultiplier / 100;
        if (fits(right)) {
            frame.Right = static_cast<int16_t>(right);
        } else {
            ToFullScale(frame);
        }
    }
}

}  // namespace

#if defined(__x86_64__) && defined(__ELF__) && defined(__GNUC__) && !defined(__clang__)
[[gnu::target_clones("default", "avx2")]]
#endif
Loudness
MeasurePeaks(std::span<const Frame> frames) {
    int32_t maxLeft = 0;
    int32_t maxRight = 0;
    for (const Frame& frame : frames) {
        maxLeft = std::max(maxLeft, Magnitude(frame.Left));
        maxRight = std::max(maxRight, Magnitude(frame.Right));
    }
    return {maxLeft, maxRight, 0, 0};
}

#if defined(__x86_64__) && defined(__ELF__) && defined(__GNUC__) && !defined(__clang__)
[[gnu::target_clones("default", "avx2")]]
#endif
Loudness
MeasureAll(std::span<const Frame> frames) {
    int32_t maxLeft = 0;
    int32_t maxRight = 0;
    uint32_t sumLeft = 0;
    uint32_t sumRight = 0;
    for (const Frame& frame : frames) {
        const int32_t left = Magnitude(frame.Left);
        const int32_t right = Magnitude(frame.Right);
        maxLeft = std::max(maxLeft, left);
        maxRight = std::max(maxRight, right);
        sumLeft += static_cast<uint32_t>(left);
        sumRight += static_cast<uint32_t>(right);
    }
    return {maxLeft, maxRight, sumLeft, sumRight};
}

void Amplify(std::span<Frame> frames, int32_t levelMultiplier) {
    if (levelMultiplier < 0 || levelMultiplier > LargestFastGain) {
        AmplifyExactly(frames, levelMultiplier);
    } else if (levelMultiplier <= NoGain) {
        Attenuate(frames, levelMultiplier);
    } else {
        Boost(frames, levelMultiplier);
    }
}

uint32_t CountFullScale(std::span<const Frame> frames) {
    const auto full = [](int16_t sample) { return sample == Most || sample == Least ? 1U : 0U; };
    uint32_t count = 0;
    for (const Frame& frame : frames) count += full(frame.Left) + full(frame.Right);
    return count;
}

}  // namespace Corvetape
