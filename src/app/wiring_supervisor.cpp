// What the supervisor and the disk check ask of the rest of the program.
#include "app/program_parts.h"
#include "app/wiring.h"
#include "platform/desktop.h"
#include "platform/dialogs.h"
#include "platform/processes.h"

namespace Corvetape {

namespace {

void AddFirstRun(SupervisorActions& actions, ProgramParts& parts) {
    actions.FillInputDevices = [&parts] { return parts.Inputs.FillInputDevices(); };
    actions.OpenAssistant = [&parts](const std::string& page) { parts.Requests.Assistant.Raise(page); };
    actions.RunFirstBatch = [&parts] {
        const std::string& folder = parts.Memory.Folders.ProgramFolder;
        // There is none beside most installations; the first page of the assistant opens all the same.
        parts.Host.Processes.ShellOpen(folder + "/COR1st.bat", parts.Memory.Options.Language, folder);
    };
}

void AddMedia(SupervisorActions& actions, ProgramParts& parts) {
    actions.ProviderWanted = [&parts] { return parts.Providers.Wanted(); };
    actions.ChooseProvider = [&parts] { parts.Providers.Choose(); };
    actions.GetStationData = [&parts] { parts.Providers.GetStationData(); };
    actions.RestartRadio = [&parts] { parts.Providers.RestartRadio(); };
    actions.LoadImage = [&parts](const std::string& cover) { parts.Covers.LoadImage(cover); };
    actions.LaunchInProgress = [&parts] { return parts.Launcher.BrowserLoading(); };
    actions.IsSongExcluded = [&parts] {
        const State& state = parts.Memory;
        return parts.Watched.IsExcluded(
            WatchedName(state.Options.MusicFileTemplate[1], state.Media.CurrentMedia));
    };
}

void AddRecording(SupervisorActions& actions, ProgramParts& parts) {
    actions.ShowFlags = [&parts] { parts.Recording.ShowFlags(); };
    actions.SongFileOpen = [&parts] { return parts.Writer.SongFileOpen(); };
    // By everything that is known a song ends where a silence begins, and no silence breaks one off.
    actions.BreakOff = [&parts] {
        if (!parts.Automatic.Active()) parts.Recording.BreakOff();
    };
    actions.AbortSong = [&parts] {
        if (!parts.Automatic.EndRecording()) parts.Requests.End.Raise();
        parts.Writer.AbortSong();
    };
    actions.DrainAudioRing = [&parts] {
        return parts.Automatic.Active() ? parts.Automatic.Drain() : parts.Drain.DrainAudioRing(false);
    };
    actions.CheckDisk = [&parts] { return parts.Disk.Run(); };
    actions.CheckReserve = [&parts] { parts.Disk.RunIfShort(parts.Input.Format().nAvgBytesPerSec); };
    actions.CheckUpdate = [] {};  // nothing is asked of the web
    actions.Unload = [&parts] { parts.Requests.End.Raise(); };
}

}  // namespace

SupervisorActions SupervisorActionsOf(ProgramParts& parts) {
    SupervisorActions actions;
    AddFirstRun(actions, parts);
    AddMedia(actions, parts);
    AddRecording(actions, parts);
    actions.FormatMsg = [&parts](const std::string& key, std::span<const std::string> arguments) {
        return parts.Messages.FormatMsg(key, arguments);
    };
    actions.WriteLog = [&parts](const std::string& kind, const std::string& text) {
        parts.Journal.WriteLog({kind, text});
    };
    actions.WarningBox = [&parts](const std::string& text) {
        parts.Host.Dialogs.MessageBox(text, DialogIcon::Exclamation);
    };
    actions.ShowTrayTip = [&parts](const std::string& tip) { parts.Host.Desktop.ShowTrayTip(tip); };
    actions.ShowTrayState = [&parts](int32_t state) {
        parts.Host.Desktop.ShowTrayState(static_cast<TrayState>(state));
    };
    return actions;
}

}  // namespace Corvetape
