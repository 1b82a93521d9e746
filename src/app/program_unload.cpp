// The closing request and the stop of the program, step by step.
#include <vector>

#include "app/program.h"
#include "app/program_parts.h"
#include "core/controls/message_texts.h"
#include "core/version.h"
#include "core/window_place.h"
#include "core/windows_version.h"
#include "platform/desktop.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "post/options/app_launch.h"

namespace Corvetape {

const Program::UnloadStep Program::UnloadSteps[] = {
    // clang-format off
    &Program::FinishAudio,
    &Program::TakeOverMedia,
    &Program::CloseSong,
    &Program::DisableRecording,
    &Program::CloseCapture,
    &Program::TransferPendingSong,
    &Program::DeleteTempFolder,
    &Program::RestoreMixer,
    &Program::RestoreSoundScheme,
    &Program::ReportError,
    &Program::ReportInfo,
    &Program::ReleaseProvider,
    &Program::LaunchStopApp,
    &Program::SaveWindowPlace,
    &Program::RemoveTrayIcon,
    &Program::SaveBars,
    &Program::LogEnd,
    // clang-format on
};

bool Program::Close() {
    if (Stage == LifeStage::Loading) {
        CloseWanted = true;
        return false;
    }
    if (Stage != LifeStage::Running) return true;
    frmMain& form = Memory->Form;
    RecordingFlags& flags = Memory->Flags;
    const bool recording = flags.RecordCurrentSong || flags.RecordNextSong;
    if (!flags.DisableAtEndOfSong && form.chkDelayUnload.Value() != 0 && recording) {
        flags.DisableAtEndOfSong = true;
        flags.QuitAtEndOfSong = true;
        form.chkStopRecording[0].Value(1);
        form.lblStatus[1].Caption(Parts->Messages.FormatMsg(Message::EndsAfterThisSong.Key));
        return false;
    }
    Unload();
    return true;
}

void Program::Unload() {
    if (Stage != LifeStage::Running) return;
    Stage = LifeStage::Unloading;
    for (const UnloadStep step : UnloadSteps) (this->*step)();
    DetachTimers();  // the loop may run on, for encoders that have not ended yet
    Memory->KeptOpen.clear();
    Stage = LifeStage::Ended;
    if (Events.Ended) Events.Ended();
}

void Program::RequestUnload() {
    if (Stage == LifeStage::Loading) UnloadWanted = true;
    if (UnloadPosted || Stage != LifeStage::Running) return;
    UnloadPosted = true;
    // Whoever asks may be in the middle of a buffer or a timer; the stop closes both, so it comes after.
    Host.Loop.Post([this, alive = std::weak_ptr<bool>(Alive)] {
        if (!alive.expired()) Unload();
    });
}

bool Program::RestartElevated(const std::string& parameters) {
    if (!Host.System.RestartsElevated() || !IsWindowsVista(Host.System.Version())) return false;
    if (Parts->Registry.CanWriteMachineBranch(Host.Clock)) return false;
    if (Host.Dialogs.AskYesNo(Parts->Messages.FormatMsg(Message::UpdateNeedsRights.Key),
                              DialogIcon::Critical)) {
        const std::string& folder = Memory->Folders.ProgramFolder;
        const std::string program = folder + "/" + ProgramShortName + ".exe";
        // What comes of it is for the new process to report: this one ends in any case.
        Host.Processes.ShellOpen(folder + "/RunAsAdmin.lnk",
                                 "/q /c \"start \"\" \"" + program + "\" " + parameters + "\"", folder);
        Memory->Flags.DisableAtEndOfSong = true;
        RequestUnload();
    }
    return true;
}

void Program::FinishAudio() {
    frmMain& form = Memory->Form;
    Parts->MixerButtons.End();  // a search may be under way, with values of its own
    form.tmr1Second.Running(false);
    form.tmrGetMediaData.Running(false);
    // A song file that cannot be made here is reported with the other errors: the program ends anyway.
    static_cast<void>(Parts->Automatic.Finish());
    static_cast<void>(Parts->Drain.FinishCut());
    // The song that waits has its own record, which the last song takes over in the next step.
    Parts->Waiting.TransferNow();
    static_cast<void>(Parts->Drain.WriteOut());
    // Its file may have become full by that and waits now.
    Parts->Waiting.TransferNow();
    Parts->Writer.EndWithoutPause();
}

void Program::TakeOverMedia() {
    Memory->Media.SongMedia = Memory->Media.CurrentMedia;
}

void Program::CloseSong() {
    Parts->Writer.CloseSongFile();
}

void Program::DisableRecording() {
    Memory->Flags.EndWithProgram();
}

void Program::CloseCapture() {
    Parts->Inputs.End();  // this may run in the middle of a change of the input
    Parts->Input.CloseWaveIn();
}

void Program::TransferPendingSong() {
    Parts->Waiting.TransferNow();
}

void Program::RemoveTempFolder() {
    DeleteTempFolder();
}

void Program::DeleteTempFolder() {
    if (TempFolderGoes(Memory->Options)) {
        Parts->Results.Collect();  // the margins of a song go once it is encoded
        Parts->MarginFiles.DropOfThisRun();
    }
    Parts->Results.DeleteTempFolder(Memory->Options, Memory->Folders);
}

void Program::RestoreMixer() {
    // A device that has come since the start ends the walk; the program ends all the same.
    if (Memory->Options.AutoUpdate) static_cast<void>(Parts->Mixers.MixerAction(MixerMode::Restore));
}

void Program::RestoreSoundScheme() {
    // There is no sound scheme to restore on this system; the option is only kept.
}

void Program::ReportError() {
    const DeferredMessages& messages = Memory->Messages;
    if (messages.PendingError == 0) return;
    const std::string text = Parts->Messages.FormatMsg(
        std::to_string(messages.PendingError), {messages.PendingErrorText, messages.PendingErrorReason});
    if (!messages.ErrorLogged) Parts->Journal.WriteLog({"ERROR", text});
    if (!Memory->Lifecycle.DontAsk) Host.Dialogs.ShowMessage(text, DialogIcon::Critical);
}

void Program::ReportInfo() {
    const int32_t key = Memory->Messages.PendingInfo;
    if (key == 0) return;
    const std::string text = Parts->Messages.FormatMsg(std::to_string(key));
    Parts->Journal.WriteLog({"INFO", text});
    if (!Memory->Lifecycle.DontAsk) Host.Dialogs.ShowMessage(text, DialogIcon::Information);
}

void Program::ReleaseProvider() {
    Parts->Adoption.Cancel();
    if (Memory->Media.StationDataEnabled) Parts->Providers.Drop();
}

void Program::LaunchStopApp() {
    if (Memory->Form.chkStopApp.Value() == 0) return;
    LaunchApp(Memory->Options.StopAppName, Memory->Options.StopAppParams, Host.Processes, Parts->Journal);
}

void Program::SaveWindowPlace() {
    Host.Desktop.ReportWindow();
    const frmMain& form = Memory->Form;
    const WindowPlace& place = form.Place();
    if (place == WindowPlace{}) return;  // a run without a window
    const std::string text = PlaceText(place);
    const bool normal = form.State() == WindowState::Normal;
    if (normal && text != Memory->Options.FormPos) Parts->Store.WriteSetting("Form", "Pos", text);
    const auto state = static_cast<int32_t>(form.State());
    const bool minimised = form.State() == WindowState::Minimised;
    if (!minimised && state != Memory->Options.FormState) Parts->Store.WriteSetting("Form", "State", state);
}

void Program::RemoveTrayIcon() {
    Host.Desktop.RemoveTrayIcon();
}

void Program::SaveBars() {
    Parts->Bars.Save();
    Host.Desktop.CloseBars();
}

void Program::LogEnd() {
    Parts->Journal.WriteLog({"END "});
}

}  // namespace Corvetape
