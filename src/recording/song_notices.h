#pragma once

#include "core/controls/messages.h"
#include "core/settings/settings.h"
#include "platform/media_controls.h"
#include "post/transfer/transfer_job.h"

namespace Corvetape {

/// Notifies the desktop of each song that was kept, if the user wants that.
class SongNotices {
 public:
    /// All of them outlive it.
    SongNotices(const Settings& options, const clsLocalizeControls& texts, Notices& desktop)
        : Options(options), Texts(texts), Desktop(desktop) {}

    /// A kept song was handed over.
    void SongTransferred(const TransferredSong& song);

 private:
    const Settings& Options;
    const clsLocalizeControls& Texts;
    Notices& Desktop;
};

}  // namespace Corvetape
