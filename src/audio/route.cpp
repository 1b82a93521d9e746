#include "audio/route.h"

#include <utility>

namespace Corvetape {

namespace {

enum class Verdict {
    Write,     ///< the buffer belongs to the song
    EndsSong,  ///< it is the song's last
    Drop,      ///< it belongs to a pause
};

Verdict Recognise(SignalState& signal, CutState& cut, const PauseSettings& pause) {
    if (signal.PauseRecognition < 0) {
        signal.InPause = false;
        return Verdict::Write;
    }
    if (signal.PauseRecognition == 0) {
        signal.PauseRecognition = -1;
        return std::exchange(signal.InPause, false) ? Verdict::Write : Verdict::EndsSong;
    }
    if (signal.SilentBufferCount < pause.PauseBuffers) {
        signal.InPause = false;
        signal.ActiveThreshold = pause.SilenceAmplitude;
        return Verdict::Write;
    }
    if (signal.InPause) return Verdict::Drop;
    signal.InPause = true;
    // Where everything counts, a pause is one thing among others, and all of it has to be heard.
    if (pause.EndOfSongDetection != EndOfSong::Automatic) {
        cut.NoteBoundary();
        signal.SkipBuffers = pause.IgnorePauseBuffers;
    }
    signal.ActiveThreshold = pause.EndOfSilenceAmplitude;
    return Verdict::EndsSong;
}

/// Keeps the buffer in the ring. While recording is off nobody wants what is in the ring; otherwise audio
/// that is about to be written over has its chance to be written first, and is counted if it is lost.
bool KeepInRing(const SignalBuffer& buffer, const RouteParts& parts, RouteTargets& targets) {
    AudioRing& ring = parts.Ring;
    if (ring.Full() && parts.Flags.RecordingEnabled) {
        if (!targets.MakeRoom()) return false;
        if (ring.Full() && parts.Flags.RecordingEnabled) {
            ring.OverrunBuffers += static_cast<uint64_t>(ring.Size());
        }
    }
    ring.Put(buffer);
    targets.WriteAhead();
    // A cut that nobody carries out while recording is off outlives what it points at. It stays before all
    // that the ring holds, where it ends the old song and moves nothing.
    if (!parts.Flags.RecordingEnabled && parts.Cut.CutPending && ring.AudioWriteIndex == parts.Cut.CutIndex) {
        parts.Cut.MoveTo(ring.Wrapped(int64_t{ring.AudioWriteIndex} + 1));
    }
    return true;
}

}  // namespace

bool RouteBuffer(const SignalBuffer& buffer, const RouteParts& parts, RouteTargets& targets) {
    const Verdict verdict = Recognise(parts.Signal, parts.Cut, parts.Pause);
    if (verdict != Verdict::Drop && !targets.WriteBufferToSong(buffer, verdict == Verdict::EndsSong)) {
        return false;
    }
    if (parts.Pause.EndOfSongDetection == EndOfSong::Silence) return true;
    const bool hearsAll = parts.Pause.EndOfSongDetection == EndOfSong::Automatic;
    if (parts.Signal.InPause && parts.Pause.IgnoreSilence && !hearsAll) return true;
    return KeepInRing(buffer, parts, targets);
}

SignalPath::SignalPath(AnalysisParts analysis, RouteParts route, RouteTargets& targets)
    : Analysis(analysis), Route(route), Targets(targets) {}

bool SignalPath::Handle(WaveBuffer& buffer) {
    AnalyzeBuffer(buffer, Analysis);
    if (Route.Signal.SkipBuffers > 0) {
        --Route.Signal.SkipBuffers;
        return true;
    }
    return RouteBuffer(buffer, Route, Targets);
}

}  // namespace Corvetape
