// The start of the program, step by step.
#include <algorithm>
#include <array>
#include <iterator>

#include "app/program.h"
#include "app/program_parts.h"
#include "core/controls/message_texts.h"
#include "core/lifecycle.h"
#include "core/settings/command_line.h"
#include "core/text/numbers.h"
#include "core/text/shell_error.h"
#include "core/text/text.h"
#include "core/version.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/system_info.h"
#include "post/encoders/encoder_table.h"
#include "post/options/app_launch.h"

namespace Corvetape {

const Program::LoadStep Program::LoadSteps[] = {
    {"TakeBusyPointer", &Program::TakeBusyPointer},
    {"BlankBrowser", &Program::BlankBrowser},
    {"ReadUpdateSwitch", &Program::ReadUpdateSwitch},
    {"ClaimSingleInstance", &Program::ClaimSingleInstance},
    {"ShowVersion", &Program::ShowVersion},
    {"LayOutPages", &Program::LayOutPages},
    {"ExtendSearchPath", &Program::ExtendSearchPath},
    {"LoadSettings", &Program::LoadSettings},
    {"ReadSongCounter", &Program::ReadSongCounter},
    {"DetectEncoders", &Program::DetectEncoders},
    {"ChooseLanguage", &Program::ChooseLanguage},
    {"SizeStatusLine", &Program::SizeStatusLine},
    {"MakeFolders", &Program::MakeFolders},
    {"LogStart", &Program::LogStart},
    {"SnapshotMixer", &Program::SnapshotMixer},
    {"SeedRandom", &Program::SeedRandom},
    {"PlaceWindow", &Program::PlaceWindow},
    {"ApplySwitches", &Program::ApplySwitches},
    {"LaunchStartApp", &Program::LaunchStartApp},
    {"AddTrayIcon", &Program::AddTrayIcon},
    {"HookWindow", &Program::HookWindow},
    {"ApplyStationData", &Program::ApplyStationData},
    {"EnableRecording", &Program::EnableRecording},
    {"StartTimers", &Program::StartTimers},
    {"ShowWindow", &Program::ShowWindow},
    {"LoadBars", &Program::LoadBars},
    {"ReleaseBusyPointer", &Program::ReleaseBusyPointer},
    {"LoadWatchLists", &Program::LoadWatchLists},
    {"RecoverSongs", &Program::RecoverSongs},
    {"CheckUpdate", &Program::CheckUpdate},
};

std::span<const char* const> Program::LoadStepNames() {
    static const auto names = [] {
        std::array<const char*, std::size(LoadSteps)> result{};
        std::ranges::transform(LoadSteps, result.begin(), [](const LoadStep& step) { return step.Name; });
        return result;
    }();
    return names;
}

bool Program::Load() {
    Stage = LifeStage::Loading;
    Memory->KeptOpen.push_back(Memory->Opened.Open(Memory->Form));
    // Priorities come first of all: nothing has been loaded that could disturb a running recording.
    Host.System.RaisePriority();
    for (const LoadStep& step : LoadSteps) {
        if ((this->*step.Run)() == Next::EndProcess) {
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

namespace {

/// Runs a step of the desktop if there is one.
template <typename... Arguments, typename... Given>
void Run(const std::function<void(Arguments...)>& step, Given&&... arguments) {
    if (step) step(std::forward<Given>(arguments)...);
}

}  // namespace

Program::Next Program::TakeBusyPointer() {
    Run(Desktop.BusyPointer, true);
    return Next::Continue;
}

Program::Next Program::BlankBrowser() {
    Run(Desktop.BlankBrowser);
    return Next::Continue;
}

Program::Next Program::ReadUpdateSwitch() {
    Memory->Lifecycle.UpdateStart = ReadSwitches(Options.CommandLine).Update;
    return Next::Continue;
}

Program::Next Program::ClaimSingleInstance() {
    if (Host.Instance.Claim() || Memory->Lifecycle.UpdateStart) return Next::Continue;
    Host.Instance.ActivateOther();
    return Next::EndProcess;
}

Program::Next Program::ShowVersion() {
    Memory->Form.lblVersion.Caption(ProgramVersion);
    return Next::Continue;
}

Program::Next Program::LayOutPages() {
    Run(Desktop.LayOutPages);
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
    Memory->SongCounter = RoundToInt32(NumberOf(Parts->Registry.ReadUserValue("", SongTotal)));
    return Next::Continue;
}

Program::Next Program::DetectEncoders() {
    const EncoderRow* chosen = FindEncoder(Memory->Options.Encoder);
    const bool wanted = Options.ProbeAllTools || (chosen && chosen->Needs == EncoderTool::WmaEncoder);
    const auto probe = [this, wanted](const std::string& ffmpeg) {
        return wanted ? Parts->WmaEncoderVersion(ffmpeg) : std::string();
    };
    Parts->Encoders.EnableFound(FindTools(Host.Files, Host.Folders, Memory->Folders, probe));
    return Next::Continue;
}

Program::Next Program::ChooseLanguage() {
    std::string& language = Memory->Options.Language;
    if (language.empty() && Desktop.ChooseLanguage) {
        Host.Dialogs.Beep();
        language = Desktop.ChooseLanguage();
        // An unattended start has asked nobody: the next one that can does.
        const bool asked = !ReadSwitches(Options.CommandLine).DontAsk;
        if (asked && !language.empty()) Parts->Store.WriteSetting("General", "Language", language);
    }
    if (language.empty()) language = "english";
    Run(Desktop.BusyPointer, true);
    Parts->Messages.Load(language);
    Parts->Messages.LocalizeControls(Memory->Form);
    return Next::Continue;
}

Program::Next Program::SizeStatusLine() {
    Run(Desktop.SizeStatusLine);
    return Next::Continue;
}

Program::Next Program::MakeFolders() {
    Host.Files.MakeFolder(Memory->Folders.SongTempFolder);  // usually there; a missing one is told by a song
    Host.Files.MakeFolder(Memory->Folders.Paths[2]);        // usually there; without it there is no log
    return Next::Continue;
}

Program::Next Program::LogStart() {
    Parts->Journal.WriteLog({"START"});
    return Next::Continue;
}

Program::Next Program::SnapshotMixer() {
    // The search may be one that another process has under way.
    if (Host.Instance.Claim() && Parts->Rescue.PutBack())
        Parts->Journal.WriteLog({"INFO", Parts->Messages.FormatMsg(Message::InputsPutBack.Key)});
    Parts->Mixers.MixerAction(MixerMode::TakeSnapshot);
    return Next::Continue;
}

Program::Next Program::SeedRandom() {
    Parts->RandomSeed = Host.System.RandomSeed();
    return Next::Continue;
}

Program::Next Program::PlaceWindow() {
    if (const auto place = StoredPosition(Memory->Options.FormPos)) {
        Run(Desktop.MoveWindow, place->Left, place->Top);
    }
    return Next::Continue;
}

Program::Next Program::ApplySwitches() {
    const Switches switches = ReadSwitches(Options.CommandLine);
    if (switches.RegClasses) {
        Host.Dialogs.MessageBox(Parts->Messages.FormatMsg("909"), DialogIcon::Information);
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
    if (switches.Hide) Run(Desktop.MinimizeWindow);
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
    Run(Desktop.AddTrayIcon);
    return Next::Continue;
}

Program::Next Program::HookWindow() {
    Run(Desktop.HookWindow);
    return Next::Continue;
}

Program::Next Program::ApplyStationData() {
    frmMain& form = Memory->Form;
    const bool wanted = Memory->Media.StationDataEnabled;
    form.chkStationDataEnable.Value(wanted ? 1 : 0);
    if (!wanted) Parts->StationDataClicked();
    return Next::Continue;
}

Program::Next Program::EnableRecording() {
    Memory->Flags.RecordingEnabled = Memory->Media.StationDataEnabled;
    return Next::Continue;
}

Program::Next Program::StartTimers() {
    frmMain& form = Memory->Form;
    form.tmrEncodeFile.Interval(EncodeInterval(Memory->Options.EncodeDelay));
    form.tmr1Second.Attach(Host.Loop);
    form.tmrGetMediaData.Attach(Host.Loop);
    form.tmrEncodeFile.Attach(Host.Loop);
    form.tmrVU.Attach(Host.Loop);
    form.tmrMsgBox.Attach(Host.Loop);
    form.tmr1Second.Running(true);
    return Next::Continue;
}

Program::Next Program::ShowWindow() {
    Run(Desktop.ShowWindow);
    return Next::Continue;
}

Program::Next Program::LoadBars() {
    for (Form* bar : {static_cast<Form*>(&Memory->PlainBar), static_cast<Form*>(&Memory->CoverBar)}) {
        Parts->Messages.LocalizeControls(*bar);
        Memory->KeptOpen.push_back(Memory->Opened.Open(*bar));
    }
    Memory->Form.chkQuickButtons.Value(Memory->Options.QuickButtonsVisible ? 0 : 1);
    Run(Desktop.LoadBars);
    return Next::Continue;
}

Program::Next Program::ReleaseBusyPointer() {
    Run(Desktop.BusyPointer, false);
    Host.Loop.ProcessEvents();
    return Next::Continue;
}

Program::Next Program::LoadWatchLists() {
    Parts->WatchTabs.LoadWatchLists();
    return Next::Continue;
}

Program::Next Program::RecoverSongs() {
    if (!Options.KeepNotes) return Next::Continue;
    Parts->LeftSongs = ListNotedSongs(Host.Files, Memory->Folders.SongTempFolder);
    std::ranges::reverse(Parts->LeftSongs);
    return Next::Continue;
}

Program::Next Program::CheckUpdate() {
    if (Memory->Lifecycle.UpdateStart) Run(Desktop.CheckUpdate);
    return Next::Continue;
}

}  // namespace Corvetape
