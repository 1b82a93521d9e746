#include "desktop/desktop.h"

#include <QApplication>
#include <QLocale>
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
constexpr int TwipsPerPixel = 15;

}  // namespace

Desktop::Desktop(DesktopArguments arguments)
    : Arguments(std::move(arguments)),
      Folders(Arguments.Home.empty() ? std::make_unique<LinuxFolders>()
                                     : std::make_unique<LinuxFolders>(Arguments.Home)),
      Instance(
          [this] {
              if (Shown) Shown->ComeForward();
          },
          // A run with folders of its own disturbs no other one.
          Arguments.Home.empty() ? LinuxSingleInstance::DefaultFolder() : Arguments.Home),
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

Desktop::~Desktop() {
    Keys.reset();
    Tray.reset();
    Shown.reset();
    Covers.reset();
    Trace.reset();
    Recorder.reset();
}

/// A file of texts that fits the language of the desktop.
std::string Desktop::SystemLanguage() {
    const std::string wanted =
        QLocale::languageToString(QLocale::system().language()).toLower().toStdString();
    const bool there = Files.FileSize(Folders->ProgramFolder() + "/" + wanted + ".lang").has_value();
    return there ? wanted : "english";
}

/// Where there is nothing to record, the demo radio is offered.
bool Desktop::ChooseInput() {
    if (Arguments.Demo) return true;
    if (!Pulse.Devices().empty() || ReadSwitches(Arguments.CommandLine).DontAsk) return false;
    clsLocalizeControls texts(Files, Folders->ProgramFolder(), Dialogs);
    texts.Load(SystemLanguage());
    return Dialogs.AskYesNo(texts.FormatMsg(DemoQuestion), DialogIcon::Information);
}

Machine Desktop::ThisMachine() {
    WaveIn& inputs = Demo ? static_cast<WaveIn&>(Radio) : Pulse;
    Mixer& mixer = Demo ? static_cast<Mixer&>(Silent) : Volumes;
    return {Clock, Loop, inputs, mixer, Files, Processes, *Folders, Dialogs, System, Instance};
}

RunOptions Desktop::Options() {
    RunOptions options;
    options.CommandLine = Arguments.CommandLine;
    options.Documents = &Documents;
    options.Browser = &Browser;
    options.Windows = &AllWindows;
    options.Web = &Web;
    options.Players = &MediaPlayers;
    if (Demo) {
        // The choice among the inputs of this computer stays what it is.
        options.Overrides = {{"Mixer", "InputDevice", "0"},
                             {"Mixer", "InputDeviceNames", std::string(DemoName) + ";"}};
        options.Players = &RadioTitles;
    }
    return options;
}

ProgramEvents Desktop::Events() {
    ProgramEvents events;
    events.SongClosed = [this](const ClosedSong& song) {
        Trace->SongClosed(song);
        Songs.SongClosed(song);
    };
    events.SongTransferred = [this](const TransferredSong& song) {
        Songs.SongTransferred(song);
        SongNotices(Recorder->Values().Options, Recorder->Texts(), Presence).SongTransferred(song);
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

DesktopSteps Desktop::Steps() {
    DesktopSteps steps;
    steps.BusyPointer = [](bool busy) {
        if (busy == (QApplication::overrideCursor() != nullptr)) return;
        if (busy) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
        } else {
            QApplication::restoreOverrideCursor();
        }
    };
    steps.ChooseLanguage = [this] { return SystemLanguage(); };
    steps.SizeStatusLine = [this] { MakeWindow(); };  // now its texts are there
    steps.MoveWindow = [this](int32_t left, int32_t top) {
        Shown->move(left / TwipsPerPixel, top / TwipsPerPixel);
    };
    steps.MinimizeWindow = [this] { Shown->showMinimized(); };
    steps.ShowWindow = [this] {
        if (!Shown->isMinimized()) Shown->show();
    };
    steps.SaveWindowPlace = [this] {
        frmMain& form = Recorder->Values().Form;
        if (Shown->isMinimized()) {
            form.State(WindowState::Minimised);
        } else {
            form.State(Shown->isMaximized() ? WindowState::Maximised : WindowState::Normal);
        }
        form.Place({Shown->x() * TwipsPerPixel, Shown->y() * TwipsPerPixel, Shown->width() * TwipsPerPixel,
                    Shown->height() * TwipsPerPixel});
    };
    steps.AddTrayIcon = [this] { MakeTrayIcon(); };
    steps.RemoveTrayIcon = [this] { Tray.reset(); };
    steps.ShowTrayTip = [this](const std::string& tip) {
        if (Tray) Tray->ShowTip(tip);
    };
    steps.ShowTrayState = [this](int32_t state) {
        if (Tray) Tray->ShowState(state);
    };
    steps.AskForSettings = [this](dlgProvider& dialog) { AskOver(Shown.get(), dialog); };
    return steps;
}

void Desktop::MakeWindow() {
    State& state = Recorder->Values();
    Covers = std::make_unique<CoverPictures>(Recorder->Covers());
    Shown = std::make_unique<MainWindow>(
        UiParts{state.Form, state.Flags, state.Signal, state.Media, state.Pause, state.Messages,
                Recorder->Levels(), *Trace, Songs, Recorder->Songs(), *Covers, Words(Recorder->Texts()),
                [this] { return Recorder->SongAgeSeconds(); }, [this] { return Recorder->Close(); }});
    Dialogs.Over(Shown.get());
    // Pages are shown by the user's own browser, which says nothing of its progress.
    BrowserView& view = state.Form.objWebBrowser;
    view.NavigateAsked.Connect([this, &view] {
        if (view.Address().find("://") == std::string::npos) return;  // a blank page
        Processes.ShellOpen(view.Address(), "", "");                  // the browser shows what went wrong
        view.DownloadComplete.Raise();
    });
}

void Desktop::MakeTrayIcon() {
    frmMain& form = Recorder->Values().Form;
    form.mnuTaskbarItem[15].Enabled(false);  // there is no bar of quick buttons yet
    form.mnuTaskbarItem[10].Click.Connect([this] { Shown->ComeForward(); });
    form.mnuTaskbarItem[20].Click.Connect([&form] { form.cmdQuickRecord.Press(); });
    form.mnuTaskbarItem[90].Click.Connect([this] { Loop.Post([this] { Shown->close(); }); });
    Tray = std::make_unique<TrayIcon>(form, [this] { Shown->ComeForward(); });
    // The menu's items are what its buttons press.
    const State& state = Recorder->Values();
    Keys = std::make_unique<MediaKeys>(form, state.Flags, state.Media, Presence);
    Shown->HideWhenMinimised([this] { return Tray && Tray->Present(); });
}

int Desktop::Run() {
    Demo = ChooseInput();
    Recorder = std::make_unique<Program>(ThisMachine(), Options(), Events(), Steps());
    State& state = Recorder->Values();
    Trace = std::make_unique<SignalTrace>(state.Signal, state.Pause, Clock);
    // Also while nobody looks: the history would forget before the next look.
    state.Form.tmr1Second.Timer.Connect([this] { Trace->Follow(); });
    if (!Recorder->Load()) return 0;
    if (Recorder->Running()) Loop.Run();
    return 0;
}

}  // namespace Corvetape
