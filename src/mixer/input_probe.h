#pragma once

#include <string>

#include "audio/pause_settings.h"
#include "audio/signal_state.h"
#include "core/media_state.h"
#include "mixer/mixer_wait.h"

namespace Corvetape {

/// Listens whether the open input carries sound. While it lives, the analysis works with values of its own,
/// which make a listener of it; the user's come back with its end.
class InputProbe {
 public:
    /// All of them outlive it.
    InputProbe(PauseSettings& pause, SignalState& signal, const MediaState& media, MixerWait& wait);
    ~InputProbe() { PutBack(); }
    InputProbe(const InputProbe&) = delete;
    InputProbe& operator=(const InputProbe&) = delete;

    /// Listens for 200 ms. True if a buffer in it was louder on the average than 2000; false also if the
    /// program has ended.
    bool Hears();

    /// The user's values come back now. It does not listen any more.
    void PutBack();

 private:
    /// The values that a search listens with.
    struct Values {
        int32_t LevelMultiplier = 100;
        int16_t SilenceAmplitude = 2000;
        int16_t ActiveThreshold = 2000;
        bool DetectSilenceByPeak = false;
        int16_t PauseBuffers = 4;              ///< 200 ms
        int16_t EndOfSilenceAmplitude = 2000;  ///< takes the place of ActiveThreshold once a pause is found
    };

    Values Present() const;
    void Take(const Values& values);
    void Listen();

    PauseSettings& Pause;
    SignalState& Signal;
    const MediaState& Media;
    MixerWait& Wait;
    Values Users;
    std::string Source;  ///< whose values these are
    bool Listening = true;
};

}  // namespace Corvetape
