#include "desktop/desktop.h"

#include <QApplication>
#include <QLocale>
#include <QScreen>
#include <QSessionManager>
#include <utility>

#include "core/controls/messages.h"
#include "core/settings/command_line.h"
#include "platform/linux/desktop/compositor.h"
#include "platform/virtual/demo_radio.h"
#include "post/options/language_choice.h"
#include "recording/song_notices.h"
#include "ui/language_question.h"
#include "ui/provider_question.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

constexpr uint64_t DemoSeed = 1;
constexpr const char* DemoName = "Demo radio";
constexpr const char* DemoQuestion = "60001";

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
    Media.reset();
    PlainBar.reset();
    CoverBar.reset();
    if (Shown) Shown->Follow(nullptr);
    Tray.reset();
    Shown.reset();
    Ui.reset();
    Keys.reset();
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
    steps.ChooseLanguage = [this] { return AskForLanguage(); };
    steps.SizeStatusLine = [this] { MakeWindow(); };  // now its texts are there
    steps.MoveWindow = [this](int32_t left, int32_t top) {
        Shown->move(left / ScreenTwipsPerPixel, top / ScreenTwipsPerPixel);
    };
    steps.MinimizeWindow = [this] { Shown->showMinimized(); };
    steps.ShowWindow = [this] { ShowStarted(); };
    steps.LoadBars = [this] { LoadBars(); };
    steps.SaveBars = [this] {
        PlainBar.reset();
        CoverBar.reset();
    };
    steps.SaveWindowPlace = [this] {
        frmMain& form = Recorder->Values().Form;
        if (Shown->isMinimized()) {
            form.State(WindowState::Minimised);
        } else {
            form.State(Shown->isMaximized() ? WindowState::Maximised : WindowState::Normal);
        }
        form.Place({Shown->x() * ScreenTwipsPerPixel, Shown->y() * ScreenTwipsPerPixel,
                    Shown->width() * ScreenTwipsPerPixel, Shown->height() * ScreenTwipsPerPixel});
    };
    AddTraySteps(steps);
    steps.AskForSettings = [this](dlgProvider& dialog) { AskOver(Shown.get(), dialog); };
    return steps;
}

void Desktop::AddTraySteps(DesktopSteps& steps) {
    steps.AddTrayIcon = [this] { MakeTrayIcon(); };
    steps.RemoveTrayIcon = [this] {
        Shown->Follow(nullptr);
        Tray.reset();
    };
    steps.ShowTrayTip = [this](const std::string& tip) {
        if (Tray) Tray->ShowTip(tip);
    };
    steps.ShowTrayState = [this](int32_t state) {
        if (Tray) Tray->ShowState(state);
        Shown->setWindowIcon(StateIcon(state));
    };
}

/// A start that hides the window hides it where an icon brings it back, and leaves it minimised elsewhere.
void Desktop::ShowStarted() {
    if (!Shown->isMinimized()) return Shown->show();
    if (AnswerTo(WindowState::Minimised, Tray->Present(), false) != WindowAnswer::HideToTray) return;
    Shown->setWindowState(Qt::WindowNoState);  // first, or it would be put back on the screen
    Shown->hide();
}

void Desktop::LoadBars() {
    State& state = Recorder->Values();
    const QSize screen = QGuiApplication::primaryScreen()->size() * ScreenTwipsPerPixel;
    state.Form.Place({Shown->x() * ScreenTwipsPerPixel, Shown->y() * ScreenTwipsPerPixel,
                      Shown->width() * ScreenTwipsPerPixel, Shown->height() * ScreenTwipsPerPixel});
    FloatingBars& bars = Recorder->Bars();
    bars.IconIsThere(Tray->Present());
    bars.Load({screen.width(), screen.height()});
    const bool wayland = QGuiApplication::platformName().startsWith("wayland");
    const BarStyle style = wayland || CompositorRuns() ? BarStyle::Composited : BarStyle::Plain;
    PlainBar = std::make_unique<QuickBarWindow>(*Ui, state.PlainBar, style);
    CoverBar = std::make_unique<CoverBarWindow>(*Ui, state.CoverBar, style);
    state.Form.tmr1Second.Timer.Connect([this, &bars] { bars.IconIsThere(Tray && Tray->Present()); });
}

void Desktop::SetUrl(const std::string& /*page*/, bool /*online*/) {
    Recorder->Values().Form.lblStatus[1].Caption(Recorder->Texts().FormatMsg(Key::NotBuilt));
}

/// The user chooses at the first start, with the language of the desktop preselected. An unattended program
/// takes that one.
std::string Desktop::AskForLanguage() {
    if (ReadSwitches(Arguments.CommandLine).DontAsk) return SystemLanguage();
    dlgLanguage dialog;
    LanguageChoice choice(dialog, Files, Dialogs, Folders->ProgramFolder(), SystemLanguage());
    QApplication::restoreOverrideCursor();
    Corvetape::AskForLanguage(dialog, choice);
    return choice.Chosen().empty() ? SystemLanguage() : choice.Chosen();
}

/// The system and the session end the program as its window does; a song that is to be finished holds the
/// session up once.
void Desktop::WatchTheEnd() {
    if (QSocketNotifier* const request = Requests.Notifier()) {
        QObject::connect(request, &QSocketNotifier::activated, request, [this] {
            EndSignals::Take();
            static_cast<void>(Recorder->Close());
        });
    }
    QObject::connect(
        qApp, &QGuiApplication::commitDataRequest, qApp,
        [this](QSessionManager& session) {
            if (!Recorder->Close() && session.allowsInteraction()) session.cancel();
        },
        Qt::DirectConnection);
}

void Desktop::MakeWindow() {
    State& state = Recorder->Values();
    Covers = std::make_unique<CoverPictures>(Recorder->Covers());
    Keys = std::make_unique<HelpKeys>(state.Lifecycle, static_cast<HelpPages&>(*this));
    Ui = std::make_unique<UiParts>(
        UiParts{state.Form, state.Flags, state.Signal, state.Media, state.Pause, state.Messages,
                Recorder->Levels(), *Trace, Songs, Recorder->Songs(), Recorder->Lists(), Recorder->Bars(),
                *Keys, state.Options, *Covers, Words(Recorder->Texts()),
                [this] { return Recorder->SongAgeSeconds(); }, [this] { return Recorder->Close(); }});
    Shown = std::make_unique<MainWindow>(*Ui);
    Dialogs.Over(Shown.get());
}

void Desktop::MakeTrayIcon() {
    frmMain& form = Recorder->Values().Form;
    form.mnuTaskbarItem[10].Click.Connect([this] { Shown->ComeForward(); });
    form.mnuTaskbarItem[20].Click.Connect([&form] { form.cmdQuickRecord.Press(); });
    form.mnuTaskbarItem[90].Click.Connect([this] { Loop.Post([this] { Shown->close(); }); });
    Tray = std::make_unique<TrayIcon>(form, [this] { Shown->ComeForward(); });
    // The menu's items are what its buttons press.
    const State& state = Recorder->Values();
    Media = std::make_unique<MediaKeys>(form, state.Flags, state.Media, Presence);
    Shown->Follow(Tray.get());
}

int Desktop::Run() {
    Demo = ChooseInput();
    Recorder = std::make_unique<Program>(ThisMachine(), Options(), Events(), Steps());
    State& state = Recorder->Values();
    Trace = std::make_unique<SignalTrace>(state.Signal, state.Pause, Clock);
    // Also while nobody looks: the history would forget before the next look.
    state.Form.tmr1Second.Timer.Connect([this] { Trace->Follow(); });
    if (!Recorder->Load()) return 0;
    WatchTheEnd();
    if (Recorder->Running()) Loop.Run();
    return 0;
}

}  // namespace Corvetape
