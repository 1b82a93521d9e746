#pragma once

#include <cstdint>

#include "audio/pause_settings.h"
#include "core/media_state.h"
#include "media/provider_choice.h"

namespace Corvetape {

/// Looks for a source of media data while there is none, and asks it where the media poll does not.
class SourceTick {
 public:
    /// All of them outlive it.
    SourceTick(const MediaState& media, const PauseSettings& pause, ProviderChoice& providers)
        : Media(media), Pause(pause), Providers(providers) {}

    void FindProvider();

    /// Every second of a young song, every tenth of an older one.
    void PollOutsideMediaMode(int32_t songAge);

 private:
    const MediaState& Media;
    const PauseSettings& Pause;
    ProviderChoice& Providers;
};

}  // namespace Corvetape
