#include "mixer/input_probe.h"

#include <utility>

namespace Corvetape {

namespace {

constexpr float ProbeMs = 200;

}  // namespace

InputProbe::InputProbe(PauseSettings& pause, SignalState& signal, const MediaState& media, MixerWait& wait)
    : Pause(pause), Signal(signal), Media(media), Wait(wait), Users(Present()), Source(media.ProviderName) {
    Take({});
}

bool InputProbe::Hears() {
    Listen();
    Signal.SilentBufferCount = 1;
    if (!Wait.For(ProbeMs)) return false;
    return Signal.SilentBufferCount == 0;
}

/// A source of media data that has come since has brought its own values, which are the user's from now on.
void InputProbe::Listen() {
    if (!Listening) return;
    if (Source != Media.ProviderName) {
        Source = Media.ProviderName;
        Users = Present();
    }
    Take({});
}

void InputProbe::PutBack() {
    if (!std::exchange(Listening, false)) return;
    if (Source == Media.ProviderName) Take(Users);
}

InputProbe::Values InputProbe::Present() const {
    return {Pause.LevelMultiplier,     Pause.SilenceAmplitude, Signal.ActiveThreshold,
            Pause.DetectSilenceByPeak, Pause.PauseBuffers,     Pause.EndOfSilenceAmplitude};
}

void InputProbe::Take(const Values& values) {
    Pause.LevelMultiplier = values.LevelMultiplier;
    Pause.SilenceAmplitude = values.SilenceAmplitude;
    Signal.ActiveThreshold = values.ActiveThreshold;
    Pause.DetectSilenceByPeak = values.DetectSilenceByPeak;
    Pause.PauseBuffers = values.PauseBuffers;
    Pause.EndOfSilenceAmplitude = values.EndOfSilenceAmplitude;
}

}  // namespace Corvetape
