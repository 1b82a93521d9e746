#include "desktop/desktop_program.h"

#include <utility>

#include "core/controls/messages.h"
#include "core/settings/command_line.h"
#include "platform/virtual/demo_radio.h"
#include "recording/song_notices.h"
#include "ui/provider_question.h"

namespace Corvetape {

namespace {

constexpr uint64_t DemoSeed = 1;
constexpr const char* DemoName = "Demo radio";
constexpr const char* DemoQuestion = "60001";

}  // namespace

DesktopProgram::DesktopProgram(DesktopArguments arguments)
    : Arguments(std::move(arguments)),
      Folders(Arguments.Home.empty() ? std::make_unique<LinuxFolders>()
                                     : std::make_unique<LinuxFolders>(Arguments.Home)),
      // A run with folders of its own disturbs no other one.
      Screen(Arguments.Home.empty() ? LinuxSingleInstance::DefaultFolder() : Arguments.Home),
      Pulse(Loop),
      Radio(Clock, Loop),
      RadioTitles(Loop, DemoName, [this] { return Radio.NowPlaying(); }),
      MediaPlayers(Loop),
      Presence(Loop),
      Web(Loop),
      Browser(Loop, Folders->ProgramFolder() + "/corvetape-browser"),
      Documents(Browser, OtherBrowsers) {
    Radio.AddDevice({DemoName, "demo", WaveInKind::Demo},
                    [](uint32_t rate) { return std::make_unique<DemoRadio>(DemoSeed, rate); });
}

DesktopProgram::~DesktopProgram() {
    Keys.reset();
    Screen.LetGo();
    Shown.reset();
    Covers.reset();
    Trace.reset();
    Recorder.reset();
}

/// Where there is nothing to record, the demo radio is offered.
bool DesktopProgram::ChooseInput() {
    if (Arguments.Demo) return true;
    if (!Pulse.Devices().empty() || ReadSwitches(Arguments.CommandLine).DontAsk) return false;
    clsLocalizeControls texts(Files, Folders->ProgramFolder(), Dialogs);
    const std::string language = Screen.Language();
    const bool there = Files.FileSize(Folders->ProgramFolder() + "/" + language + ".lang").has_value();
    texts.Load(there ? language : "english");
    return Dialogs.AskYesNo(texts.FormatMsg(DemoQuestion), DialogIcon::Information);
}

Machine DesktopProgram::ThisMachine() {
    WaveIn& inputs = Demo ? static_cast<WaveIn&>(Radio) : Pulse;
    Players& players = Demo ? static_cast<Players&>(RadioTitles) : MediaPlayers;
    return {Clock,  Loop,   inputs,     Files,       Processes, *Folders, Dialogs,
            System, Screen, &Documents, &AllWindows, &players,  &Web,     &Browser};
}

RunOptions DesktopProgram::Options() {
    RunOptions options;
    options.CommandLine = Arguments.CommandLine;
    options.Boxes = this;
    if (Demo) {
        // The choice among the inputs of this computer stays what it is.
        options.Overrides = {{"Mixer", "InputDevice", "0"},
                             {"Mixer", "InputDeviceNames", std::string(DemoName) + ";"}};
    }
    return options;
}

ProgramEvents DesktopProgram::Events() {
    ProgramEvents events;
    events.TextsReady = [this] { MakeWindow(); };
    events.SongClosed = [this](const ClosedSong& song) {
        Trace->SongClosed(song);
        Songs.SongClosed(song);
    };
    events.SongTransferred = [this](const TransferredSong& song) {
        Songs.SongTransferred(song);
        const Desk desk = Recorder->Shown();
        SongNotices(desk.Values.Options, desk.Texts, Presence).SongTransferred(song);
    };
    events.MusicMade = [this](const std::string& job, const std::string& file) {
        Songs.MusicMade(job, file);
    };
    events.JobEnded = [this](const JobResult& result) { Songs.JobEnded(result); };
    events.Ended = [this] {
        if (Shown) {
            Shown->LetGo();
            Shown->close();
        }
        Loop.Quit();
    };
    return events;
}

void DesktopProgram::MakeWindow() {
    const Desk desk = Recorder->Shown();
    State& state = desk.Values;
    Covers = std::make_unique<CoverPictures>(&desk.Covers);
    Shown = std::make_unique<MainWindow>(
        UiParts{state.Form, state.Flags, state.Signal, state.Media, state.Pause, state.Messages, desk.Levels,
                *Trace, Songs, desk.Songs, *Covers, Words(desk.Texts),
                [this] { return Recorder->SongAgeSeconds(); }, [this] { return Recorder->Close(); }});
    Dialogs.Over(Shown.get());
    Screen.Over(*Shown, state.Form);
    state.Form.Changed.Connect([this] { FollowForm(); });
    Keys = std::make_unique<MediaKeys>(state.Form, state.Flags, state.Media, Presence);
}

/// The form says where the window is to be and how it is to look.
void DesktopProgram::FollowForm() {
    const frmMain& form = Recorder->Values().Form;
    const WindowPlace& place = form.Place();
    const QPoint corner(place.Left / TwipsPerPixel, place.Top / TwipsPerPixel);
    // The window reports where it is, also where it was put elsewhere than the form had wished.
    if (std::exchange(LastPlace, place) != place && corner != Shown->pos()) Shown->move(corner);
    if (form.State() == WindowState::Minimised) {
        Appeared = true;
        if (!Shown->isMinimized()) Shown->showMinimized();
    } else if (form.Visible() && !std::exchange(Appeared, true)) {
        Shown->show();
    }
}

void DesktopProgram::Ask(dlgProvider& dialog) {
    AskOver(Shown.get(), dialog);
}

int DesktopProgram::Run() {
    Demo = ChooseInput();
    Recorder = std::make_unique<Program>(ThisMachine(), Options(), Events());
    State& state = Recorder->Values();
    Trace = std::make_unique<SignalTrace>(state.Signal, state.Pause, Clock);
    // Also while nobody looks: the history would forget before the next look.
    state.Form.tmr1Second.Timer.Connect([this] { Trace->Follow(); });
    if (!Recorder->Load()) return 0;
    if (Recorder->Running()) Loop.Run();
    return 0;
}

}  // namespace Corvetape
