#include "post/transfer/encoder_results.h"

#include <charconv>
#include <string_view>
#include <system_error>

#include "core/controls/message_texts.h"
#include "platform/files.h"

namespace Corvetape {

namespace {

std::optional<int32_t> NumberIn(std::string_view text) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = error == std::errc() && end == text.data() + text.size() && number >= 0;
    return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<MadeMusic> ReadMadeMusic(Files& files, const std::string& madeFile) {
    constexpr uint64_t most = 16'384;
    const FileOr<std::string> text = files.ReadAll(madeFile, most);
    const size_t end = text ? text->rfind('\n') : std::string::npos;
    if (end == std::string::npos) return std::nullopt;
    return MadeMusic{text->substr(0, end), NumberIn(text->substr(end + 1))};
}

void DeleteLeftReports(Files& files, const std::string& songTempFolder, SystemInfo& runs) {
    constexpr std::string_view extension = ".made";
    for (const FileEntry& entry : files.List(songTempFolder)) {
        const size_t number = entry.Name.rfind('-');
        if (entry.IsFolder || !entry.Name.ends_with(extension) || number == std::string::npos) continue;
        if (runs.RunIsAlive(entry.Name.substr(0, number))) continue;
        // A file of the user may be called so, but does not begin with a path.
        const std::string path = songTempFolder + "/" + entry.Name;
        const std::optional<MadeMusic> music = ReadMadeMusic(files, path);
        if (music && music->MusicFile.starts_with('/')) files.Delete(path);
    }
}

EncoderResults::EncoderResults(TransferJob& job, Processes& processes, Files& files, Reporter& say)
    : Job(job), Programs(processes), Disk(files), Say(say) {
    Job.Transferred.Connect([this](const TransferredSong& song) {
        // That name is another song's now, and so is the note.
        std::erase(Finished, song.TempFile);
        for (auto& [name, earlier] : Unfinished) {
            if (earlier.TempFile == song.TempFile) earlier.TempFile.clear();
        }
        if (!song.JobName.empty()) Unfinished[song.JobName] = song;
    });
}

void EncoderResults::Collect() {
    for (const JobResult& result : Programs.TakeFinished()) {
        EndJob(result);
        JobEnded.Raise(result);
    }
}

void EncoderResults::EndJob(const JobResult& result) {
    const auto found = Unfinished.find(result.Name);
    if (found == Unfinished.end()) return;
    const TransferredSong& song = found->second;
    const std::optional<MadeMusic> music = ReadMadeMusic(Disk, song.MadeFile);
    if (music) {
        Disk.Delete(song.MadeFile);
        MusicMade.Raise(result.Name, *music);
        ReportSameName(*music, song.MusicFile);
    }
    // A command that was killed after its music was made has left the note.
    Job.NoteEnd(song, result.ExitCode == 0 || music);
    if (result.ExitCode == 0) {
        if (!song.TempFile.empty()) Finished.push_back(song.TempFile);
        Unfinished.erase(found);
    }
}

/// One line for a song whose name another one had.
void EncoderResults::ReportSameName(const MadeMusic& music, const std::string& expected) {
    const auto report = [&](std::string_view key, const std::string& number) {
        Say.Write(ReportKind::Info, Say.Text(key, {music.MusicFile, number}));
    };
    if (music.MusicFile != expected) {
        report(Message::NameWasTaken.Key, "");
    } else if (music.Older == OlderIsReplaced) {
        report(Message::OlderReplaced.Key, "");
    } else if (music.Older) {
        report(Message::NameTakenOver.Key, std::to_string(*music.Older));
    }
}

void EncoderResults::DeleteTempFolder(const Settings& options, const WorkingFolders& folders) {
    if (!TempFolderGoes(options)) return;
    Collect();
    // Only what this run has made and finished with: others may keep songs here, or their own files.
    for (const std::string& song : Finished) {
        const std::string base = song.substr(0, song.rfind('.'));
        if (Disk.FileSize(base + ".note")) continue;  // another song has taken the name since
        for (const char* extension : {".wav", ".jpg"}) Disk.Delete(base + extension);
    }
    Disk.DeleteFolder(folders.SongTempFolder);  // fails while files are left in it
}

}  // namespace Corvetape
