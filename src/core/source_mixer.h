#pragma once

namespace Corvetape {

/// The mixer as it is kept for each source, in the section MixerSectionName.
class SourceMixer {
 public:
    virtual ~SourceMixer() = default;

    /// Sets the mixer to what is saved, if the user wants that at each change of the source.
    virtual void UpdateMixer() = 0;

    virtual void ApplyMixer() = 0;  ///< sets the mixer to what is saved, asked for or not
    virtual void StoreMixer() = 0;  ///< saves the mixer as it is set
};

}  // namespace Corvetape
