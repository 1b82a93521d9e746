#include "recording/song_reports.h"

#include <fmt/format.h>

#include <string>

#include "core/text/artist_and_title.h"

namespace Corvetape {

namespace {

/// Key of the message that says why sound was lost.
const char* ReasonKey(WaveInIncidentKind kind) {
    switch (kind) {
        case WaveInIncidentKind::Overrun:
            return "844";
        case WaveInIncidentKind::ServerLost:
            return "845";
        case WaveInIncidentKind::DeviceLost:
            return "846";
        case WaveInIncidentKind::ClockDrift:
            return "847";
    }
    return "847";
}

std::string SecondsText(uint64_t frames, uint32_t framesPerSecond) {
    return fmt::format("{:.3f}", static_cast<double>(frames) / framesPerSecond);
}

}  // namespace

void SongReports::SongClosed(const ClosedSong& song) {
    if (song.IsTooShort()) ReportShort(song);
    if (song.Fate != SongFate::Kept || song.LostFrames == 0) return;
    Say.Write(ReportKind::Info, Say.Text("848", {Transfer.NamesOf(song.Media).FinalName,
                                                 SecondsText(song.LostFrames, song.FramesPerSecond)}));
}

void SongReports::ReportShort(const ClosedSong& song) {
    const std::string file = song.TempPath.substr(song.TempPath.rfind('/') + 1);
    const std::string name = song.Media.Song.empty() ? file : ArtistAndTitle(song.Media);
    const std::string seconds =
        fmt::format("{:.1f}", static_cast<double>(song.Frames) / song.FramesPerSecond);
    Say.WriteAndShow(ReportKind::Info, Say.Text("861", {name, seconds}));
}

void SongReports::SongFailed(const SongFailure& failure) {
    Say.WriteAndShow(ReportKind::Error,
                     Say.Text(std::to_string(failure.Number), {failure.Path, std::to_string(failure.Code)}));
    const SongFailure pending{Messages.PendingError, Messages.PendingErrorText, Messages.PendingErrorCode};
    if (failure == pending) Messages.ErrorLogged = true;
}

void SongReports::SoundLost(const WaveInIncident& incident) {
    Say.Write(ReportKind::Info,
              Say.Text(ReasonKey(incident.Kind), {SecondsText(incident.LostFrames, Format.nSamplesPerSec),
                                                  std::to_string(incident.LostFrames), incident.DeviceName}));
}

void SongReports::AvailabilityChanged(bool lost) {
    Say.Write(ReportKind::Info, Say.Text(lost ? "842" : "843"));
}

}  // namespace Corvetape
