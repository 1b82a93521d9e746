// The start of the program, step by step.
#include "app/nesting_loop.h"
#include "app/program.h"
#include "app/program_parts.h"
#include "core/common_folder.h"
#include "core/controls/message_texts.h"
#include "core/settings/command_line.h"
#include "core/text/shell_error.h"
#include "core/text/text.h"
#include "core/version.h"
#include "core/window_place.h"
#include "forms/form_boxes.h"
#include "platform/desktop.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/system_info.h"
#include "post/options/app_launch.h"

namespace Corvetape {

const Program::LoadStep Program::LoadSteps[] = {
    // clang-format off
    &Program::TakeBusyPointer,
    &Program::BlankBrowser,
    &Program::ReadUpdateSwitch,
    &Program::ClaimSingleInstance,
    &Program::ShowVersion,
    &Program::ExtendSearchPath,
    &Program::LoadSettings,
    &Program::ReadSongCounter,
    &Program::DetectEncoders,
    &Program::ChooseLanguage,
    &Program::MakeFolders,
    &Program::LogStart,
    &Program::SnapshotMixer,
    &Program::SeedRandom,
    &Program::PlaceWindow,
    &Program::ApplySwitches,
    &Program::LaunchStartApp,
    &Program::AddTrayIcon,
    &Program::ApplyStationData,
    &Program::EnableRecording,
    &Program::StartTimers,
    &Program::ShowWindow,
    &Program::LoadBars,
    &Program::ReleaseBusyPointer,
    &Program::LoadWatchLists,
    &Program::RecoverSongs,
    &Program::CheckUpdate,
    // clang-format on
};

bool Program::Load() {
    Stage = LifeStage::Loading;
    Memory->KeptOpen.push_back(Memory->Opened.Open(Memory->Form));
    // Priorities come first of all: nothing has been loaded that could disturb a running recording.
    Host.System.RaisePriority();
    for (const LoadStep step : LoadSteps) {
        if ((this->*step)() == Next::EndProcess) {
            Parts->Busy.reset();
            if (Stage == LifeStage::Loading) Stage = LifeStage::Ended;
            return false;
        }
    }
    Stage = LifeStage::Running;
    if (UnloadWanted) {
        Unload();
    } else if (CloseWanted) {
        static_cast<void>(Close());  // a refusal keeps the program running as any other does
    }
    return Running();
}

Program::Next Program::TakeBusyPointer() {
    Parts->Busy.emplace(Host.Desktop);
    return Next::Continue;
}

Program::Next Program::BlankBrowser() {
    Memory->Form.objWebBrowser.Navigate("about:blank");
    return Next::Continue;
}

Program::Next Program::ReadUpdateSwitch() {
    Memory->Lifecycle.UpdateStart = ReadSwitches(Options.CommandLine).Update;
    return Next::Continue;
}

Program::Next Program::ClaimSingleInstance() {
    if (Host.Desktop.ClaimInstance() || Memory->Lifecycle.UpdateStart) return Next::Continue;
    Host.Desktop.ActivateOther();
    return Next::EndProcess;
}

Program::Next Program::ShowVersion() {
    Memory->Form.lblVersion.Caption(ProgramVersion);
    return Next::Continue;
}

Program::Next Program::ExtendSearchPath() {
    Memory->Folders.ProgramFolder = Host.Folders.ProgramFolder();
    Memory->Folders.CommonDataFolder = CommonDataFolder(Host.Folders);
    Corvetape::ExtendSearchPath(Host.Folders, Parts->Expansion, Memory->Folders.CommonDataFolder);
    return Next::Continue;
}

Program::Next Program::LoadSettings() {
    frmMain& form = Memory->Form;
    SettingsTargets targets{Memory->Options, Memory->Folders, Memory->Media};
    Parts->Store.LoadSettings(
        targets, [&] { ShowListsInForm(form, Memory->Options); },
        [&](const SettingRow& row, const std::string& value) { ApplySettingToForm(form, row, value); });
    const std::string& own = Options.SongTempFolderName;
    Memory->Folders.SongTempFolder = Memory->Folders.Paths[0] + "/" + (own.empty() ? ProgramShortName : own);
    return Next::Continue;
}

Program::Next Program::ReadSongCounter() {
    Parts->Counter.Load();
    return Next::Continue;
}

Program::Next Program::DetectEncoders() {
    const bool wanted = Options.ProbeAllTools || NeedsWmaEncoder(Memory->Options);
    WmaEncoderProbe probe(Host.Files, Host.Processes, Parts->Registry);
    Parts->Encoders.EnableFound(
        FindTools(Host.Files, Host.Folders, Memory->Folders, wanted ? &probe : nullptr));
    return Next::Continue;
}

Program::Next Program::ChooseLanguage() {
    std::string& language = Memory->Options.Language;
    if (const std::string own = Host.Desktop.Language(); language.empty() && !own.empty()) {
        Host.Dialogs.Beep();
        const std::string file = Memory->Folders.ProgramFolder + "/" + own + ".lang";
        const std::string fitting = Host.Files.FileSize(file) ? own : "english";
        // An unattended start asks nobody: the next one that can does.
        const bool asked = Options.Boxes != nullptr && !ReadSwitches(Options.CommandLine).DontAsk;
        language = asked ? Options.Boxes->AskLanguage(fitting) : fitting;
        // Empty: the program was asked to end meanwhile.
        if (asked && !language.empty()) Parts->Store.WriteSetting("General", "Language", language);
    }
    if (language.empty()) language = "english";
    Parts->Busy->SetMousePointer(MousePointer::Busy);  // the question had another one
    Parts->Messages.Load(language);
    Parts->Messages.LocalizeControls(Memory->Form);
    Parts->LanguageList.Show(Memory->Folders.ProgramFolder, language);
    if (Events.TextsReady) Events.TextsReady();
    return Next::Continue;
}

Program::Next Program::MakeFolders() {
    // Both are usually there. A missing one for songs is reported by the first song; without the other there
    // is no log.
    Host.Files.MakeFolder(Memory->Folders.SongTempFolder);
    Host.Files.MakeFolder(Memory->Folders.Paths[2]);
    return Next::Continue;
}

Program::Next Program::LogStart() {
    Parts->Journal.WriteLog({"START"});
    return Next::Continue;
}

Program::Next Program::SnapshotMixer() {
    // The search may be one that another process has under way.
    if (Host.Desktop.ClaimInstance() && Parts->Rescue.PutBack())
        Parts->Say.Write(ReportKind::Info, Parts->Say.Text(Message::InputsPutBack.Key));
    Parts->Mixers.MixerAction(MixerMode::TakeSnapshot);
    return Next::Continue;
}

Program::Next Program::SeedRandom() {
    Parts->RandomSeed = Host.System.RandomSeed();
    return Next::Continue;
}

Program::Next Program::PlaceWindow() {
    if (const auto place = StoredPosition(Memory->Options.FormPos)) {
        Host.Desktop.MoveWindow(place->Left, place->Top);
    }
    return Next::Continue;
}

Program::Next Program::ApplySwitches() {
    const Switches switches = ReadSwitches(Options.CommandLine);
    if (switches.RegClasses) {
        Host.Dialogs.ShowMessage(Parts->Messages.FormatMsg(Message::Registered.Key), DialogIcon::Information);
        Stage = LifeStage::Running;
        Unload();
        return Next::EndProcess;
    }
    ApplySwitchesTo(switches);
    return Next::Continue;
}

void Program::ApplySwitchesTo(const Switches& switches) {
    frmMain& form = Memory->Form;
    if (switches.Wizard) Memory->Lifecycle.WizardRequested = true;
    if (switches.Hide) Host.Desktop.MinimizeWindow();
    if (switches.DontAsk) Memory->Lifecycle.DontAsk = true;
    if (switches.Auto) form.chkStartStop[1].Value(1);
    if (switches.Quit) {
        Memory->Flags.DisableAtEndOfSong = true;
        Memory->Options.QuitAfterRecording = true;
    }
    if (switches.TimeMinutes) {
        form.chkStartStop[1].Value(1);
        form.txtRecordingPeriod.Text(std::to_string(*switches.TimeMinutes));
        if (*switches.TimeMinutes > 0) form.chkStopRecording[1].Value(1);
    }
}

Program::Next Program::LaunchStartApp() {
    if (Memory->Form.chkStartApp.Value() != 0) {
        LaunchApp(Memory->Options.StartAppName, Memory->Options.StartAppParams, Host.Processes,
                  Parts->Journal);
    }
    return Next::Continue;
}

Program::Next Program::AddTrayIcon() {
    Host.Desktop.AddTrayIcon();
    return Next::Continue;
}

Program::Next Program::ApplyStationData() {
    frmMain& form = Memory->Form;
    const bool wanted = Memory->Media.StationDataEnabled;
    form.chkStationDataEnable.Value(wanted ? 1 : 0);
    if (!wanted) Parts->MediaSwitch.Apply();
    return Next::Continue;
}

Program::Next Program::EnableRecording() {
    Memory->Flags.FollowMediaData(Memory->Media.StationDataEnabled);
    return Next::Continue;
}

Program::Next Program::StartTimers() {
    frmMain& form = Memory->Form;
    form.tmrEncodeFile.Interval(EncodeInterval(Memory->Options.EncodeDelay));
    form.tmr1Second.Attach(*NestingView(Host.Loop));  // a question that a tick asks stops none of the next
    form.tmrGetMediaData.Attach(Host.Loop);
    form.tmrEncodeFile.Attach(Host.Loop);
    form.tmrVU.Attach(Host.Loop);
    form.tmrMsgBox.Attach(Host.Loop);
    form.tmr1Second.Running(true);
    return Next::Continue;
}

Program::Next Program::ShowWindow() {
    Host.Desktop.ShowWindow();
    return Next::Continue;
}

Program::Next Program::LoadBars() {
    for (Form* bar : {static_cast<Form*>(&Memory->PlainBar), static_cast<Form*>(&Memory->CoverBar)}) {
        Parts->Messages.LocalizeControls(*bar);
        Memory->KeptOpen.push_back(Memory->Opened.Open(*bar));
    }
    Memory->Form.chkQuickButtons.Value(Memory->Options.QuickButtonsVisible ? 0 : 1);
    Host.Desktop.LoadBars();
    return Next::Continue;
}

Program::Next Program::ReleaseBusyPointer() {
    Parts->Busy.reset();
    Host.Loop.ProcessEvents();
    return Next::Continue;
}

Program::Next Program::LoadWatchLists() {
    Parts->WatchTabs.LoadWatchLists();
    return Next::Continue;
}

Program::Next Program::RecoverSongs() {
    if (Options.KeepNotes) Parts->Left.Find();
    return Next::Continue;
}

Program::Next Program::CheckUpdate() {
    if (Memory->Lifecycle.UpdateStart && Events.UpdateWanted) Events.UpdateWanted();
    return Next::Continue;
}

}  // namespace Corvetape
