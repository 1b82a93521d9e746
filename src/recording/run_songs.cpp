#include "recording/run_songs.h"

#include <algorithm>

namespace Corvetape {

namespace {

SongHealth HealthOf(const ClosedSong& song) {
    if (song.LostFrames > 0) return SongHealth::Damaged;
    return song.Whole ? SongHealth::Whole : SongHealth::NotWhole;
}

SongProgress ProgressOf(const TransferredSong& song) {
    if (!song.JobName.empty()) return SongProgress::Encoding;
    return song.Problem.empty() ? SongProgress::Stays : SongProgress::Failed;
}

}  // namespace

void RunSongs::SongClosed(const ClosedSong& song) {
    RunSong entry;
    entry.Number = ++Closed;
    entry.Fate = song.Fate;
    entry.Health = HealthOf(song);
    entry.Begin = song.Trust.Begin;
    entry.End = song.Trust.End;
    entry.Dropouts = song.Trust.Dropouts;
    entry.Mixed = song.Trust.Mixed;
    entry.Sought = song.Trust.Sought;
    entry.ByTitleAlone = song.Trust.AgainstEvidence;
    entry.Seconds = song.Frames / std::max<uint32_t>(song.FramesPerSecond, 1);
    entry.Media = song.Media;
    entry.TempFile = song.TempPath;
    entry.OnList = song.Fate == SongFate::Unwanted && !OnList.Song.empty() &&
                   OnList.Song == song.Media.Song && OnList.Artist == song.Media.Artist;
    if (song.Fate == SongFate::Kept) {
        CountKept(entry);
    } else {
        ++Others;
    }
    Entries.insert(Entries.begin(), std::move(entry));
    if (Entries.size() > Capacity) Entries.pop_back();
    Added.Raise();
}

void RunSongs::CountKept(RunSong& entry) {
    entry.Progress = SongProgress::Waiting;
    ++Kept;
    Seconds += entry.Seconds;
}

std::optional<size_t> RunSongs::Find(uint64_t number) const {
    const auto found = std::ranges::find(Entries, number, &RunSong::Number);
    if (found == Entries.end()) return std::nullopt;
    return static_cast<size_t>(found - Entries.begin());
}

void RunSongs::KeptAfterwards(size_t index) {
    if (index >= Entries.size()) return;
    RunSong& entry = Entries[index];
    if (entry.Fate != SongFate::Kept) {
        entry.Fate = SongFate::Kept;
        const std::string file = entry.TempFile.substr(entry.TempFile.rfind('/') + 1);
        entry.Media.TempFileName = file.substr(0, file.rfind('.'));
        --Others;
        CountKept(entry);
    }
    ProgressChanged.Raise(index);
}

void RunSongs::MusicMade(const std::string& job, const std::string& musicFile) {
    const auto found = std::ranges::find(Entries, job, &RunSong::JobName);
    if (found != Entries.end()) found->MusicFile = musicFile;
}

void RunSongs::SongTransferred(const TransferredSong& song) {
    const auto found = std::ranges::find_if(Entries, [&song](const RunSong& entry) {
        return entry.Fate == SongFate::Kept && entry.Media.TempFileName == song.Media.TempFileName;
    });
    if (found == Entries.end()) return;  // left by an earlier run
    found->Progress = ProgressOf(song);
    found->MusicFile = song.MusicFile;
    found->TempFile = song.TempFile;
    found->JobName = song.JobName;
    found->Media = song.Media;
    ProgressChanged.Raise(static_cast<size_t>(found - Entries.begin()));
}

void RunSongs::JobEnded(const JobResult& result) {
    const auto found = std::ranges::find_if(Entries, [&result](const RunSong& entry) {
        return entry.JobName == result.Name && entry.Progress == SongProgress::Encoding;
    });
    if (found == Entries.end()) return;  // left by an earlier run
    found->Progress = result.ExitCode == 0 ? SongProgress::Made : SongProgress::Failed;
    ProgressChanged.Raise(static_cast<size_t>(found - Entries.begin()));
    if (result.ExitCode != 0) EncoderFailed.Raise(*found, result.ExitCode);
}

}  // namespace Corvetape
