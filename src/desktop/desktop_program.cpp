#include "desktop/desktop_program.h"

#include <QApplication>
#include <QSessionManager>
#include <utility>

#include "core/controls/message_texts.h"
#include "core/controls/messages.h"
#include "core/settings/command_line.h"
#include "platform/virtual/demo_radio.h"
#include "post/options/language_choice.h"
#include "recording/song_age.h"
#include "recording/song_notices.h"
#include "ui/boxes.h"
#include "ui/language_question.h"
#include "ui/make.h"
#include "ui/provider_question.h"
#include "ui/text_keys.h"

namespace Corvetape {

namespace {

constexpr uint64_t DemoSeed = 1;
constexpr const char* DemoName = "Demo radio";

}  // namespace

DesktopProgram::DesktopProgram(DesktopArguments arguments)
    : Arguments(std::move(arguments)),
      Folders(Arguments.Home.empty() ? std::make_unique<LinuxFolders>()
                                     : std::make_unique<LinuxFolders>(Arguments.Home)),
      Screen(InstanceFolder(Arguments.Home)),
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
    Media.reset();
    Screen.LetGo();
    Shown.reset();
    Ui.reset();
    Keys.reset();
    Covers.reset();
    Trace.reset();
    Recorder.reset();
}

/// A file of texts that fits the language of the desktop.
std::string DesktopProgram::FittingLanguage() {
    const std::string wanted = Screen.Language();
    const bool there = Files.FileSize(Folders->ProgramFolder() + "/" + wanted + ".lang").has_value();
    return there ? wanted : "english";
}

/// Another program of this user runs, which comes to the front. Nobody is asked anything for that.
bool DesktopProgram::IsSecond() {
    if (Screen.ClaimInstance() || ReadSwitches(Arguments.CommandLine).Update) return false;
    Screen.ActivateOther();
    return true;
}

/// Where there is nothing to record, the demo radio is offered.
bool DesktopProgram::ChooseInput() {
    if (Arguments.Demo) return true;
    if (!Pulse.Devices().empty() || ReadSwitches(Arguments.CommandLine).DontAsk) return false;
    clsLocalizeControls texts(Files, Folders->ProgramFolder(), Dialogs);
    const std::string language = FittingLanguage();
    texts.Load(language);
    Toolkit.Speak(language);
    return Dialogs.AskYesNo(texts.FormatMsg(Message::DemoOffered.Key), DialogIcon::Information);
}

Machine DesktopProgram::ThisMachine() {
    WaveIn& inputs = Demo ? static_cast<WaveIn&>(Radio) : Pulse;
    Mixer& mixer = Demo ? static_cast<Mixer&>(Silent) : Volumes;
    Players& players = Demo ? static_cast<Players&>(RadioTitles) : MediaPlayers;
    return {Clock,  Loop,   inputs,     mixer,       Files,    Processes, *Folders, Dialogs,
            System, Screen, &Documents, &AllWindows, &players, &Web,      &Browser};
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
        CloseBoxes();
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
    Toolkit.Speak(state.Options.Language);
    Covers = std::make_unique<CoverPictures>(&desk.Covers);
    Keys = std::make_unique<HelpKeys>(state.Lifecycle, static_cast<HelpPages&>(*this));
    Songs.EncoderFailed.Connect([this](const RunSong& song, int32_t error) {
        Recorder->ReportError(std::string(Message::EncoderFailed.Key),
                              {song.TempFile, std::to_string(error)});
    });
    desk.Age.Excluded.Connect([this](const STATIONANDSONGDATA& song) { Songs.SongExcluded(song); });
    Ui = std::make_unique<UiParts>(
        UiParts{state.Form,   state.Flags, state.Signal,      state.Media,
                desk.Players, state.Pause, state.Messages,    desk.Levels,
                *Trace,       Songs,       desk.Songs,        desk.Lists,
                desk.Bars,    *Keys,       state.Options,     *Covers,
                desk.Heard,   desk.Disk,   Words(desk.Texts), [this] { return Recorder->Close(); }});
    Shown = std::make_unique<MainWindow>(*Ui);
    Dialogs.Over(Shown.get());
    Screen.Over(*Shown, *Ui, state);
    Media = std::make_unique<MediaKeys>(state.Form, state.Flags, state.Media, Presence);
}

void DesktopProgram::SetUrl(const std::string& page, bool /*online*/) {
    const Desk desk = Recorder->Shown();
    const Words say(desk.Texts);
    desk.Values.Lifecycle.WizardRequested = false;
    if (page == "wizard.htm") {
        return Dialogs.ShowMessage(say(Key::AssistantLater).toStdString(), DialogIcon::Information);
    }
    const std::string manual = Folders->ProgramFolder() + ManualInProgramFolder;
    if (!Files.FileSize(manual)) {
        const std::string missing = desk.Texts.FormatMsg(Message::NotThereToOpen.Key, {manual});
        return Dialogs.ShowMessage(missing, DialogIcon::Exclamation);
    }
    if (!Help) Help = Make<HelpWindow>(QString::fromStdString(manual), say, Shown.get());
    Help->show();
    Help->raise();
    Help->activateWindow();
    if (page == "search.htm") Help->BeginSearch();
}

void DesktopProgram::Ask(dlgProvider& dialog) {
    AskOver(Shown.get(), dialog);
}

/// The user chooses at the first start, with the language of the desktop preselected.
std::string DesktopProgram::AskLanguage(const std::string& fitting) {
    if (EndsEarly) return {};
    dlgLanguage dialog;
    LanguageChoice choice(dialog, Files, Dialogs, Folders->ProgramFolder(), fitting);
    Screen.Pointer(MousePointer::Default);
    AskForLanguage(dialog, choice);
    if (EndsEarly) return {};  // nobody has answered
    return choice.Chosen().empty() ? fitting : choice.Chosen();
}

/// The system and the session end the program as its window does; a song that is to be finished holds the
/// session up once.
void DesktopProgram::WatchTheEnd() {
    if (QSocketNotifier* const request = Requests.Notifier()) {
        QObject::connect(request, &QSocketNotifier::activated, request, [this] {
            EndSignals::Take();
            EndWanted();
        });
    }
    QObject::connect(
        qApp, &QGuiApplication::commitDataRequest, qApp,
        [this](QSessionManager& session) {
            if (!Recorder || !Recorder->Running()) return EndWanted();
            Dialogs.Ending(true);
            if (Recorder->Close() || !session.allowsInteraction()) return;
            session.cancel();
            Dialogs.Ending(false);  // the session goes on with its user, until the song has ended
        },
        Qt::DirectConnection);
}

void DesktopProgram::EndWanted() {
    // Nobody may be there to answer: what there is to report at the end is in the log.
    Dialogs.Ending(true);
    if (!Recorder || !Recorder->Running()) {
        // Whoever waits for an answer goes on.
        EndsEarly = true;
        CloseBoxes();
    }
    if (Recorder) static_cast<void>(Recorder->Close());
}

int DesktopProgram::Run() {
    WatchTheEnd();
    if (IsSecond()) return 0;
    Demo = ChooseInput();
    if (EndsEarly) return 0;
    Recorder = std::make_unique<Program>(ThisMachine(), Options(), Events());
    State& state = Recorder->Values();
    Trace = std::make_unique<SignalTrace>(state.Signal, state.Pause, Clock);
    // Also while nobody looks: the history would forget before the next look.
    state.Form.tmr1Second.Timer.Connect([this] { Trace->Follow(); });
    if (!Recorder->Load()) return 0;
    if (QGuiApplication::platformName().startsWith("wayland")) Recorder->Report(Key::WaylandBars);
    Dialogs.Ending(false);
    if (Recorder->Running()) Loop.Run();
    return 0;
}

}  // namespace Corvetape
