#include "audio/analyze.h"

#include <algorithm>

namespace Corvetape {

namespace {

constexpr int32_t NoGain = 100;
constexpr int32_t FullScaleSample = 32767;

/// Keeps count of the samples at full scale. Healthy audio has none and is not looked at again.
void CountClipped(WaveBuffer& buffer, const Loudness& loudness, SignalState& signal) {
    const bool suspicious = std::max(loudness.MaxLeft, loudness.MaxRight) >= FullScaleSample;
    buffer.ClippedSamples = suspicious ? CountFullScale(FramesOf(buffer)) : 0;
    signal.ClippedSamples += buffer.ClippedSamples;
}

}  // namespace

bool AnalyzeBuffer(WaveBuffer& buffer, const AnalysisParts& parts) {
    SignalState& signal = parts.Signal;
    const std::span<Frame> frames = FramesOf(buffer);
    if (parts.Pause.LevelMultiplier != NoGain) Amplify(frames, parts.Pause.LevelMultiplier);

    const bool byPeak = parts.Pause.DetectSilenceByPeak;
    const Loudness loudness = byPeak ? MeasurePeaks(frames) : MeasureAll(frames);
    CountClipped(buffer, loudness, signal);
    signal.PeakLeft = std::max(signal.PeakLeft, loudness.MaxLeft);
    signal.PeakRight = std::max(signal.PeakRight, loudness.MaxRight);

    int32_t levelLeft = loudness.MaxLeft;
    int32_t levelRight = loudness.MaxRight;
    if (!byPeak) {
        const auto framesPerBuffer = static_cast<uint32_t>(std::max<size_t>(buffer.Samples.size(), 1));
        levelLeft = static_cast<int32_t>(loudness.SumLeft / framesPerBuffer);
        levelRight = static_cast<int32_t>(loudness.SumRight / framesPerBuffer);
    }

    const bool silent = levelLeft <= signal.ActiveThreshold && levelRight <= signal.ActiveThreshold;
    const int32_t second = parts.Clock.TimeGetTime() / 1000;
    if (silent) {
        ++signal.SilentBufferCount;
        signal.SilenceSeconds = second - signal.SilenceStartSecond;
    } else {
        signal.SilentBufferCount = 0;
        signal.SilenceSeconds = 0;
        signal.SilenceStartSecond = second;
    }
    // The history is by peak whatever the measure is: the display and the calibration work on peaks.
    signal.History.Append(std::max(loudness.MaxLeft, loudness.MaxRight));
    parts.Ring.SetLevel(std::max(levelLeft, levelRight));
    return silent;
}

}  // namespace Corvetape
