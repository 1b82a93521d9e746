#include "app/wiring.h"

#include "app/program_parts.h"

namespace Corvetape {

CaptureEvents CaptureEventsOf(ProgramParts& parts) {
    CaptureEvents events;
    events.Fatal = [&parts] { parts.Requests.End.Raise(); };
    events.DeviceIncident = [&parts](const WaveInIncident& incident) { parts.Reports.SoundLost(incident); };
    events.Availability = [&parts](bool lost) { parts.Reports.AvailabilityChanged(lost); };
    events.Ended = [&parts] {
        if (parts.Events.InputEnded) parts.Events.InputEnded();
    };
    return events;
}

SongEvents SongEventsOf(ProgramParts& parts) {
    SongEvents events;
    events.SongBegun = [&parts](const std::string& /*path*/) {
        if (parts.Keeper) parts.Keeper->NoteSong();
    };
    events.SongClosed = [&parts](const ClosedSong& song) {
        if (parts.Keeper) parts.Keeper->SongClosed(song);
        parts.Margins.SongClosed(song);
        if (parts.Events.SongClosed) parts.Events.SongClosed(song);
        parts.Reports.SongClosed(song);
    };
    events.StoreCover = [&parts](const std::string& basePath) {
        parts.Covers.SaveImage(basePath, parts.Memory.Media.SongMedia.Cover);
    };
    events.QuitWanted = [&parts] { parts.Requests.End.Raise(); };
    events.Failed = [&parts](const SongFailure& failure) { parts.Reports.SongFailed(failure); };
    return events;
}

}  // namespace Corvetape
