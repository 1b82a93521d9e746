#pragma once

#include "audio/recording_flags.h"
#include "core/controls/event.h"
#include "core/media_state.h"
#include "forms/frm_main.h"
#include "platform/media_controls.h"

namespace Corvetape {

/// The recorder as one of the desktop's players: shows there what is recorded, and presses the controls for
/// its media keys and panels.
class MediaKeys : private MediaButtons {
 public:
    /// All of them outlive it.
    MediaKeys(frmMain& form, const RecordingFlags& flags, const MediaState& media, MediaControls& controls);
    ~MediaKeys() override;
    MediaKeys(const MediaKeys&) = delete;
    MediaKeys& operator=(const MediaKeys&) = delete;

    /// Shows what has changed. Happens by itself twice a second.
    void Refresh();

 private:
    void Pressed(MediaButton button) override;
    void Keep(bool wanted);

    frmMain& Form;
    const RecordingFlags& Flags;
    const MediaState& Media;
    MediaControls& Controls;
    Connection Tick;
};

}  // namespace Corvetape
