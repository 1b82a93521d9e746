#include "mixer/mixer_of_source.h"

namespace Corvetape {

MixerOfSource::MixerOfSource(modMixer& mixers, const Settings& settings, const MediaState& media)
    : Mixers(mixers), Options(settings), Media(media) {}

void MixerOfSource::UpdateMixer() {
    if (!Options.AutoUpdate) {
        Applied.reset();
    } else if (Applied != Media.MixerSectionName) {
        Applied = Media.MixerSectionName;
        ApplyMixer();
    }
}

void MixerOfSource::ApplyMixer() {
    Mixers.MixerAction(MixerMode::Load);
}

void MixerOfSource::StoreMixer() {
    Mixers.MixerAction(MixerMode::Save);
}

}  // namespace Corvetape
