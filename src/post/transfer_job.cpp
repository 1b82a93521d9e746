#include "post/transfer_job.h"

#include <utility>

#include "core/controls.h"
#include "core/log.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "post/encode_job.h"

namespace Corvetape {

namespace {

constexpr int32_t ExcludeList = 1;

/// True for the base name with any one extension. What is called like the base with a dot and more than
/// one extension behind it is another song.
bool HasBaseName(const std::string& name, const std::string& base) {
    return name.starts_with(base + ".") && name.find('.', base.size() + 1) == std::string::npos;
}

}  // namespace

TransferJob::TransferJob(TransferState state, Files& files, Processes& processes, Log& log,
                         TransferCallbacks callbacks)
    : State(state), Disk(files), Programs(processes), Journal(log), Callbacks(std::move(callbacks)) {}

void TransferJob::Attach(TimerControl& tmrEncodeFile) {
    tmrEncodeFile.Timer.Connect([this, &tmrEncodeFile] {
        tmrEncodeFile.Running(false);
        TransferSong();
    });
}

void TransferJob::TransferSong() {
    const SongNames names =
        NameSong(State.Media, State.Options, State.Folders, State.Pause.EndOfSongDetection);
    MakeSubFolder(names);
    const std::string base = names.HasSongData ? TakeNames(names) : names.SourceBase;
    RaiseSongCounter();
    TransferredSong song;
    if (State.Options.EncodeOffline) {
        song.JobLabel = "TEMP";
    } else {
        song = StartCommand(names);
    }
    song.TempFile = base + ".wav";
    song.Media = State.Media.SongMedia;
    if (!song.Problem.empty()) {
        Journal.WriteLog({"ERROR", song.Problem + " The song stays as " + song.TempFile});
    }
    if (!song.JobLabel.empty()) WriteSongLine(song);
    Transferred.Raise(song);
    if (State.Flags.QuitAtEndOfSong && Callbacks.Unload) Callbacks.Unload();
}

void TransferJob::MakeSubFolder(const SongNames& names) {
    if (names.SubFolder.empty()) return;
    // The last level only, and usually it is there already.
    Disk.MakeFolder(State.Folders.Paths[1] + names.SubFolder);
}

/// The temporary song without its extension, as it is called behind that.
std::string TransferJob::TakeNames(const SongNames& names) {
    const std::string tempBase = State.Folders.SongTempFolder + "/" + State.Media.SongMedia.TempFileName;
    bool stays = false;
    if (names.SourceBase != tempBase) {
        for (const FileEntry& entry : Disk.List(State.Folders.SongTempFolder)) {
            if (entry.IsFolder || !HasBaseName(entry.Name, names.FinalName)) continue;
            Disk.Delete(State.Folders.SongTempFolder + "/" + entry.Name);
        }
        // A failing rename leaves the song under its temporary name; most songs have no cover.
        stays = !Disk.Rename(tempBase + ".wav", names.SourceBase + ".wav") &&
                Disk.FileSize(tempBase + ".wav").has_value();
        Disk.Rename(tempBase + ".jpg", names.SourceBase + ".jpg");
    }
    if (State.Options.AutoExclude && Callbacks.AddToWatchList) {
        Callbacks.AddToWatchList(ExcludeList, names.WholeName);
    }
    return stays ? tempBase : names.SourceBase;
}

void TransferJob::RaiseSongCounter() {
    State.SongCounter = static_cast<int32_t>(static_cast<uint32_t>(State.SongCounter) + 1);
    if (Callbacks.StoreSongCounter) Callbacks.StoreSongCounter(State.SongCounter);
}

TransferredSong TransferJob::StartCommand(const SongNames& names) {
    TransferredSong song;
    const EncoderRow* row = FindEncoder(State.Options.Encoder);
    if (row == nullptr) {
        song.Problem = "There is no encoder " + std::to_string(State.Options.Encoder) + ".";
        return song;
    }
    if (row->Qualities != nullptr && QualityOptions(State.Options, *row) == nullptr) {
        song.Problem = "There is no quality " + std::to_string(State.Options.*row->QualityIndex) + " for " +
                       std::string(row->Section) + ".";
        return song;
    }
    song.JobLabel = row->JobLabel;
    EncodeCommand command = MakeEncodeCommand(
        *row, {State.Options, State.Folders, State.Media.SongMedia, names, State.SongCounter});
    song.Problem = std::move(command.Problem);
    if (command.CommandLine.empty()) return song;
    const std::string jobName = "song " + std::to_string(static_cast<uint32_t>(State.SongCounter));
    if (!Programs.StartHidden({jobName, std::move(command.CommandLine), State.Folders.ProgramFolder})) {
        return song;  // the log line is written all the same, and the temporary song stays
    }
    song.JobName = jobName;
    song.WorkFile =
        State.Folders.SongTempFolder + "/" + std::to_string(static_cast<uint32_t>(State.SongCounter));
    song.MusicFile = names.TargetBase + "." + std::string(row->Extension);
    return song;
}

void TransferJob::WriteSongLine(const TransferredSong& song) {
    const STATIONANDSONGDATA& media = song.Media;
    Journal.WriteLog({song.JobLabel, State.Media.StationDataEnabled ? media.Artist + " - " + media.Song
                                                                    : media.TempFileName});
}

}  // namespace Corvetape
