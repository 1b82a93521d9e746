#pragma once

#include "audio/route.h"
#include "recording/automatic/automatic_recorder.h"

namespace Corvetape {

/// The way of a buffer to the song's file, where the end of song may be "Automatic" too. All outlive it.
class AutomaticTargets final : public SongTargets {
 public:
    AutomaticTargets(SongWriter& song, AudioDrain& drain, AutomaticRecorder& automatic)
        : SongTargets(song, drain), Automatic(automatic) {}

    bool WriteBufferToSong(const SignalBuffer& buffer, bool end) override {
        if (!Automatic.Active()) Automatic.Leave();
        return SongTargets::WriteBufferToSong(buffer, end);
    }
    bool Empty() override {
        const bool written = Automatic.Finish();
        return SongTargets::Empty() && written;
    }
    bool DrainRing() override { return Automatic.Active() ? Automatic.Drain() : SongTargets::DrainRing(); }
    bool AbortSong() override {
        const bool ended = Automatic.EndRecording();
        return SongTargets::AbortSong() && ended;
    }
    bool MakeRoom() override { return Automatic.Active() ? Automatic.Drain() : SongTargets::MakeRoom(); }

 private:
    AutomaticRecorder& Automatic;
};

}  // namespace Corvetape
