#pragma once

#include "audio/analyze.h"
#include "audio/audio_ring.h"
#include "audio/capture.h"
#include "audio/cut_state.h"
#include "audio/drain.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "audio/song_writer.h"
#include "audio/wave_buffer.h"

namespace Corvetape {

/// What the pause recognition reads and writes.
struct RouteParts {
    SignalState& Signal;
    CutState& Cut;
    const PauseSettings& Pause;
    const RecordingFlags& Flags;
    AudioRing& Ring;
};

/// Where a buffer goes from here. Results are false if a song file could not be made, and the program is then
/// to end.
class RouteTargets {
 public:
    virtual ~RouteTargets() = default;

    /// The way to the file of the end of song by silence; `end`: this buffer is the song's last.
    virtual bool WriteBufferToSong(const SignalBuffer& buffer, bool end) = 0;

    /// Called when the next buffer would reach unread audio of the ring, to have some of it written.
    virtual bool MakeRoom() = 0;

    /// Called after each buffer that went into the ring.
    virtual void WriteAhead() = 0;
};

/// The way to the song's file, straight or through the ring. Both outlive it.
class SongTargets : public RouteTargets {
 public:
    SongTargets(SongWriter& song, AudioDrain& drain) : Song(song), Drain(drain) {}

    bool WriteBufferToSong(const SignalBuffer& buffer, bool end) override {
        return Song.WriteBufferToSong(buffer, end);
    }
    bool MakeRoom() override { return Drain.MakeRoom(); }
    void WriteAhead() override { Drain.WriteAhead(); }

    /// Writes the sound that waits into its song, because the ring will not be drained any more. What nobody
    /// records is forgotten. Like the other results, false if a song file could not be made.
    virtual bool Empty() { return Drain.Empty(); }

    /// Once a second: writes what is old enough, or carries out a pending cut.
    virtual bool DrainRing() { return Drain.DrainAudioRing(false); }

    bool SongFileOpen() const { return Song.SongFileOpen(); }

    /// A long silence ends the recording: the open song is given up.
    virtual bool AbortSong() {
        Song.AbortSong();
        return true;
    }

    /// A cut that is pending is carried out now.
    bool FinishCut() { return Drain.FinishCut(); }

 private:
    SongWriter& Song;
    AudioDrain& Drain;
};

/// The pause recognition: decides whether an analysed buffer is written, dropped or held, and whether a song
/// has ended. False if the program is to end.
bool RouteBuffer(const SignalBuffer& buffer, const RouteParts& parts, RouteTargets& targets);

/// What happens to one buffer, in its fixed order: analysis, the skipping after a pause, routing.
class SignalPath : public BufferTarget {
 public:
    /// The parts and the targets outlive it.
    SignalPath(AnalysisParts analysis, RouteParts route, RouteTargets& targets);

    /// False if the program is to end.
    bool Handle(WaveBuffer& buffer) override;

 private:
    AnalysisParts Analysis;
    RouteParts Route;
    RouteTargets& Targets;
};

}  // namespace Corvetape
