#pragma once

#include <string>

#include "audio/closed_song.h"
#include "audio/song_writer.h"
#include "core/deferred_messages.h"
#include "core/reporter.h"
#include "platform/wave_in.h"
#include "post/transfer/transfer_job.h"

namespace Corvetape {

/// What the log and the window say of songs that are closed or fail, and of an input that loses sound.
class SongReports {
 public:
    /// All of them outlive it. `format` is that of the open input.
    SongReports(Reporter& say, DeferredMessages& messages, const TransferJob& transfer,
                const WaveFormat& format)
        : Say(say), Messages(messages), Transfer(transfer), Format(format) {}

    /// One line for a kept song in which something is missing, one for each reason to doubt it, and one for a
    /// wanted one that is too short to be kept; nothing for a healthy one.
    void SongClosed(const ClosedSong& song);

    /// The recording has stopped: whoever looks has to see it now, and not only when the program ends.
    void SongFailed(const SongFailure& failure);

    /// One line for each incident, with its length.
    void SoundLost(const WaveInIncident& incident);

    /// The input has gone (true) or come back (false).
    void AvailabilityChanged(bool lost);

 private:
    void ReportShort(const ClosedSong& song);
    void ReportTrust(const ClosedSong& song, const std::string& name);

    Reporter& Say;
    DeferredMessages& Messages;
    const TransferJob& Transfer;
    const WaveFormat& Format;
};

}  // namespace Corvetape
