#pragma once

#include <optional>
#include <string>

#include "core/media_state.h"
#include "core/settings/settings.h"
#include "core/source_mixer.h"
#include "mixer/mod_mixer.h"

namespace Corvetape {

/// The mixer as it is kept for each source of media data, in the section MixerSectionName.
class MixerOfSource : public SourceMixer {
 public:
    /// All of them outlive it.
    MixerOfSource(modMixer& mixers, const Settings& settings, const MediaState& media);

    /// A source may have become the present one: sets the mixer to what is saved for it, if the user wants
    /// that. Once for each change of the section: while nothing plays this is called every second, and
    /// whoever moves a volume meanwhile shall not have it moved back.
    void UpdateMixer() override;

    /// Sets the mixer to what is saved, whether or not the user wants that at each change.
    void ApplyMixer() override;

    /// Saves the mixer as it is set.
    void StoreMixer() override;

 private:
    modMixer& Mixers;
    const Settings& Options;
    const MediaState& Media;
    std::optional<std::string> Applied;  ///< section
};

}  // namespace Corvetape
