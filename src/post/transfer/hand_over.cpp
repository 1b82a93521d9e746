#include "post/transfer/hand_over.h"

namespace Corvetape {

HandOver::HandOver(Event<const STATIONANDSONGDATA&>& songKept, TimerControl& tmrEncodeFile, TransferJob& job,
                   const RecordingFlags& flags, ProgramRequests& requests)
    : Wait(tmrEncodeFile), Job(job), Flags(flags), Requests(requests) {
    songKept.Connect([this](const STATIONANDSONGDATA& song) { Take(song); });
    Wait.Timer.Connect([this] { TransferNow(); });
}

/// The delay begins. A song that still waits is transferred first.
void HandOver::Take(const STATIONANDSONGDATA& song) {
    TransferNow();
    Waiting = song;
    Wait.Running(true);
}

void HandOver::TransferNow() {
    if (!Wait.Running()) return;
    Wait.Running(false);
    Job.TransferSong(Waiting);
    if (Flags.LastSongClosed) Requests.End.Raise();
}

}  // namespace Corvetape
