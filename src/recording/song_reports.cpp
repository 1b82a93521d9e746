#include "recording/song_reports.h"

#include <fmt/format.h>

#include <initializer_list>
#include <string>
#include <string_view>

#include "core/controls/message_texts.h"
#include "core/text/artist_and_title.h"

namespace Corvetape {

namespace {

/// Key of the message that says why sound was lost.
std::string_view ReasonKey(WaveInIncidentKind kind) {
    switch (kind) {
        case WaveInIncidentKind::Overrun:
            return Message::LostByThisComputer.Key;
        case WaveInIncidentKind::ServerLost:
            return Message::LostByServer.Key;
        case WaveInIncidentKind::DeviceLost:
            return Message::LostWithDevice.Key;
        case WaveInIncidentKind::ClockDrift:
            return Message::NotDelivered.Key;
    }
    return Message::NotDelivered.Key;
}

std::string SecondsText(uint64_t frames, uint32_t framesPerSecond) {
    return fmt::format("{:.3f}", static_cast<double>(frames) / framesPerSecond);
}

}  // namespace

void SongReports::SongClosed(const ClosedSong& song) {
    if (song.IsTooShort()) ReportShort(song);
    if (song.Fate != SongFate::Kept) return;
    const std::string name = Transfer.NamesOf(song.Media).FinalName;
    if (song.LostFrames != 0) {
        Say.Write(ReportKind::Info, Say.Text(Message::SoundMissingInSong.Key,
                                             {name, SecondsText(song.LostFrames, song.FramesPerSecond)}));
    }
    ReportTrust(song, name);
}

/// What makes a kept song doubtful that everything was known of.
void SongReports::ReportTrust(const ClosedSong& song, const std::string& name) {
    const SongTrust& trust = song.Trust;
    const auto report = [this](std::string_view key, std::initializer_list<std::string> arguments) {
        Say.Write(ReportKind::Info, Say.Text(key, arguments));
    };
    if (trust.Dropouts == 1) report(Message::HasOneDropout.Key, {name});
    if (trust.Dropouts > 1) report(Message::HasDropouts.Key, {name, std::to_string(trust.Dropouts)});
    if (trust.Mixed) report(Message::IsMixed.Key, {name});
    if (trust.Sought) report(Message::IsSought.Key, {name});
    if (trust.AgainstEvidence) report(Message::IsCutByTitle.Key, {name});
    if (trust.PausesCut == 1) report(Message::WasPausedOnce.Key, {name});
    if (trust.PausesCut > 1) report(Message::WasPaused.Key, {name, std::to_string(trust.PausesCut)});
}

void SongReports::ReportShort(const ClosedSong& song) {
    const std::string file = song.TempPath.substr(song.TempPath.rfind('/') + 1);
    const std::string name = song.Media.Song.empty() ? file : ArtistAndTitle(song.Media);
    const std::string seconds =
        fmt::format("{:.1f}", static_cast<double>(song.Frames) / song.FramesPerSecond);
    Say.WriteAndShow(ReportKind::Info, Say.Text(Message::IsTooShort.Key, {name, seconds}));
}

void SongReports::SongFailed(const SongFailure& failure) {
    Say.WriteAndShow(ReportKind::Error,
                     Say.Text(std::to_string(failure.Number), {failure.Path, failure.Reason}));
    const SongFailure pending{Messages.PendingError, Messages.PendingErrorText, Messages.PendingErrorCode,
                              Messages.PendingErrorReason};
    if (failure == pending) Messages.ErrorLogged = true;
}

void SongReports::SoundLost(const WaveInIncident& incident) {
    const std::string text =
        Say.Text(ReasonKey(incident.Kind), {SecondsText(incident.LostFrames, Format.nSamplesPerSec),
                                            std::to_string(incident.LostFrames), incident.DeviceName});
    Say.Write(ReportKind::Info, Say.WithReason(text, incident.Reason));
}

void SongReports::AvailabilityChanged(bool lost) {
    // Whoever looks has to see it at once.
    Say.WriteAndShow(ReportKind::Info, Say.Text(lost ? Message::InputGone.Key : Message::InputBack.Key));
}

}  // namespace Corvetape
