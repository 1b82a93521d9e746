#pragma once

namespace Corvetape {

/// The mixer as it is kept for each source, in the section MixerSectionName. One that keeps nothing by
/// itself.
class SourceMixer {
 public:
    virtual ~SourceMixer() = default;

    /// Sets the mixer to what is saved, if the user wants that at each change of the source.
    virtual void UpdateMixer() {}

    virtual void ApplyMixer() {}  ///< sets the mixer to what is saved, asked for or not
    virtual void StoreMixer() {}  ///< saves the mixer as it is set

    virtual void SnapshotMixer() {}  ///< notes the mixer as the start of the program finds it
    virtual void RestoreMixer() {}   ///< sets it back to that
};

}  // namespace Corvetape
