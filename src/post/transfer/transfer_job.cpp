#include "post/transfer/transfer_job.h"

#include <algorithm>
#include <utility>

#include "core/controls/controls.h"
#include "core/log.h"
#include "platform/files.h"
#include "platform/processes.h"
#include "post/transfer/encode_job.h"

namespace Corvetape {

namespace {

constexpr int32_t ExcludeList = 1;

/// True for the base name with any one extension. What is called like the base with a dot and more than
/// one extension behind it is another song.
bool HasBaseName(const std::string& name, const std::string& base) {
    return name.starts_with(base + ".") && name.find('.', base.size() + 1) == std::string::npos;
}

}  // namespace

std::optional<MadeMusic> ReadMadeMusic(Files& files, const std::string& madeFile) {
    constexpr uint64_t most = 16'384;
    const std::optional<std::string> text = files.ReadAll(madeFile, most);
    const size_t end = text ? text->rfind('\n') : std::string::npos;
    if (end == std::string::npos) return std::nullopt;
    return MadeMusic{text->substr(0, end), text->substr(end + 1)};
}

TransferJob::TransferJob(TransferState state, Files& files, Processes& processes, Log& log, SongNotes& notes,
                         TransferCallbacks callbacks)
    : State(std::move(state)),
      Disk(files),
      Programs(processes),
      Journal(log),
      Notes(notes),
      Callbacks(std::move(callbacks)) {}

void TransferJob::Attach(TimerControl& tmrEncodeFile) {
    tmrEncodeFile.Timer.Connect([this, &tmrEncodeFile] {
        tmrEncodeFile.Running(false);
        TransferSong();
    });
}

void TransferJob::TransferSong() {
    Passage passage = Begin(State.Media, State.Pause.EndOfSongDetection);
    HandOn(passage);
    if (State.Flags.QuitAtEndOfSong && Callbacks.Unload) Callbacks.Unload();
}

void TransferJob::TransferLeftSong(const LeftSong& song, int32_t seconds) {
    DeleteHalfMade(Disk, State.Folders.SongTempFolder, song.Note);
    MediaState media = State.Media;
    media.SongMedia = song.Note.Media;
    media.SongMedia.TempFileName = song.BaseName;
    media.SongMedia.Size = seconds;
    // Its note has a title only if the title was to name it, whatever the present input does.
    if (!media.SongMedia.Song.empty()) media.StationDataEnabled = true;
    Passage passage = Begin(media, EndOfSong::MediaData);
    passage.Note.HandedOn = song.Note.HandedOn;
    passage.Note.Number = song.Note.Number;
    HandOn(passage);
}

TransferJob::Passage TransferJob::Begin(const MediaState& media, EndOfSong endOfSongDetection) const {
    Passage passage{media, NameSong(media, State.Options, State.Folders, endOfSongDetection), {}, {}};
    passage.Note.Run = State.RunName;
    passage.Note.Wanted = true;
    passage.Note.Media = media.SongMedia;
    if (!passage.Names.HasSongData) {
        passage.Note.Media = {};
        passage.Note.Media.FilePart = media.SongMedia.FilePart;
    }
    return passage;
}

void TransferJob::HandOn(Passage& passage) {
    MakeSubFolder(passage.Names);
    passage.Source = passage.Media.SongMedia.TempFileName;
    const std::string name = passage.Names.HasSongData ? TakeNames(passage) : passage.Source;
    RaiseSongCounter(passage.Note);
    TransferredSong song;
    if (State.Options.EncodeOffline) {
        song.JobLabel = "TEMP";
        Notes.Remove(name);  // it stays there on purpose
    } else {
        song = StartCommand(passage, name);
    }
    song.TempFile = State.Folders.SongTempFolder + "/" + name + ".wav";
    song.Media = passage.Media.SongMedia;
    if (!song.Problem.empty()) {
        const bool stays = Disk.FileSize(song.TempFile).has_value();
        Journal.WriteLog({"ERROR", song.Problem + (stays ? " The song stays as " + song.TempFile : "")});
    }
    if (!song.JobLabel.empty()) WriteSongLine(passage, song);
    Transferred.Raise(song);
}

void TransferJob::NoteEnd(const TransferredSong& song, bool isMade) {
    if (!isMade && State.LeavesNotes) return;
    const size_t begin = song.TempFile.rfind('/') + 1;
    Notes.Remove(song.TempFile.substr(begin, song.TempFile.rfind('.') - begin));
}

void TransferJob::MakeSubFolder(const SongNames& names) {
    if (names.SubFolder.empty()) return;
    // The last level only, and usually it is there already.
    Disk.MakeFolder(State.Folders.Paths[1] + names.SubFolder);
}

/// The name of the temporary song without folder and extension, as it is called from here on.
std::string TransferJob::TakeNames(Passage& passage) {
    const std::string& stamp = passage.Media.SongMedia.TempFileName;
    const std::string folder = State.Folders.SongTempFolder + "/";
    std::string name = ClaimName(passage);
    passage.Source = name;
    if (name != stamp) {
        DeleteEarlier(name);
        // A failing rename leaves the song under its temporary name; most songs have no cover.
        const bool stays = !Disk.Rename(folder + stamp + ".wav", folder + name + ".wav") &&
                           Disk.FileSize(folder + stamp + ".wav").has_value();
        Disk.Rename(folder + stamp + ".jpg", folder + name + ".jpg");
        Notes.Remove(stays ? name : stamp);
        if (stays) name = stamp;
    }
    if (State.Options.AutoExclude && Callbacks.AddToWatchList && passage.Note.HandedOn == 0) {
        Callbacks.AddToWatchList(ExcludeList, passage.Names.WholeName);
    }
    return name;
}

/// A name for the temporary files that no other song has: FinalName, or that with a number.
std::string TransferJob::ClaimName(const Passage& passage) {
    const std::string& stamp = passage.Media.SongMedia.TempFileName;
    constexpr int32_t mostNumbers = 10'000;
    for (int32_t number = 1; number <= mostNumbers; ++number) {
        const std::string suffix = number > 1 ? " (" + std::to_string(number) + ")" : "";
        const std::string name = passage.Names.FinalName + suffix;
        if (name == stamp) return name;
        const std::string base = State.Folders.SongTempFolder + "/" + name;
        if (IsInput(base + ".wav") || IsInput(base + ".jpg")) continue;
        const SongNotes::Claimed claimed = Notes.Claim(name, passage.Note);
        if (claimed == SongNotes::Claimed::Taken) continue;
        if (MakesRoom(base, passage)) return name;
        Notes.Remove(name);
    }
    return stamp;
}

/// Whether a song may take this name from the one that has it. Where songs are not taken to another folder,
/// what stands there is music.
bool TransferJob::MakesRoom(const std::string& base, const Passage& passage) {
    const bool isMusic = State.Options.EncodeOffline || passage.Names.TargetBase == passage.Names.SourceBase;
    const std::string song = base + ".wav";
    const std::optional<uint64_t> older = Disk.FileSize(song);
    const auto rule = static_cast<SameNameRule>(State.Options.SameName);
    if (!isMusic || !older || rule == SameNameRule::Replace) return true;
    const std::string stamp = State.Folders.SongTempFolder + "/" + passage.Media.SongMedia.TempFileName;
    const bool longer = Disk.FileSize(stamp + ".wav").value_or(0) >= *older;
    if (rule == SameNameRule::NumberAll || !longer) return false;
    int32_t number = 2;
    const auto numbered = [&](const char* extension) {
        return base + " (" + std::to_string(number) + ")" + extension;
    };
    while (Disk.FileSize(numbered(".wav")) || Disk.FileSize(numbered(".note"))) ++number;
    Disk.Rename(base + ".jpg", numbered(".jpg"));  // most songs have none
    return Disk.Rename(song, numbered(".wav"));
}

/// What is left of an earlier song of this name, which has its music file.
void TransferJob::DeleteEarlier(const std::string& name) {
    const std::string note = name + ".note";
    for (const FileEntry& entry : Disk.List(State.Folders.SongTempFolder)) {
        if (entry.IsFolder || entry.Name == note || !HasBaseName(entry.Name, name)) continue;
        const std::string path = State.Folders.SongTempFolder + "/" + entry.Name;
        if (!IsInput(path)) Disk.Delete(path);
    }
}

bool TransferJob::IsInput(const std::string& path) const {
    return std::ranges::any_of(State.InputFiles,
                               [&](const std::string& input) { return Disk.SameFile(input, path); });
}

void TransferJob::RaiseSongCounter(SongNote& note) {
    if (note.HandedOn == 0) {
        const auto next = static_cast<int32_t>(static_cast<uint32_t>(State.SongCounter) + 1);
        const std::optional<int32_t> counted = Callbacks.CountSong ? Callbacks.CountSong() : std::nullopt;
        State.SongCounter = counted.value_or(next);
        note.Number = State.SongCounter;
    }
    ++note.HandedOn;
}

EncodeRequest TransferJob::RequestFor(const Passage& passage, const EncoderRow& row,
                                      const std::string& name) const {
    // What is being recorded keeps its name whatever the rule.
    const bool isInput = IsInput(passage.Names.TargetBase + "." + std::string(row.Extension));
    const auto rule = static_cast<SameNameRule>(State.Options.SameName);
    const std::string& folder = State.Folders.SongTempFolder;
    return {State.Options,
            State.Folders,
            passage.Media.SongMedia,
            passage.Names,
            passage.Note.Number,
            folder + "/" + passage.Source,
            isInput ? SameNameRule::NumberAll : rule,
            passage.Note.Work,
            folder + "/" + name + ".note",
            MadeFileOf(folder, passage.Note.Work),
            State.RunName.substr(0, State.RunName.find('-'))};
}

TransferredSong TransferJob::StartCommand(Passage& passage, const std::string& name) {
    TransferredSong song;
    const std::string number = std::to_string(static_cast<uint32_t>(passage.Note.Number));
    passage.Note.Work = State.RunName + "-" + number;
    passage.Note.MusicFolder = State.Folders.Paths[1] + passage.Names.SubFolder;
    const auto note = [&] {
        if (State.LeavesNotes) Notes.Store(name, passage.Note);
    };
    const EncoderRow* row = FindEncoder(State.Options.Encoder);
    if (row == nullptr) {
        song.Problem = "There is no encoder " + std::to_string(State.Options.Encoder) + ".";
        note();
        return song;
    }
    if (row->Qualities != nullptr && QualityOptions(State.Options, *row) == nullptr) {
        song.Problem = "There is no quality " + std::to_string(State.Options.*row->QualityIndex) + " for " +
                       std::string(row->Section) + ".";
        note();
        return song;
    }
    song.JobLabel = row->JobLabel;
    const EncodeRequest request = RequestFor(passage, *row, name);
    EncodeCommand command = MakeEncodeCommand(*row, request);
    song.Problem = std::move(command.Problem);
    const std::string jobName = "song " + number;
    note();  // ahead of the command, which deletes it
    const bool started =
        !command.CommandLine.empty() &&
        Programs.StartHidden({jobName, std::move(command.CommandLine), State.Folders.ProgramFolder});
    if (!started) return song;  // the log line is written all the same, and the temporary song stays
    passage.Note.Encoder = Programs.StartedRun();
    if (Disk.FileSize(request.Note)) note();
    song.JobName = jobName;
    song.MadeFile = request.MadeFile;
    song.MusicFile = passage.Names.TargetBase + "." + std::string(row->Extension);
    return song;
}

void TransferJob::WriteSongLine(const Passage& passage, const TransferredSong& song) {
    const STATIONANDSONGDATA& media = song.Media;
    const bool named = passage.Media.StationDataEnabled && !(media.Artist.empty() && media.Song.empty());
    Journal.WriteLog({song.JobLabel, named ? media.Artist + " - " + media.Song : media.TempFileName});
}

}  // namespace Corvetape
