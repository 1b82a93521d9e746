#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <optional>
#include <set>
#include <utility>

#include "cli/commands.h"
#include "cli/hosts.h"
#include "cli/interrupt.h"
#include "cli/live_state.h"
#include "cli/media_table.h"
#include "cli/obstacles.h"
#include "cli/output.h"
#include "cli/run_support.h"
#include "core/text/text.h"
#include "platform/linux/files/write_behind_files.h"
#include "platform/linux/sound/sound_file_source.h"
#include "platform/virtual/source_players.h"

namespace Corvetape {

namespace {

constexpr uint64_t LargestTable = 64ULL * 1024 * 1024;

/// A file to split, with the rate that it is split at.
struct Job {
    std::string Path;
    uint32_t FramesPerSecond = 44100;
    uint64_t Frames = 0;
};

std::optional<std::string> AddJob(const std::string& path, std::vector<Job>& jobs) {
    Job job{path};
    if (SoundFileSource::NativeRate(path) == 48000) job.FramesPerSecond = 48000;
    const auto opened = SoundFileSource::Open(path, job.FramesPerSecond);
    if (!opened.Source) return opened.Error;
    if (const auto text = ConversionText(path, opened.Source->Format(), job.FramesPerSecond))
        ReportLine(*text);
    job.Frames = opened.Source->TotalFrames();
    jobs.push_back(job);
    return std::nullopt;
}

std::string AbsolutePath(const std::string& path) {
    if (path.starts_with('/')) return path;
    std::array<char, 4096> here{};
    const bool known = getcwd(here.data(), here.size()) != nullptr;
    return known ? std::string(here.data()) + "/" + path : path;
}

/// A folder beside the music that belongs to this process alone.
std::string OwnTempFolder(const SplitArguments& arguments) {
    return fmt::format("{}/.corvetape-{}", AbsolutePath(arguments.Out), getpid());
}

/// The settings of one split: the temporary songs lie beside the music, so that a finished song has to be
/// moved only, in a folder of this process, which goes with the last of them.
std::vector<SettingOverride> SplitOverrides(const SplitArguments& arguments, const Job& job) {
    std::vector<SettingOverride> own = {
        {"Mixer", "InputDevice", "0"},
        {"Mixer", "InputDeviceNames", job.Path + ";"},
        {"Mixer", "SPDIF48kHz", job.FramesPerSecond == 48000 ? "1" : "0"},
        {"Options", "DelTemp", "1"},
        {"Options", "DelTempFolder", "1"},
        {"Options", "InfoAfterSilence", "2000000000"},  // a silent hour inside a file is no reason to end
    };
    if (!arguments.Out.empty()) {
        own.push_back({"Options", "MusicPath", AbsolutePath(arguments.Out)});
        own.push_back({"Options", "TempPath", OwnTempFolder(arguments)});
    }
    return MakeOverrides(std::move(own), arguments);
}

/// Songs without a title are named by the file that they come from and a stamp: songs of several files meet
/// in one folder, and the stamps alone could be the same.
std::string NamePrefix(const std::string& path) {
    constexpr size_t most = 100;  // leaves room for any stamp
    const std::string name = path.substr(path.rfind('/') + 1);
    const size_t extension = name.rfind('.');
    const std::string stem = extension == 0 ? name : name.substr(0, extension);
    return std::string(CutText(stem, most)) + " ";
}

/// A sound file on its way into the recorder, whose damage outlives it.
class CheckedFile : public SoundSource {
 public:
    CheckedFile(std::unique_ptr<SoundFileSource> file, std::optional<SoundFileDamage>& damage)
        : File(std::move(file)), Damage(damage) {}

    uint32_t FramesPerSecond() const override { return File->FramesPerSecond(); }
    size_t Read(std::span<Frame> frames) override {
        const size_t got = File->Read(frames);
        if (got < frames.size()) Damage = File->Damage();
        return got;
    }
    SourceMedia NowPlaying() const override { return File->NowPlaying(); }

 private:
    std::unique_ptr<SoundFileSource> File;
    std::optional<SoundFileDamage>& Damage;
};

/// One command: its files one after the other on one machine, whose clock goes on from each to the next.
class Splitter {
 public:
    explicit Splitter(const SplitArguments& arguments)
        : Arguments(arguments),
          Host(arguments.Home),
          Printer(arguments.Json ? SongFormat::Json : SongFormat::Lines, stdout, stderr) {}

    /// Why nothing can be split at all.
    std::optional<std::string> Prepare() {
        if (!Arguments.Home.empty()) {
            if (auto obstacle = FolderObstacle(Host.Files, AbsolutePath(Arguments.Home))) return obstacle;
        }
        if (auto obstacle = ReadTable()) return obstacle;
        if (Arguments.Out.empty()) return std::nullopt;
        return FolderObstacle(Host.Files, AbsolutePath(Arguments.Out));
    }

    /// False if the settings stand in the way of this file, and so of the next ones.
    bool Split(const Job& job) {
        std::optional<SoundFileDamage> damage;
        SourceWaveIn input(Host.Clock, Host.Loop);
        input.AddDevice({job.Path, "file:" + job.Path, WaveInKind::File},
                        [&](uint32_t framesPerSecond) -> std::unique_ptr<SoundSource> {
                            auto opened = SoundFileSource::Open(job.Path, framesPerSecond);
                            if (!opened.Source) return nullptr;
                            return std::make_unique<CheckedFile>(std::move(opened.Source), damage);
                        });
        RunOptions options;
        options.CommandLine = "-dontask";
        options.KeepNotes = false;
        options.LogClock = &Host.Wall;
        options.InputFiles = Arguments.Files;
        // Songs of other runs are in the common folder, and this one's is deleted.
        if (Arguments.Out.empty()) options.SongTempFolderName = fmt::format("split-{}", getpid());
        options.ProbeAllTools = false;
        options.SongNamePrefix = NamePrefix(job.Path);
        options.Overrides = SplitOverrides(Arguments, job);
        const Program* running = nullptr;
        SourcePlayers player(Host.Loop, "Media table",
                             [&] { return Table->At(running != nullptr ? running->InputSeconds() : 0); });
        bool inputEnded = false;
        ProgramEvents events = EventsTo(Printer, Line);
        events.InputEnded = [&] { inputEnded = true; };
        int songs = 0;
        const auto closed = std::exchange(events.SongClosed, {});
        events.SongClosed = [&](const ClosedSong& song) {
            closed(song);
            if (song.Fate == SongFate::Kept) Kept.insert(song.TempPath);
            ++songs;
        };
        const auto print = std::exchange(events.SongTransferred, {});
        events.SongTransferred = [&](const TransferredSong& song) {
            print(song);
            WaitForEncoderRoom(Host.Processes);
        };
        Machine machine = Host.With(input, Disk);
        if (Table) machine.Players = &player;
        Program program(machine, options, events);
        running = &program;
        const bool began = Begin(program);
        if (began) {
            Run(program, job, inputEnded);
            if (!inputEnded) ReportBreak(program, job);
        }
        const bool automatic = program.Values().Pause.EndOfSongDetection == EndOfSong::Automatic;
        End(program);
        if (inputEnded && songs == 1 && automatic && !Table) SuggestTitles(job);
        if (damage) ReportDamage(*damage, job);
        return began;
    }

    int Finish() {
        Printer.Finish();
        if (!Arguments.Json && BegunAny) Print(stdout, KeptText(Printer, Folder) + "\n");
        return ExitCode;
    }

 private:
    std::optional<std::string> ReadTable() {
        if (Arguments.Media.empty()) return std::nullopt;
        const auto text = Host.Files.ReadAll(Arguments.Media, LargestTable);
        if (!text) return "cannot read the media table " + Arguments.Media;
        auto parsed = MediaTable::Parse(*text);
        if (const auto* error = std::get_if<std::string>(&parsed)) return Arguments.Media + ": " + *error;
        Table = std::get<MediaTable>(std::move(parsed));
        return std::nullopt;
    }

    bool Begin(Program& program) {
        if (!program.Load()) {
            ExitCode = Fail("the recorder could not be started");
            return false;
        }
        if (const auto obstacle = FindObstacle(program, Host.Files)) {
            ExitCode = Fail(*obstacle);
            return false;
        }
        Printer.NameEncodeLog(program.Values().Folders.Paths[2] + "/encode.log");
        program.Values().Form.chkStartStop[0].Value(1);
        BegunAny = true;
        return true;
    }

    void Run(Program& program, const Job& job, const bool& inputEnded) {
        const double seconds = static_cast<double>(job.Frames) / job.FramesPerSecond;
        std::chrono::steady_clock::time_point shown{};
        const auto over = [&] {
            const auto now = std::chrono::steady_clock::now();
            if (Line.Visible() && now - shown >= std::chrono::milliseconds(200)) {
                shown = now;
                Line.Show(ProgressText(seconds > 0 ? program.InputSeconds() / seconds : 1));
            }
            return inputEnded || RecordingFailed(program) || !program.Running() || Interrupt::Wanted();
        };
        Host.Loop.RunUntil(over, std::chrono::hours(24 * 365));
    }

    void ReportBreak(const Program& program, const Job& job) {
        Line.Clear();
        ExitCode = Fail(Interrupt::Wanted() ? job.Path + " was split only up to the interruption"
                                            : fmt::format("{} was split only up to {:.1f} s", job.Path,
                                                          program.InputSeconds()));
    }

    /// Whoever splits a file hopes for more than one song.
    static void SuggestTitles(const Job& job) {
        ReportLine(
            job.Path +
            " stayed in one piece: without titles a song ends at 1 s of silence, or where another one "
            "is heard clearly; --media names a table of titles, --mode silence cuts at shorter pauses");
    }

    void ReportDamage(const SoundFileDamage& damage, const Job& job) {
        const double seconds = static_cast<double>(job.Frames) / job.FramesPerSecond;
        const std::string what =
            damage.MissingSeconds > 0
                ? fmt::format("{:.1f} of {:.1f} s could not be read", damage.MissingSeconds, seconds)
                : "is damaged";
        const std::string why = damage.Why.empty() ? "" : " (" + damage.Why + ")";
        ExitCode = Fail(job.Path + ": " + what + why + "; what could be read was split");
    }

    /// The song that could not be written any further is of no use: its sound file still has it. What an
    /// encoder of a full disk has left empty goes too. Songs that were kept stay, whatever became of their
    /// encoders.
    void DeleteUnfinished(const Program& program) {
        const std::string& folder = program.Values().Folders.SongTempFolder;
        for (const FileEntry& entry : Host.Files.List(folder)) {
            if (!entry.IsFolder && entry.Size == 0) Host.Files.Delete(folder + "/" + entry.Name);
        }
        const std::string& path = program.Values().Messages.PendingErrorText;
        if (!RecordingFailed(program) || !path.starts_with(folder + "/") || Kept.contains(path)) return;
        if (Host.Files.Delete(path)) {
            ReportLine("the part of the song that was written, " + path +
                       ", was deleted again: its sound file still has it");
        }
    }

    void End(Program& program) {
        Folder = FolderOfSongs(program.Values());
        program.Unload();
        Line.Clear();
        WaitForEncoders(program, Host.Processes);
        DeleteUnfinished(program);
        program.RemoveTempFolder();
        if (!Arguments.Out.empty()) Host.Files.DeleteFolder(OwnTempFolder(Arguments));  // stays with a song
        if (Failed(program, Printer)) ExitCode = ExitFailed;
    }

    const SplitArguments& Arguments;
    VirtualHost Host;
    WriteBehindFiles Disk;  ///< a broken-off split is simply run again
    TerminalLine Line;
    SongPrinter Printer;
    std::optional<MediaTable> Table;
    std::string Folder;          ///< of the songs
    std::set<std::string> Kept;  ///< temporary files of the songs that were kept
    bool BegunAny = false;
    int ExitCode = ExitDone;
};

}  // namespace

int RunSplit(const SplitArguments& arguments) {
    std::vector<Job> jobs;
    int refused = ExitDone;
    for (const std::string& path : arguments.Files) {
        if (const auto error = AddJob(path, jobs)) refused = Fail(*error);
    }
    if (refused != ExitDone) return refused;
    Splitter splitter(arguments);
    if (const auto obstacle = splitter.Prepare()) return Fail(*obstacle);
    const Interrupt interrupt;
    for (const Job& job : jobs) {
        if (!splitter.Split(job) || Interrupt::Wanted()) break;
    }
    return splitter.Finish();
}

}  // namespace Corvetape
