#include <fmt/format.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <chrono>
#include <ctime>
#include <optional>
#include <utility>

#include "cli/chosen_input.h"
#include "cli/commands.h"
#include "cli/hosts.h"
#include "cli/input_choice.h"
#include "cli/interrupt.h"
#include "cli/live_state.h"
#include "cli/obstacles.h"
#include "cli/output.h"
#include "cli/run_support.h"
#include "cli/run_time.h"
#include "platform/linux/browser/devtools_documents.h"
#include "platform/linux/browser/x11_windows.h"
#include "platform/linux/loop/qt_loop.h"
#include "platform/linux/players/mpris_players.h"
#include "platform/linux/sound/pulse_wave_in.h"
#include "platform/linux/sound/sound_file_source.h"
#include "platform/linux/web/linux_http.h"
#include "platform/virtual/demo_radio.h"
#include "platform/virtual/source_players.h"

namespace Corvetape {

namespace {

constexpr uint64_t DemoSeed = 1;
constexpr double SecondsPerMinute = 60;

/// The input is opened two seconds after the start; a machine under load takes longer.
constexpr double SecondsToOpen = 6;

/// One recording by its command line, on whichever machine.
class Recording {
 public:
    Recording(const RecordArguments& arguments, HostParts& host)
        : Arguments(arguments),
          Host(host),
          Printer(arguments.Json ? SongFormat::Json : SongFormat::Lines, stdout, stderr) {}

    /// The sound file that is to be recorded.
    void From(const std::string& file) { InputFile = file; }

    /// Begins. The exit code if it cannot.
    std::optional<int> Start(Machine machine, const std::string& inputNames, uint32_t framesPerSecond) {
        RunOptions options;
        options.LogClock = &Host.Wall;
        options.CommandLine = Arguments.Quit ? "-dontask -quit" : "-dontask";
        options.Overrides = MakeOverrides(
            {{"Mixer", "InputDevice", "0"}, {"Mixer", "InputDeviceNames", inputNames}}, Arguments);
        if (framesPerSecond != 0) {
            options.Overrides.insert(options.Overrides.begin(),
                                     {"Mixer", "SPDIF48kHz", framesPerSecond == 48000 ? "1" : "0"});
        }
        // What the controls are set to below holds for this run only.
        if (Arguments.Quit) options.Overrides.push_back({"Options", "QuitAfterRecording", "1"});
        if (Arguments.Minutes) {
            options.Overrides.push_back({"Record", "StopAfter", std::to_string(*Arguments.Minutes)});
        }
        if (!InputFile.empty()) options.InputFiles = {InputFile};
        Running = std::make_unique<Program>(machine, std::move(options), Events());
        if (!Running->Load()) return Fail("the recorder could not be started");
        if (const auto obstacle = FindObstacle(*Running, Host.Files)) {
            Running->Unload();
            return Fail(*obstacle);
        }
        Printer.NameEncodeLog(Running->Values().Folders.Paths[2] + "/encode.log");
        Clock = &machine.Clock;
        Begun = ClockSeconds();
        PressControls();
        if (!Line.Visible()) return std::nullopt;
        Watch = machine.Loop.NewTimer([this] { Line.Show(LiveStateText(*Running, Printer.KeptSongs())); });
        Watch->Start(std::chrono::milliseconds(500), TimerPrecision::Coarse);
        return std::nullopt;
    }

    /// True when nothing more is to be recorded.
    bool Over() {
        LookAtTime();
        const bool songs = Arguments.Songs && Printer.KeptSongs() >= *Arguments.Songs;
        const bool seconds = Arguments.Seconds && Time.Seconds() >= *Arguments.Seconds;
        // The end of the song does not come without sound.
        const bool minutes = Arguments.Minutes && Time.InputIsGone() &&
                             Time.Seconds() >= SecondsPerMinute * *Arguments.Minutes;
        const bool nothingComes = (seconds || minutes) && Time.InputIsGone();
        if (nothingComes) Problem = "the input gave no sound any more, and the time is over";
        Opened = Opened || Running->InputOpen();
        const bool closed = !Running->InputOpen() && ClockSeconds() - Begun > SecondsToOpen;
        // What closes an input that was open, such as a long silence, says so itself.
        if (closed && !Opened) Problem = "the input cannot be opened";
        const bool failed = Problem != nullptr || RecordingFailed(*Running);
        // Nobody is there who could press the controls again.
        const RecordingFlags& flags = Running->Values().Flags;
        const bool nothingWanted = !flags.RecordCurrentSong && !flags.RecordNextSong;
        const bool ended =
            nothingWanted || closed || InputEnded || !Running->Running() || Interrupt::Wanted();
        return songs || seconds || failed || ended;
    }

    /// Ends in order: the song is closed and transferred, the encoders finish.
    int Finish() {
        if (Arguments.Songs && Printer.KeptSongs() >= *Arguments.Songs) Running->StopKeeping();
        Running->Unload();
        Watch.reset();
        Line.Clear();
        if (Problem != nullptr) ReportLine(Problem);
        WaitForEncoders(*Running, Host.Processes);
        Running->RemoveTempFolder();
        Printer.Finish();
        if (!Arguments.Json) Print(stdout, KeptText(Printer, FolderOfSongs(Running->Values())) + "\n");
        const bool failed = Problem != nullptr || Failed(*Running, Printer);
        Running.reset();
        return failed ? ExitFailed : ExitDone;
    }

    const Program& Present() const { return *Running; }
    int32_t KeptSongs() const { return Printer.KeptSongs(); }

 private:
    ProgramEvents Events() {
        ProgramEvents events = EventsTo(Printer, Line);
        events.InputEnded = [this] { InputEnded = true; };
        return events;
    }

    /// Follows the time that is counted for the end of the run.
    void LookAtTime() {
        Time.Look(ClockSeconds(), Running->InputSeconds());
        if (!Arguments.Seconds && !Arguments.Minutes) return;
        const bool gone = Time.InputIsGone();
        if (gone == std::exchange(CountsByClock, gone) || !gone) return;
        Line.Clear();
        ReportLine(
            fmt::format("the input has given no sound for {} seconds; they count as time of the recording",
                        RunTime::GraceSeconds));
    }

    double ClockSeconds() const { return static_cast<double>(Clock->MonotonicNanoseconds()) / 1e9; }

    void PressControls() {
        frmMain& form = Running->Values().Form;
        if (Arguments.Quit) form.chkQuitAfterRecording.Value(1);
        form.chkStartStop[Arguments.Next ? 1 : 0].Value(1);
        if (Arguments.Minutes) {
            form.txtRecordingPeriod.SetValueText(std::to_string(*Arguments.Minutes));
            form.chkStopRecording[1].Value(1);
        }
    }

    const RecordArguments& Arguments;
    HostParts& Host;
    SongPrinter Printer;
    TerminalLine Line;
    std::string InputFile;
    std::unique_ptr<Program> Running;
    std::unique_ptr<LoopTimer> Watch;
    bool InputEnded = false;
    const Corvetape::Clock* Clock = nullptr;  ///< of the machine that records
    double Begun = 0;                         ///< by the clock
    RunTime Time;
    bool CountsByClock = false;
    bool Opened = false;            ///< the input was open at least once
    const char* Problem = nullptr;  ///< why the run has to end, if it does not end as it should
};

void WaitFor(std::chrono::nanoseconds duration) {
    // A signal ends the wait early; the loop looks at it at once.
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration);
    const timespec time{static_cast<time_t>(seconds.count()),
                        static_cast<long>((duration - seconds).count())};
    nanosleep(&time, nullptr);
}

/// The tags of a file name the whole of it. As the name of each song in it they would put every song in the
/// place of the one before, so the second song and those after it are numbered.
SourceMedia Numbered(SourceMedia media, int32_t keptSongs) {
    if (keptSongs > 0 && !media.Song.empty()) media.Song += fmt::format(" ({})", keptSongs + 1);
    return media;
}

/// Demo radio and sound files run on virtual time, held against the real one.
int RecordVirtually(const RecordArguments& arguments, const std::string& filePath) {
    VirtualHost host(arguments.Home);
    SourceWaveIn input(host.Clock, host.Loop);
    uint32_t framesPerSecond = 0;
    SourceMedia tags;
    if (filePath.empty()) {
        input.AddDevice(DemoInput(),
                        [](uint32_t rate) { return std::make_unique<DemoRadio>(DemoSeed, rate); });
    } else {
        framesPerSecond = SoundFileSource::NativeRate(filePath) == 48000 ? 48000 : 44100;
        const auto opened = SoundFileSource::Open(filePath, framesPerSecond);
        if (!opened.Source) return Fail(opened.Error);
        if (const auto text = ConversionText(filePath, opened.Source->Format(), framesPerSecond))
            ReportLine(*text);
        tags = opened.Source->NowPlaying();
        input.AddDevice({filePath, "file:" + filePath, WaveInKind::File}, [filePath](uint32_t rate) {
            return std::unique_ptr<SoundSource>(SoundFileSource::Open(filePath, rate).Source);
        });
    }
    const std::string names = input.Devices().front().Name + ";";
    const Recording* running = nullptr;  // before anybody listens
    SourcePlayers player(host.Loop, input.Devices().front().Name, [&] {
        return filePath.empty() ? input.NowPlaying() : Numbered(tags, running->KeptSongs());
    });
    Recording recording(arguments, host);
    running = &recording;
    recording.From(filePath);
    Machine machine = host.With(input);
    machine.Players = &player;
    const auto code = recording.Start(machine, names, framesPerSecond);
    if (code) return *code;
    const LinuxClock real;
    host.Loop.PaceWith(PaceAgainst(real, host.Clock, arguments.Speed, WaitFor));
    const auto over = [&] {
        WaitForEncoderRoom(host.Processes);
        return recording.Over();
    };
    host.Loop.RunUntil(over, std::chrono::hours(24 * 365 * 100));
    host.Loop.PaceWith({});
    return recording.Finish();
}

int RecordLive(const RecordArguments& arguments, PulseWaveIn& pulse, QtLoop& loop,
               const WaveInDevice& device) {
    HostParts host(arguments.Home);
    LinuxClock clock;
    ChosenInput input(pulse, device.Id);
    MprisPlayers players(loop);
    LinuxHttp web(loop);
    DevToolsDocuments documents;
    X11Windows windows;
    const Machine machine{clock,          loop,          input,        host.Mixer,  host.Files,
                          host.Processes, *host.Folders, host.Dialogs, host.System, host.Desktop,
                          &documents,     &windows,      &players,     &web};
    Recording recording(arguments, host);
    if (const auto code = recording.Start(machine, device.Name + ";", 0)) return *code;

    const auto endIfOver = [&] {
        if (recording.Over()) loop.Quit();
    };
    QSocketNotifier wake(Interrupt::Descriptor(), QSocketNotifier::Read);
    QObject::connect(&wake, &QSocketNotifier::activated, [&] {
        wake.setEnabled(false);
        endIfOver();
    });
    const auto look = loop.NewTimer(endIfOver);
    look->Start(std::chrono::milliseconds(200), TimerPrecision::Coarse);
    loop.Run();
    return recording.Finish();
}

}  // namespace

int RunRecord(const RecordArguments& arguments) {
    const Interrupt interrupt;
    if (!arguments.Home.empty()) {
        LinuxFiles files;
        if (const auto obstacle = FolderObstacle(files, arguments.Home)) return Fail(*obstacle);
    }
    int count = 0;
    const QCoreApplication application(count, nullptr);
    QtLoop loop;
    PulseWaveIn pulse(loop);
    const bool noServer = arguments.Input == "demo" || arguments.Input.starts_with("file:");
    WaveInList devices = noServer ? WaveInList() : pulse.Devices();
    devices.push_back(DemoInput());
    const InputChoice choice = ChooseInput(arguments.Input, devices);
    if (!choice.Error.empty()) {
        return Fail(devices.Reason.empty()
                        ? choice.Error
                        : choice.Error + " (no sound server answers: " + devices.Reason + ")");
    }
    const bool live = choice.FilePath.empty() && devices[*choice.Device].Kind != WaveInKind::Demo;
    if (!live) return RecordVirtually(arguments, choice.FilePath);
    if (arguments.Speed != 1) return Fail("--speed is for demo and file inputs");
    return RecordLive(arguments, pulse, loop, devices[*choice.Device]);
}

}  // namespace Corvetape
