#pragma once

#include <cstdint>
#include <span>

#include "audio/audio_ring.h"
#include "audio/pause_settings.h"
#include "audio/signal_state.h"
#include "audio/wave_buffer.h"
#include "platform/clock.h"

namespace Corvetape {

/// Magnitudes of the samples of some frames, by channel. The magnitude of -32768 is 32768. The sums are
/// 32 bits wide, enough for 65535 frames.
struct Loudness {
    int32_t MaxLeft = 0;
    int32_t MaxRight = 0;
    uint32_t SumLeft = 0;
    uint32_t SumRight = 0;

    bool operator==(const Loudness&) const = default;
};

/// The highest magnitudes alone; the sums stay 0. The samples are only read.
Loudness MeasurePeaks(std::span<const Frame> frames);

/// The highest magnitudes and the sums. The samples are only read.
Loudness MeasureAll(std::span<const Frame> frames);

/// Multiplies every sample in place by `levelMultiplier` per cent, truncating toward zero.
///
/// Where a result does not fit into 16 bits, both channels of the frame go to full scale in their own
/// direction, whichever overflowed: left above 0 to 32767, below 0 to -32768, and a left 0 stays; right 0 or
/// above to 32767, below to -32768. After an overflow on the left the right sample, by then at full scale, is
/// multiplied as well.
void Amplify(std::span<Frame> frames, int32_t levelMultiplier);

/// Samples at 32767 or -32768.
uint32_t CountFullScale(std::span<const Frame> frames);

/// What the analysis of a buffer reads and writes.
struct AnalysisParts {
    SignalState& Signal;
    const PauseSettings& Pause;
    AudioRing& Ring;  ///< gets the level of the slot that is written next
    const Corvetape::Clock& Clock;
};

/// Applies the software gain in place, measures the buffer, and brings meter, history, silence counters and
/// ring level up to date. True if the buffer was silent: neither channel above the threshold in force. A
/// short last buffer is measured as if silence followed.
bool AnalyzeBuffer(WaveBuffer& buffer, const AnalysisParts& parts);

}  // namespace Corvetape
