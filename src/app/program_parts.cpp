#include "app/program_parts.h"

#include "app/wiring.h"
#include "core/common_folder.h"
#include "core/controls/message_texts.h"
#include "core/opening.h"
#include "platform/folders.h"
#include "platform/system_info.h"

namespace Corvetape {

namespace {

/// Where the volumes of the inputs stand while a search changes them.
std::string RescueFile(const SettingsStore& store) {
    const std::string& path = store.Ini().Path();
    return path.substr(0, path.rfind('/')) + "/mixer-before-search.ini";
}

std::unique_ptr<PlayerBridge> BridgeTo(Players* players, RegistryBranches& registry, EventLoop& loop) {
    return players == nullptr ? nullptr : std::make_unique<PlayerBridge>(*players, registry, loop);
}

}  // namespace

ProgramParts::ProgramParts(const Machine& machine, State& state, const RunOptions& run,
                           const ProgramEvents& events)
    : Host(machine),
      Memory(state),
      Run(run),
      Events(events),
      Registry(machine.Files, UserRegistryFile(machine.Folders), MachineRegistryFile(machine.Folders)),
      Expansion(machine.Clock, machine.Folders, Registry),
      Store(machine.Files, machine.Folders, Registry, Expansion, machine.System.Version()),
      Overrides(Store, run.Overrides),
      Journal(machine.Files, run.LogClock != nullptr ? *run.LogClock : machine.Clock, state.Options,
              state.Folders),
      Messages(machine.Files, machine.Folders.ProgramFolder(), machine.Dialogs),
      Say(Journal, Messages, machine.Dialogs, state.Lifecycle, state.Form.lblStatus[1]),
      Unwritable(Store, Journal, state.Folders, Say),
      Writer({machine.Files, state.Flags, state.Signal, state.Pause, state.Media, state.Messages, state.Cut},
             {state.Signal.Format, state.Options, state.Folders, machine.Clock, run.SongNamePrefix,
              run.MaxSongBytes},
             SongEventsOf(*this)),
      Drain({state.Ring, state.Cut, state.Pause, state.Flags, Writer}),
      Learned(machine.Files, FolderOfLearnedCuts(machine.Folders), state.Options),
      MarginFiles(machine.Files, machine.Clock, state.Options, state.Folders, machine.System.RunName()),
      Margins(MarginFiles, run.KeepNotes),
      Automatic({state.Ring, state.Cut, state.Pause, state.Options, state.Signal.Format, state.Flags,
                 state.Signal, state.Media, Writer, Learned, Margins}),
      Targets(Writer, Drain, Automatic),
      Path({state.Signal, state.Pause, state.Ring, machine.Clock},
           {state.Signal, state.Cut, state.Pause, state.Flags, state.Ring}, Targets),
      Input({machine.WaveIn, machine.Loop, machine.Clock, state.Options, state.Signal, state.Ring, Path},
            CaptureEventsOf(*this)),
      Device(Input, Targets, Requests),
      Mode(state.Form, state.Pause, Device),
      Pauses(
          {state.Form, state.Pause, state.Signal, state.Media, Store, machine.Dialogs, Messages, Overrides},
          Mode),
      Calibration(state.Form, state.Pause, machine.Dialogs, Messages),
      Mixers(machine.Mixer, Store, state.Media),
      SavedMixer(Mixers, state.Options, state.Media),
      Rescue(machine.Mixer, machine.Files, RescueFile(Store)),
      Levels(state.Form, state.Signal, state.Pause),
      Bridge(BridgeTo(machine.Players, Registry, machine.Loop)),
      Covers(machine.Web, machine.Files, state.Pause),
      Adoption(state.Media, Pauses, SavedMixer, Messages, run.Boxes),
      MediaHost{state.Media, state.Signal, state.Flags, Adoption},
      Browsers(MediaHost, Store, Say, machine),
      Players(MediaHost, Registry, Bridge.get()),
      Providers(MediaHost, Covers, {&Browsers, &Players}),
      MediaSwitch(state.Form, MediaHost, Providers, Store),
      Query(state.Form, state.Media, Providers, Bridge.get(), machine),
      Browser({state.Form, Store, Journal, Messages, machine.Processes, Say, machine.Browser}),
      Launcher({state.Form, state.Options, Store, Expansion, machine.Processes, machine.Desktop, machine.Loop,
                Say}),
      Encoders(state.Form, state.Options, Store, state.Lifecycle, Requests),
      OptionPages(state.Form, state.Options, Store, state.Flags, machine.Dialogs, Messages),
      LogPage(
          {state.Form, state.Folders, machine.Files, machine.Clock, machine.Loop, machine.Dialogs, Messages}),
      Watched(machine.Files, state.Folders),
      WatchTabs(state.Form, Watched, machine.Processes, Say),
      FolderPage(state.Form, {state.Options, state.Folders}, Store, machine, Messages, WatchTabs),
      Notes(machine.Files, state.Folders),
      Counter(Registry),
      Transfer({state.Options, state.Folders, machine.System.RunName(), run.InputFiles, run.KeepNotes},
               state.Media, state.Pause,
               {machine.Files, machine.Processes, Journal, Notes, Counter, WatchTabs}),
      Songs({machine.Files, machine.Clock, state.Options, state.Folders, WatchTabs, Transfer,
             machine.Processes, Say}),
      Waiting(Writer.SongKept, state.Form.tmrEncodeFile, Transfer, state.Flags, Requests),
      Results(Transfer, machine.Processes, machine.Files, Say),
      Left(machine, state.Folders, Transfer, Notes, Say),
      Reports(Say, state.Messages, Transfer, state.Signal.Format),
      Links(state.Form, machine.Processes, Say),
      LanguageList(state.Form, Store, machine.Files, Say),
      Bars({state.Form, state.PlainBar, state.CoverBar, state.Media, state.Options, Store, machine.Loop,
            Covers}),
      Inputs({state.Form, machine.WaveIn, state.Options, Store, state.Lifecycle}, Device, Say),
      Recording(*this, machine, state),
      Sources({state.Form, state.Media, machine.Clock, Providers, Bridge.get(), Automatic}),
      SearchWait(machine.Clock, machine.Loop),
      Search({Mixers, Inputs, state.Pause, state.Signal, state.Media, state.Options, SearchWait},
             machine.Dialogs, Messages),
      Gain({Mixers, Inputs, state.Pause, state.Signal, SearchWait}, machine.System.Version()),
      Searching(machine.Desktop, Rescue, SearchWait),
      GainQuestions({state.Form, state.Pause, Mixers, Gain, Searching, machine.Dialogs, Messages}),
      InputQuestions({state.Form, Inputs, Search, GainQuestions, Searching, machine.Dialogs, Messages},
                     machine.System.Version()),
      DesktopSound({state.Form, state.Lifecycle, state.Opened, Searching, machine.Processes, machine.Dialogs,
                    Messages}),
      MixerButtons({state.Form, Mixers, DesktopSound, InputQuestions, GainQuestions, Searching},
                   machine.System.Version()),
      Break({state.Flags, Device, Writer, Recording.Clicks, Say}) {
    ConnectEvents();
    ConnectTick();
}

/// What goes on to whoever watches the program.
void ProgramParts::ConnectEvents() {
    Transfer.Transferred.Connect([this](const TransferredSong& song) {
        MarginFiles.SongTransferred(song);
        if (Events.SongTransferred) Events.SongTransferred(song);
    });
    Results.MusicMade.Connect([this](const std::string& job, const MadeMusic& music) {
        MarginFiles.MusicMade(job, music);
        if (Events.MusicMade) Events.MusicMade(job, music.MusicFile);
    });
    Results.JobEnded.Connect([this](const JobResult& result) {
        if (Events.JobEnded) Events.JobEnded(result);
    });
    Journal.Listener = [this](const std::string& kind, const std::string& text) {
        if (Events.Logged) Events.Logged(kind, text);
    };
    Label& status = Memory.Form.lblStatus[1];
    status.Changed.Connect([this, &status] {
        if (Events.StatusShown) Events.StatusShown(status.Caption());
    });
    Requests.Assistant.Connect([this](const std::string& page) {
        if (Events.AssistantWanted) return Events.AssistantWanted(page);
        // Where no assistant opens, none will take this back when it closes.
        Memory.Lifecycle.WizardRequested = false;
    });
    DesktopSound.SetUrl.Connect([this](const std::string& page) { Requests.Assistant.Raise(page); });
    InputQuestions.SearchBegins.Connect([this] { Break.Begin(); });
    InputQuestions.SearchEnds.Connect([this] { Break.End(); });
    Inputs.Changed.Connect([this] { Providers.Refresh(); });
    Memory.Form.cmdForgetCuts.Click.Connect([this] { Learned.Forget(); });
}

/// What is done at each event of tmr1Second after the tick of the recording.
void ProgramParts::ConnectTick() {
    if (Run.KeepNotes) {
        Keeper.emplace(Writer, Notes,
                       NotedState{Memory.Media, Memory.Cut, Memory.Flags, Memory.Pause, Automatic},
                       Host.System.RunName());
    }
    Memory.Form.tmr1Second.Timer.Connect([this] {
        if (Keeper) Keeper->NoteSong();
        Results.Collect();
        Unwritable.Look();
        ReportUnopened(Host.Processes, Say);
        Left.Recover();
    });
}

}  // namespace Corvetape
