#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "audio/song_writer.h"
#include "core/media_state.h"
#include "media/title_parts.h"
#include "recording/automatic/automatic_end.h"
#include "recording/automatic/cut_place.h"
#include "recording/margins/margin_recorder.h"

namespace Corvetape {

/// What the automatic end of songs works on. All of it outlives it.
struct AutomaticParts {
    AudioRing& Ring;
    CutState& Cut;
    const PauseSettings& Pause;
    const Corvetape::Settings& Settings;  ///< FadeGoesTo
    const WaveFormat& Format;
    RecordingFlags& Flags;
    SignalState& Signal;
    MediaState& Media;
    SongWriter& Song;
    LearnedCuts& Learned;
    MarginRecorder& Margins;
};

/// Carries out what AutomaticEnd decides: moves audio from the ring into song files with the end of song
/// "Automatic". In all other modes it does nothing. The results are false if a song file could not be made:
/// the program is to end.
class AutomaticRecorder {
 public:
    /// Slots of the ring that it needs: a minute for what is looked at round a change that waits for
    /// evidence, and for a disk that works again in time; and what waits longer where nobody reports titles.
    static constexpr int32_t RingSlots = 1200 + AutomaticEnd::KeptBackUntitled - AutomaticEnd::KeptBack;

    explicit AutomaticRecorder(AutomaticParts parts);

    bool Active() const { return Parts.Pause.EndOfSongDetection == EndOfSong::Automatic; }

    /// Something was heard while songs end in another way: what is known of the source is old.
    void Leave() { Left = true; }

    /// Slots heard so far, for the next look.
    int64_t Hear();

    /// The source was looked at.
    void Look(const SourceLook& look);

    /// Once a second, and when the ring is full.
    bool Drain();

    /// Nothing more will be heard, of this input or in this mode: all that waits is decided and written. The
    /// song that is not over stays open.
    bool Finish();

    /// A long silence, or the program, ends the recording: the song that is open is closed as it is, and kept
    /// if it is wanted and long enough.
    bool EndRecording();

    /// What is known of the song that is being written.
    STATIONANDSONGDATA Media() const { return Present().Media; }

    /// How far it can be trusted by now.
    SongTrust Trust() const { return Present().Trust; }

    /// It is to be kept.
    bool Wanted() const { return Present().Wanted; }

 private:
    /// The flags when a change was noticed, and as they were passed on then.
    struct PassedOn {
        RecordingFlags Before;
        RecordingFlags After;
    };

    void Begin();
    bool Carry(std::vector<AutomaticStep> steps);
    bool Run();
    enum class Done { Yes, Later, EndProgram };
    EndedSong Present() const;
    EndedSong ClosedBy(const AutomaticStep& step) const;
    bool EndsProgram() const;
    Done Write(int64_t upTo);
    Done WriteSlots(int64_t upTo);
    void Close(const AutomaticStep& step);
    std::vector<Frame> FramesOfSlots(int64_t from, int64_t end) const;
    void AddMargin();
    void PassOn();
    bool DiskRefuses() const;
    bool TakePassed(const AutomaticStep& step);
    void DropSound();
    void Discard();
    void TakeBack(size_t changes);
    bool Lost(int64_t slot) const { return Heard - slot >= Parts.Ring.Size(); }

    AutomaticParts Parts;
    CutPlace Places;
    AutomaticEnd End;
    TitleParts Titles;
    std::deque<AutomaticStep> Waiting;  ///< for a disk that works again
    std::deque<PassedOn> Passed;        ///< for each change that is not cut yet
    int64_t Heard = 0;
    int64_t Read = 0;     ///< next slot to be written
    int64_t Written = 0;  ///< one more than the last slot that was written
    uint64_t Opening = 0;
    uint64_t PutBefore = 0;
    bool Begun = false;
    std::optional<int64_t> SongEnded;  ///< slot after a song whose margins want what follows
    bool Left = false;
};

}  // namespace Corvetape
