#pragma once

#include <cstdint>

#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/song_writer.h"

namespace Corvetape {

/// What the draining works on. All of it outlives the drain.
struct DrainParts {
    AudioRing& Ring;
    CutState& Cut;
    const PauseSettings& Pause;
    const RecordingFlags& Flags;
    SongWriter& Song;
};

/// Moves audio from the ring into the song file, and carries out the cuts, with the end of song by media
/// data or by fixed time. The results are false if a song file could not be made: the program is to end.
class AudioDrain {
 public:
    /// Unread slots from which on the ring is drained (10 s), and those that stay (5 s).
    static constexpr int32_t FillToDrain = 200;
    static constexpr int32_t SlotsKept = 100;

    explicit AudioDrain(DrainParts parts);

    /// Once a second: writes what is older than 5 s, or carries out a pending cut as soon as the audio
    /// after it has arrived. With `now` it is carried out with what is there.
    bool DrainAudioRing(bool now);

    /// For the routing, after each buffer that went into the ring: writes what is unread ahead into the
    /// song's file, so that it outlives this process. That is one buffer, or all after a cut. What the disk
    /// refuses is tried again a second later.
    void WriteAhead();

    /// For the routing, when the next buffer would reach unread audio because nobody has drained for a long
    /// time: drains, or carries out a cut that waits for more audio than the ring can hold. A ring of at
    /// most FillToDrain slots is left as it is, but for a cut.
    bool MakeRoom();

    /// At the end of the signal: carries out a pending cut, so that its song is closed.
    bool FinishCut();

    /// At the end of the signal: writes everything that is unread. Call FinishCut first.
    bool WriteOut();

    /// Writes the sound that waits into its song, because the ring will not be drained any more. What nobody
    /// records is forgotten, or it would come up in a later song.
    bool Empty();

 private:
    enum class Result {
        Done,
        Stopped,     ///< a failure has ended the recording
        EndProgram,  ///< a song file could not be made
    };

    bool Active() const;
    bool DrainPlainly();
    bool CarryOutCut(bool now);
    bool DropPassedCut();
    Result WriteSlots(int32_t count);

    DrainParts Parts;
    int32_t BuffersToRetry = 0;  ///< that nothing is written ahead for after the disk has refused it
};

}  // namespace Corvetape
