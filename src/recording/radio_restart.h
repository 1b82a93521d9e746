#pragma once

#include <cstdint>

#include "audio/recording_flags.h"
#include "core/lifecycle_flags.h"
#include "core/media_state.h"
#include "core/settings/settings.h"
#include "media/provider_choice.h"
#include "media/station_launch.h"

namespace Corvetape {

/// What decides about a restart, and who does it. All of it outlives the restart.
struct RadioRestartParts {
    const Settings& Options;
    const LifecycleFlags& Lifecycle;
    const MediaState& Media;
    const RecordingFlags& Flags;
    const StationLaunch& Launcher;
    ProviderChoice& Providers;
};

/// Starts a radio again that has fallen silent.
class RadioRestart {
 public:
    explicit RadioRestart(RadioRestartParts parts) : Parts(parts) {}

    /// The page of a radio is on its way, and silence is to be expected.
    bool Loading() const { return Parts.Launcher.BrowserLoading(); }

    /// Every second of a silence. True if the radio was started again.
    bool RestartIfDue(int32_t silentSeconds);

 private:
    RadioRestartParts Parts;
};

}  // namespace Corvetape
