#include "app/wiring.h"

#include "app/program_parts.h"
#include "core/controls/message_texts.h"
#include "core/controls/validate_number.h"
#include "core/text/date_format.h"
#include "platform/dialogs.h"

namespace Corvetape {

CaptureEvents CaptureEventsOf(ProgramParts& parts) {
    CaptureEvents events;
    events.Buffer = [&parts](WaveBuffer& buffer) { return parts.Path.Handle(buffer); };
    events.Fatal = [&parts] { parts.Requests.End.Raise(); };
    events.DeviceIncident = [&parts](const WaveInIncident& incident) { parts.Reports.SoundLost(incident); };
    events.Availability = [&parts](bool lost) { parts.Reports.AvailabilityChanged(lost); };
    events.Ended = [&parts] {
        if (parts.Events.InputEnded) parts.Events.InputEnded();
    };
    return events;
}

SongPlace SongPlaceOf(ProgramParts& parts) {
    const auto baseName = [&parts] {
        const std::string& stamp = parts.Memory.Options.MusicFileTemplate[0];
        return SafePathPart(parts.Run.SongNamePrefix + FormatDate(stamp, parts.Host.Clock.LocalNow()));
    };
    return {parts.Input.Format(), parts.Memory.Options, parts.Memory.Folders, baseName,
            parts.Run.MaxSongBytes};
}

SongEvents SongEventsOf(ProgramParts& parts) {
    SongEvents events;
    events.SongBegun = [&parts](const std::string& /*path*/) {
        if (parts.Keeper) parts.Keeper->NoteSong();
    };
    events.SongClosed = [&parts](const ClosedSong& song) {
        if (parts.Keeper) parts.Keeper->SongClosed(song);
        if (parts.Events.SongClosed) parts.Events.SongClosed(song);
        parts.Reports.SongClosed(song);
    };
    events.StoreCover = [&parts](const std::string& basePath) {
        parts.Covers.SaveImage(basePath, parts.Memory.Media.SongMedia.Cover);
    };
    events.HandOver = [&parts] { parts.Waiting.Take(parts.Memory.Media.SongMedia); };
    events.QuitWanted = [&parts] { parts.Requests.End.Raise(); };
    events.Failed = [&parts](const SongFailure& failure) { parts.Reports.SongFailed(failure); };
    return events;
}

SessionActions SessionActionsOf(ProgramParts& parts) {
    SessionActions actions;
    actions.CutNow = [&parts] {
        if (!parts.Drain.DrainAudioRing(true)) parts.Requests.End.Raise();
    };
    actions.ResumeRecording = [&parts] { parts.ResumeRecording(); };
    actions.RefuseZeroMinutes = [&parts] {
        parts.Host.Dialogs.MessageBox(parts.Messages.FormatMsg(Message::NoRecordingTime.Key),
                                      DialogIcon::Exclamation);
    };
    actions.ShowRecordingState = [&parts] { parts.Look.ShowRecording(); };
    actions.PeriodRefused = [&parts] {
        constexpr int32_t longestMinutes = 1440;
        return ValidateNumber(parts.Memory.Form.txtRecordingPeriod, 1, longestMinutes, 1, parts.Host.Dialogs,
                              parts.Messages);
    };
    actions.StorePeriod = [&parts](int32_t minutes) {
        parts.Memory.Options.StopAfter = minutes;
        parts.Store.WriteSetting("Record", "StopAfter", minutes);
    };
    return actions;
}

MediaPollActions MediaPollActionsOf(ProgramParts& parts) {
    return {[&parts] { return parts.Watch.Ticks() >= 2; }, [&parts] { parts.Providers.GetStationData(); },
            [&parts](const std::string& cover) { parts.Covers.LoadImage(cover); },
            [&parts] { parts.Requests.End.Raise(); }};
}

}  // namespace Corvetape
