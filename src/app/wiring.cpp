#include "app/wiring.h"

#include <fmt/format.h>

#include <utility>

#include "app/program_parts.h"
#include "app/wiring_browser.h"
#include "core/controls/validate_number.h"
#include "core/lifecycle.h"
#include "core/text/artist_and_title.h"
#include "core/text/date_format.h"
#include "core/version.h"
#include "media/provider_wmp.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/folders.h"
#include "post/options/app_launch.h"

namespace Corvetape {

namespace {

constexpr const char* RegistryFileName = "/registry.ini";

/// Key of the message that tells why sound was lost.
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

void LogInfo(ProgramParts& parts, const char* key, std::initializer_list<std::string> arguments = {}) {
    parts.Journal.WriteLog({"INFO", parts.Messages.FormatMsg(key, arguments)});
}

/// One line for each incident, with its length.
void TellLoss(ProgramParts& parts, const WaveInIncident& incident) {
    LogInfo(parts, ReasonKey(incident.Kind),
            {SecondsText(incident.LostFrames, parts.Input.Format().nSamplesPerSec),
             std::to_string(incident.LostFrames), incident.DeviceName});
}

/// One line for a kept song in which something is missing; nothing for a healthy one.
void TellHealth(ProgramParts& parts, const ClosedSong& song) {
    if (song.LostFrames == 0) return;
    LogInfo(parts, "848", {parts.NameOfMusicFile(), SecondsText(song.LostFrames, song.FramesPerSecond)});
}

/// What makes a kept song doubtful that everything was known of.
void TellTrust(ProgramParts& parts, const ClosedSong& song) {
    const SongTrust& trust = song.Trust;
    const std::string name = parts.NameOfMusicFile();
    if (trust.Dropouts > 0) LogInfo(parts, "1652", {name, std::to_string(trust.Dropouts)});
    if (trust.Mixed) LogInfo(parts, "1653", {name});
    if (trust.Sought) LogInfo(parts, "1654", {name});
    if (trust.AgainstEvidence) LogInfo(parts, "1655", {name});
    if (trust.PausesCut > 0) LogInfo(parts, "1656", {name, std::to_string(trust.PausesCut)});
}

/// The recording has stopped: whoever looks has to see it now, and not only when the program ends.
void ReportFailure(ProgramParts& parts, const SongFailure& failure) {
    DeferredMessages& messages = parts.Memory.Messages;
    const std::string text = parts.Messages.FormatMsg(std::to_string(failure.Number),
                                                      {failure.Path, std::to_string(failure.Code)});
    parts.Journal.WriteLog({"ERROR", text});
    parts.Memory.Form.lblStatus[1].Caption(text);
    const SongFailure pending{messages.PendingError, messages.PendingErrorText, messages.PendingErrorCode};
    if (failure == pending) messages.ErrorLogged = true;
}

/// One line for a wanted song that is not kept because it is too short.
void ReportShort(ProgramParts& parts, const ClosedSong& song) {
    const STATIONANDSONGDATA& media = song.Media;
    const std::string file = song.TempPath.substr(song.TempPath.rfind('/') + 1);
    const std::string name = media.Song.empty() ? file : ArtistAndTitle(media);
    const std::string seconds =
        fmt::format("{:.1f}", static_cast<double>(song.Frames) / song.FramesPerSecond);
    const std::string text = parts.Messages.FormatMsg("861", {name, seconds});
    parts.Journal.WriteLog({"INFO", text});
    parts.Memory.Form.lblStatus[1].Caption(text);
}

void TellAvailability(ProgramParts& parts, bool lost) {
    LogInfo(parts, lost ? "842" : "843");
}

/// A line in the log, and in the window until something else happens.
void ReportProblem(ProgramParts& parts, const char* key, const std::string& path) {
    const std::string text = parts.Messages.FormatMsg(key, {path});
    parts.Journal.WriteLog({"ERROR", text});
    parts.Memory.Form.lblStatus[1].Caption(text);
}

/// Settings and log lines are written as things happen, in the middle of whatever it is; that they are lost
/// is reported afterwards, once.
void ReportUnwritable(ProgramParts& parts) {
    if (parts.Store.HasFailed() && !std::exchange(parts.SettingsProblemReported, true)) {
        ReportProblem(parts, "877", parts.Store.Ini().Path());
    }
    if (parts.Journal.HasFailed() && !std::exchange(parts.LogProblemReported, true)) {
        ReportProblem(parts, "878", parts.Memory.Folders.Paths[2]);
    }
}

/// The end of song will be noticed another way. By time nobody knows of the song whose cut is pending.
void LeaveEndOfSong(ProgramParts& parts, EndOfSong next) {
    const bool byItself = next == EndOfSong::Automatic || parts.Automatic.Active();
    if (next == EndOfSong::Silence || byItself) return EmptyRing(parts);
    if (!parts.Drain.FinishCut()) parts.Owner.RequestUnload();
}

}  // namespace

void EmptyRing(ProgramParts& parts) {
    const bool written = parts.Automatic.Active() ? parts.Automatic.Finish()
                                                  : parts.Drain.FinishCut() && parts.Drain.WriteOut();
    if (!written) parts.Owner.RequestUnload();
    parts.Memory.Cut.Settle();
    parts.Memory.Ring.AudioReadIndex = parts.Memory.Ring.AudioWriteIndex;
}

std::string UserRegistryFile(Machine machine) {
    return machine.Folders.ShellFolderPath(ShellFolder::AppData) + "/" + ProgramShortName + RegistryFileName;
}

std::string MachineRegistryFile(Machine machine) {
    return CommonDataFolder(machine.Folders) + RegistryFileName;
}

std::string LearnedCutsFolder(Machine machine) {
    return machine.Folders.ShellFolderPath(ShellFolder::AppData) + "/" + ProgramShortName + "/cuts";
}

CaptureEvents CaptureEventsOf(ProgramParts& parts) {
    CaptureEvents events;
    events.Buffer = [&parts](WaveBuffer& buffer) { return parts.Path.Handle(buffer); };
    events.Fatal = [&parts] { parts.Owner.RequestUnload(); };
    events.DeviceIncident = [&parts](const WaveInIncident& incident) { TellLoss(parts, incident); };
    events.Availability = [&parts](bool lost) { TellAvailability(parts, lost); };
    events.Ended = [&parts] {
        if (parts.Owner.Events.InputEnded) parts.Owner.Events.InputEnded();
    };
    return events;
}

SongPlace SongPlaceOf(ProgramParts& parts) {
    const auto baseName = [&parts] {
        const std::string& stamp = parts.Memory.Options.MusicFileTemplate[0];
        return SafePathPart(parts.Owner.Options.SongNamePrefix +
                            FormatDate(stamp, parts.Host.Clock.LocalNow()));
    };
    return {parts.Input.Format(), parts.Memory.Options, parts.Memory.Folders, baseName,
            parts.Owner.Options.MaxSongBytes};
}

SongEvents SongEventsOf(ProgramParts& parts) {
    SongEvents events;
    events.SongBegun = [&parts](const std::string& /*path*/) { parts.NoteSong(); };
    events.SongClosed = [&parts](const ClosedSong& song) {
        if (song.Fate == SongFate::Kept) {
            parts.NoteSong(song.Media.TempFileName, song.Media, true);
            TellHealth(parts, song);
            TellTrust(parts, song);
        }
        if (parts.Owner.Events.SongClosed) parts.Owner.Events.SongClosed(song);
        // After the song's own event: who prints that needs no second line.
        if (song.IsTooShort()) ReportShort(parts, song);
    };
    events.BeforeHandOver = [&parts] {
        if (parts.Memory.Form.tmrEncodeFile.Running()) parts.Owner.TransferNow();
    };
    events.StoreCover = [&parts](const std::string& basePath) {
        if (parts.Covers) parts.Covers->SaveImage(basePath, parts.Memory.Media.SongMedia.Cover);
    };
    events.HandOver = [&parts] { parts.Memory.Form.tmrEncodeFile.Running(true); };
    events.QuitWanted = [&parts] { parts.Owner.RequestUnload(); };
    events.Failed = [&parts](const SongFailure& failure) { ReportFailure(parts, failure); };
    return events;
}

AdoptionActions AdoptionActionsOf(ProgramParts& parts) {
    AdoptionActions actions;
    actions.LoadProviderSettings = [&parts](const std::string& name) { parts.LoadProviderSettings(name); };
    actions.StoreProviderSettings = [&parts] { parts.Pauses.StoreProviderSettings(); };
    actions.UpdateMixer = [&parts] { parts.SavedMixer.UpdateMixer(); };
    actions.ApplyMixer = [&parts] { parts.SavedMixer.ApplyMixer(); };
    actions.StoreMixer = [&parts] { parts.SavedMixer.StoreMixer(); };
    actions.Localize = [&parts](Form& form) { parts.Messages.LocalizeControls(form); };
    actions.FormatMsg = [&parts](const std::string& key, const std::string& argument) {
        return parts.Messages.FormatMsg(key, {argument});
    };
    actions.Ask = parts.Owner.Desktop.AskForSettings;
    return actions;
}

ProviderHost ProviderHostOf(ProgramParts& parts) {
    ProviderHost host{parts.Memory.Media, parts.Memory.Signal, parts.Memory.Flags, {}, {}, {}, {}};
    host.LoadProviderSettings = [&parts](const std::string& name) { parts.LoadProviderSettings(name); };
    host.ApplyMixerSection = [&parts] { parts.SavedMixer.UpdateMixer(); };
    host.HandOverPending = [&parts] { return parts.Memory.Form.tmrEncodeFile.Running(); };
    host.AdoptSettings = [&parts](const std::string& name) { parts.Adoption.Adopt(name); };
    return host;
}

std::vector<ProviderFactory> FactoriesOf(ProgramParts& parts) {
    std::vector<ProviderFactory> factories;
    AddBrowserFactory(parts, factories);
    if (parts.Bridge) {
        factories.push_back([&parts] {
            auto provider = std::make_unique<clsProviderWMP>(
                parts.MediaHost, parts.Registry, [&parts] { return parts.Bridge->PlayerPresent(); });
            if (parts.Owner.Options.Players->AreTheInput()) provider->GetStationData();
            return provider;
        });
    }
    return factories;
}

TransferCallbacks TransferCallbacksOf(ProgramParts& parts) {
    TransferCallbacks callbacks;
    callbacks.AddToWatchList = [&parts](int32_t list, const std::string& entry) {
        const WatchListKind kind = list == 0 ? WatchListKind::Include : WatchListKind::Exclude;
        parts.WatchTabs.AddToWatchList(kind, entry);
    };
    callbacks.CountSong = [&parts] { return parts.Registry.RaiseUserNumber("", SongTotal); };
    callbacks.Unload = [&parts] { parts.Owner.RequestUnload(); };
    return callbacks;
}

SessionActions SessionActionsOf(ProgramParts& parts) {
    SessionActions actions;
    actions.CutNow = [&parts] {
        if (!parts.Drain.DrainAudioRing(true)) parts.Owner.RequestUnload();
    };
    actions.ResumeRecording = [&parts] { parts.ResumeRecording(); };
    actions.RefuseZeroMinutes = [&parts] {
        parts.Host.Dialogs.MessageBox(parts.Messages.FormatMsg("802"), DialogIcon::Exclamation);
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
            [&parts](const std::string& cover) { parts.LoadImage(cover); },
            [&parts] { parts.Owner.RequestUnload(); }};
}

InputListActions InputListActionsOf(ProgramParts& parts) {
    InputListActions actions;
    actions.CaptureOpen = [&parts] { return parts.Input.IsOpen(); };
    actions.OpenWaveIn = [&parts](int32_t device) {
        return device >= 0 && parts.Input.OpenWaveIn(static_cast<size_t>(device));
    };
    actions.CloseWaveIn = [&parts] {
        EmptyRing(parts);  // the next opening makes it anew
        parts.Input.CloseWaveIn();
    };
    actions.GetStationData = [&parts] { parts.Providers.GetStationData(); };
    actions.LoadImage = [&parts](const std::string& cover) { parts.LoadImage(cover); };
    return actions;
}

void AttachHandlers(ProgramParts& parts) {
    frmMain& form = parts.Memory.Form;
    parts.Transfer.Attach(form.tmrEncodeFile);
    parts.Transfer.Transferred.Connect([&parts](const TransferredSong& song) {
        if (!song.JobName.empty()) parts.UnfinishedJobs[song.JobName] = song;
        if (parts.Owner.Events.SongTransferred) parts.Owner.Events.SongTransferred(song);
    });
    form.cmdForgetCuts.Click.Connect([&parts] { parts.Learned.Forget(); });
    parts.Pauses.Leaving = [&parts](EndOfSong next) { LeaveEndOfSong(parts, next); };
    parts.Journal.Listener = [&parts](const std::string& kind, const std::string& text) {
        if (parts.Owner.Events.Logged) parts.Owner.Events.Logged(kind, text);
    };
    form.lblStatus[1].Changed.Connect([&parts, &form] {
        if (parts.Owner.Events.StatusShown) parts.Owner.Events.StatusShown(form.lblStatus[1].Caption());
    });
    parts.Encoders.SetUrl = [&parts](const std::string& page) {
        if (parts.Owner.Desktop.OpenAssistant) parts.Owner.Desktop.OpenAssistant(page);
    };
    parts.Launcher.ShowBusy = [&parts](bool busy) {
        if (parts.Owner.Desktop.BusyPointer) parts.Owner.Desktop.BusyPointer(busy);
    };
    parts.WatchTabs.Unreadable = [&parts](const std::string& path) { ReportProblem(parts, "876", path); };
    parts.FolderPage.LogFolderChanged = [&parts](const std::string& before) {
        parts.WatchTabs.FollowFolder(before);
    };
    parts.MixerButtons.SearchBegins.Connect([&parts] { parts.Break.Begin(); });
    parts.MixerButtons.SearchEnds.Connect([&parts] { parts.Break.End(); });
    parts.MixerButtons.SetUrl.Connect([&parts](const std::string& page) {
        if (parts.Owner.Desktop.OpenAssistant) parts.Owner.Desktop.OpenAssistant(page);
    });
    form.chkStationDataEnable.Click.Connect([&parts] { parts.StationDataClicked(); });
    form.lblStationDataEnable.Click.Connect([&form] { form.chkStationDataEnable.Press(); });
    form.cmdGetStationID.Click.Connect([&parts] { parts.StationIDClicked(); });
    form.tmr1Second.Timer.Connect([&parts] {
        parts.NoteSong();
        parts.Owner.CollectJobs();
        ReportUnwritable(parts);
        parts.RecoverSongs();
    });
    form.Methods.Add<int32_t, std::string>("AddToWatchList", [&parts](int32_t list,
                                                                      const std::string& entry) {
        if (list != 0 && list != 1) return;
        parts.WatchTabs.AddToWatchList(list == 0 ? WatchListKind::Include : WatchListKind::Exclude, entry);
    });
    form.Methods.Add("Quit", [&parts] { parts.Owner.Close(); });
}

}  // namespace Corvetape
