#pragma once

#include <cstddef>

#include "audio/capture.h"
#include "audio/route.h"
#include "core/program_requests.h"

namespace Corvetape {

/// Opens and closes the input that is recorded from, so that no sound of one is taken for sound of the other.
class InputDevice {
 public:
    /// All of them outlive it.
    InputDevice(Capture& capture, SongTargets& songs, ProgramRequests& requests)
        : Input(capture), Songs(songs), Requests(requests) {}

    bool IsOpen() const { return Input.IsOpen(); }

    /// Opens the device of this number in the list of WaveIn. Fails if it cannot be opened.
    WaveInOpening Open(size_t device) { return Input.OpenWaveIn(device); }

    /// What waits in the ring belongs to the song that plays; the next opening makes the ring anew. Events
    /// are handled meanwhile.
    void Close() {
        EmptyRing();
        Input.CloseWaveIn();
    }

    /// The ring will not be drained any more: what waits is written into its song.
    void EmptyRing() {
        if (!Songs.Empty()) Requests.End.Raise();
    }

    /// A cut that is pending is carried out now.
    void FinishCut() {
        if (!Songs.FinishCut()) Requests.End.Raise();
    }

 private:
    Capture& Input;
    SongTargets& Songs;
    ProgramRequests& Requests;
};

}  // namespace Corvetape
