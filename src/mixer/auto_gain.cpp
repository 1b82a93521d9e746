#include "mixer/auto_gain.h"

#include <algorithm>
#include <cstdlib>

#include "core/text/numbers.h"
#include "core/windows_version.h"
#include "mixer/mixer_line.h"

namespace Corvetape {

namespace {

constexpr int32_t FullScale = 32768;
constexpr int32_t FullVolume = 65535;
constexpr int32_t NoGain = 100;
constexpr int32_t MostGain = 1000;
constexpr double TargetPercent = 90;

constexpr int32_t WeakBelow = 29492;  // 90 % of full scale
constexpr int32_t GoodBelow = 31130;  // 95 %: what halving comes to may lie a little above the target

constexpr float FillStepMs = 100;
constexpr uint32_t MostIdleSteps = 100;  // 10 s in which not one buffer has come

struct Measurement {
    float ListenMs = 0;
    size_t Levels = 0;
};
constexpr Measurement AtFullVolume = {3300, 60};
constexpr Measurement AfterAStep = {2200, 40};
constexpr int32_t Steps = 10;

}  // namespace

int32_t PeakOfLastLevels(const LevelHistory& history, size_t n) {
    int32_t peak = 0;
    const size_t first = history.Size() > n ? history.Size() - n - 1 : 0;
    for (size_t i = first; i < history.Size(); ++i) {
        if (history[i] != MarkSongEnd) peak = std::max(peak, std::abs(history[i]));
    }
    return peak;
}

AutoGain::AutoGain(AutoGainParts parts, const SystemVersion& version)
    : Parts(parts), OneDeviceEach(IsWindowsVista(version)) {}

bool AutoGain::AutoGainLine() {
    if (OneDeviceEach) return AutoGainDevice();
    if (!FillHistory()) return false;
    const auto device = Parts.Mixers.OpenWaveIn(Parts.Inputs.WaveInDeviceName());
    if (!device) return false;
    const auto recording = FindWaveInLine(*device);
    if (!recording) return false;
    const auto ask = [&](MixerMode mode, int32_t value) {
        const MixerStep step{mode, MIXERCONTROL_CONTROLTYPE_MUX, value};
        return Parts.Mixers.MixerLineAction(*device, *recording, step).value_or(-1);
    };
    const int32_t item = ask(MixerMode::GetValue, 0);
    if (item == -1) return false;
    const int32_t lineId = ask(MixerMode::GetItem, item);
    if (lineId == -1) return false;
    for (uint32_t index = 0; index < recording->cConnections; ++index) {
        const auto source = device->Source(recording->dwDestination, index);
        if (source && static_cast<int32_t>(source->dwLineID) == lineId) return FindGain(*device, *source);
    }
    return false;
}

bool AutoGain::AutoGainDevice() {
    if (!FillHistory()) return false;
    const auto device = Parts.Mixers.OpenWaveIn(Parts.Inputs.WaveInDeviceName());
    if (!device) return false;
    const auto recording = FindWaveInLine(*device);
    if (!recording) return false;
    const MixerStep volume{MixerMode::GetValue, MIXERCONTROL_CONTROLTYPE_VOLUME};
    if (Parts.Mixers.MixerLineAction(*device, *recording, volume) == -1) return false;
    return FindGain(*device, *recording);
}

/// Waits until there is a whole history of levels. False if none come any more, or the program ends.
bool AutoGain::FillHistory() {
    const LevelHistory& history = Parts.Signal.History;
    uint64_t appended = history.Appended();
    uint32_t idleSteps = 0;
    while (history.Size() < LevelHistory::Capacity) {
        if (!Parts.Wait.For(FillStepMs)) return false;
        idleSteps = appended == history.Appended() ? idleSteps + 1 : 0;
        appended = history.Appended();
        if (idleSteps >= MostIdleSteps) return false;
    }
    return true;
}

bool AutoGain::FindGain(MixerDevice& device, const MIXERLINE& line) {
    Parts.Pause.LevelMultiplier = NoGain;
    SetVolume(device, line, FullVolume);
    if (!Hear(AtFullVolume.ListenMs)) return false;
    const int32_t peak = PeakOfLastLevels(Parts.Signal.History, AtFullVolume.Levels);
    if (peak == 0) return false;  // silence: no gain would make music of it
    if (peak >= WeakBelow) return TurnDown(device, line, peak);
    const double gain = std::min<double>(MostGain, TargetPercent * FullScale / peak);
    Parts.Pause.LevelMultiplier = RoundToInt32(gain);
    return Parts.Pause.LevelMultiplier < MostGain;
}

/// Looks for the volume by halving.
bool AutoGain::TurnDown(MixerDevice& device, const MIXERLINE& line, int32_t peak) {
    int32_t volume = FullVolume;
    int32_t step = FullVolume;
    for (int32_t i = 0; i < Steps; ++i) {
        step /= 2;
        volume += peak < WeakBelow ? step : -step;
        SetVolume(device, line, volume);
        if (!Hear(AfterAStep.ListenMs)) return false;
        peak = PeakOfLastLevels(Parts.Signal.History, AfterAStep.Levels);
    }
    return peak < GoodBelow;
}

/// False if nothing came in: the levels are old then.
bool AutoGain::Hear(float milliseconds) {
    Parts.Pause.LevelMultiplier = NoGain;  // a source of media data may have come with its own
    const uint64_t before = Parts.Signal.History.Appended();
    return Parts.Wait.For(milliseconds) && Parts.Signal.History.Appended() != before;
}

void AutoGain::SetVolume(MixerDevice& device, const MIXERLINE& line, int32_t volume) {
    const MixerStep step{MixerMode::SetValue, MIXERCONTROL_CONTROLTYPE_VOLUME, volume};
    static_cast<void>(Parts.Mixers.MixerLineAction(device, line, step));  // a volume has one value, no items
}

}  // namespace Corvetape
