#include "cli/run_support.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

#include "audio/song_writer.h"
#include "cli/obstacles.h"
#include "cli/output.h"
#include "cli/printed_notices.h"
#include "platform/linux/desktop/one_line.h"

namespace Corvetape {

std::vector<SettingOverride> MakeOverrides(std::vector<SettingOverride> own,
                                           const CommonArguments& arguments) {
    own.push_back({"Options", "NoStartupInfo", "1"});
    own.push_back({AnySourceSection, "EndOfSongDetection", std::to_string(arguments.Mode)});
    for (const SettingArgument& each : arguments.Settings) {
        own.push_back({each.Section, each.Key, each.Value, each.InDataFile});
    }
    return own;
}

void ReportLine(const std::string& line) {
    Print(stderr, fmt::format("corvetape-cli: {}\n", OneLine(line)));
}

int Fail(const std::string& line) {
    ReportLine(line);
    return ExitFailed;
}

std::optional<std::string> ConversionText(const std::string& path, const SoundFileFormat& format,
                                          uint32_t framesPerSecond) {
    constexpr uint32_t bitsOfRecording = 16;
    std::string odd;
    if (format.Channels == 1) odd += ", mono";
    if (format.BitsPerSample != 0 && format.BitsPerSample != bitsOfRecording) {
        odd += fmt::format(", {}-bit", format.BitsPerSample);
    }
    if (format.FramesPerSecond != framesPerSecond) odd += fmt::format(", {} Hz", format.FramesPerSecond);
    if (odd.empty()) return std::nullopt;
    return fmt::format("{}: is {}; converted to 16-bit stereo at {} Hz", path, odd.substr(2),
                       framesPerSecond);
}

std::optional<std::string> FindObstacle(Program& program, Files& files) {
    const State& state = program.Values();
    // A program that begins without media data waits for a silence to end before it records anything.
    if (!state.Media.StationDataEnabled) {
        return "the media data are switched off (Providers.Enable=0), so that nothing would be recorded";
    }
    for (const std::string& folder : {state.Folders.SongTempFolder, state.Folders.Paths[1]}) {
        if (!folder.starts_with('/'))
            return "the folder " + folder + " is no whole path; it has to begin with /";
        if (auto obstacle = FolderObstacle(files, folder)) return obstacle;
    }
    return FormatObstacle(state.Options, state.Form);
}

ProgramEvents EventsTo(SongPrinter& printer, TerminalLine& line) {
    ProgramEvents events;
    const auto notices = std::make_shared<PrintedNotices>([&line](const std::string& text) {
        line.Clear();
        ReportLine(text);
    });
    events.SongClosed = [&, notices](const ClosedSong& song) {
        line.Clear();
        printer.Closed(song);
        const bool lacksSome = song.Fate == SongFate::Kept && song.LostFrames > 0;
        if (song.IsTooShort() || lacksSome) notices->SongReported();
    };
    events.SongTransferred = [&](const TransferredSong& song) {
        line.Clear();
        printer.Transferred(song);
    };
    events.MusicMade = [&](const std::string& job, const std::string& musicFile) {
        printer.MusicMade(job, musicFile);
    };
    events.JobEnded = [&](const JobResult& result) {
        line.Clear();
        printer.JobEnded(result);
    };
    events.Logged = [notices, &printer](const std::string& kind, const std::string& text) {
        if (kind == "ERROR") printer.Failed(text);
        notices->Logged(kind, text);
    };
    events.StatusShown = [notices](const std::string& text) { notices->Status(text); };
    return events;
}

void WaitForEncoders(Program& program, Processes& processes) {
    while (!processes.WaitForAll(std::chrono::milliseconds(500))) program.CollectJobs();
    program.CollectJobs();
}

void WaitForEncoderRoom(Processes& processes) {
    static const size_t most = 4 * std::max(std::thread::hardware_concurrency(), 1U) + 4;
    while (processes.Running() >= most) {
        if (processes.WaitForAll(std::chrono::milliseconds(20))) return;
    }
}

bool Failed(const Program& program, const SongPrinter& printer) {
    const DeferredMessages& messages = program.Values().Messages;
    return printer.RefusedSongs() > 0 || messages.PendingError != 0 || messages.PendingInfo != 0;
}

bool RecordingFailed(const Program& program) {
    const int32_t error = program.Values().Messages.PendingError;
    return error == ErrorCreatingSong || error == ErrorClosingSong || error == ErrorWritingSong;
}

const std::string& FolderOfSongs(const State& state) {
    return state.Options.EncodeOffline ? state.Folders.SongTempFolder : state.Folders.Paths[1];
}

std::string KeptText(const SongPrinter& printer, const std::string& folder) {
    const int32_t songs = printer.KeptSongs();
    std::string text = fmt::format("{} {} kept in {}", songs, songs == 1 ? "song" : "songs", OneLine(folder));
    if (printer.RefusedSongs() > 0) {
        text += fmt::format(", {} of them not as {}", printer.RefusedSongs(),
                            printer.RefusedSongs() == 1 ? "a music file" : "music files");
    }
    return text;
}

}  // namespace Corvetape
