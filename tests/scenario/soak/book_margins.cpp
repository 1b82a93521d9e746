// What is kept beside songs whose cuts are unsure, compared with the buffers, and cut again.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <span>
#include <string_view>

#include "audio/wav_file.h"
#include "post/encoders/encoder_table.h"
#include "recording/margins/song_recut.h"
#include "scenario/soak/book.h"

namespace Corvetape::Test {

namespace {

const std::string Folder = std::string(SongTempFolder) + "/margins";

/// The frames of song files, one after the other, as bytes.
std::string SoundOf(const SimFiles& disk, const std::string& path) {
    const std::optional<std::string> content = disk.Content(path);
    if (!content || content->size() < WavHeaderBytes) return {};
    uint32_t bytes = 0;
    std::memcpy(&bytes, content->data() + 40, sizeof(bytes));
    return content->substr(WavHeaderBytes, bytes);
}

}  // namespace

/// The margins of a song are what the ring got just before its first buffer and after its last.
bool Book::IsBeside(const WantedSong& song, std::span<const uint64_t> pieces, bool before) const {
    if (!song.First) return true;  // nobody knows where the song was
    const auto count = static_cast<ptrdiff_t>(Buffers.size());
    const ptrdiff_t step = before ? -1 : 1;
    ptrdiff_t at = static_cast<ptrdiff_t>(before ? *song.First : song.End) + (before ? -1 : 0);
    for (size_t number = 0; number < pieces.size(); at += step) {
        if (at < 0 || at >= count) return false;
        const BookedBuffer& buffer = Buffers[static_cast<size_t>(at)];
        if (buffer.RingNumber < 0) continue;
        if (buffer.Hash != pieces[before ? pieces.size() - 1 - number : number]) return false;
        ++number;
    }
    return true;
}

void Book::CheckMargins() {
    for (const std::string& path : Radio->Disk().Tree(Folder)) {
        if (path.ends_with('/') || WasStruck(path)) continue;
        const std::string base = path.substr(0, path.find('.', Folder.size()));
        if (!Radio->Disk().Exists(base + ".note")) Report("margins without a note: " + path);
        if (path.find(".recut-") != std::string::npos) Report("a recut has left " + path);
        if (!path.ends_with(".wav") || WasStruck(base)) continue;
        const auto song = PiecesOf(base + ".song.wav");
        const auto own = std::ranges::find_if(
            Wanted, [&](const WantedSong& wanted) { return song && wanted.Pieces == *song; });
        if (own == Wanted.end()) {
            Report("margins of a song that was not kept: " + path);
            continue;
        }
        if (own->Damaged || path.ends_with(".song.wav")) continue;
        const bool before = path.ends_with(".before.wav");
        const auto pieces = PiecesOf(path);
        if (!pieces || !IsBeside(*own, *pieces, before)) Report("no neighbour of its song: " + path);
    }
}

void Book::CutAgain(SimRandom& chance) {
    State& values = Values();
    SimMachine& machine = Radio->Computer;
    MarginStore store(machine.Files, machine.Clock, values.Options, values.Folders, "recut-1");
    LearnedCuts learned(machine.Files, FolderOfLearnedCuts(machine.Folders), values.Options);
    SongRecut recut(
        {machine.Files, machine.Processes, values.Options, values.Folders, store, learned, "recut-1"});
    std::string work;
    std::string extension;
    machine.Processes.OnJob = [&](const HiddenJob& job) {
        if (!Mentions(job, work)) return 1;
        machine.Files.Put(work + ".new." + extension, *machine.Files.Content(work + ".wav"));
        return 0;
    };
    for (const KeptMargins& each : store.List()) {
        const std::optional<RecutRoom> room = recut.RoomOf(each);
        if (!room || each.MusicFile.empty() || store.IsWaiting(each)) continue;
        const double shorter = std::max(room->Length / 2 - 1, 0.0);
        const RecutWish wish = {chance.Between(room->BeginEarliest, shorter),
                                chance.Between(-shorter, room->EndLatest)};
        const bool tooShort = room->Length + wish.End - wish.Begin < 1;
        const uint32_t rate = MeasureMargins(machine.Files, values.Folders, each.Base)->FramesPerSecond;
        const std::string all = SoundOf(machine.Files, Folder + "/" + each.Base + ".before.wav") +
                                SoundOf(machine.Files, Folder + "/" + each.Base + ".song.wav") +
                                SoundOf(machine.Files, Folder + "/" + each.Base + ".after.wav");
        work = Folder + "/" + each.Base + ".recut-recut-1";
        if (const EncoderRow* row = FindEncoder(each.Encoder)) extension = row->Extension;
        std::string problem = recut.Begin(each, wish);
        if (tooShort) {
            if (problem.empty()) Report("nothing is left of " + each.Base + " after a recut");
            continue;
        }
        if (problem.empty() && !recut.JobName().empty()) {
            problem = "its encoder has not ended";
            machine.Processes.WaitForAll(std::chrono::hours(1));
            for (const JobResult& result : machine.Processes.TakeFinished()) {
                if (result.Name == recut.JobName()) problem = recut.End(result);
            }
        }
        if (!problem.empty()) {
            Report(each.Base + " is not cut again: " + problem);
            continue;
        }
        const auto begin = static_cast<size_t>(std::llround((wish.Begin - room->BeginEarliest) * rate));
        const auto end =
            static_cast<size_t>(std::llround((room->Length + wish.End - room->BeginEarliest) * rate));
        const std::string sound = SoundOf(machine.Files, recut.MusicFile());
        if (sound != all.substr(begin * sizeof(Frame), (end - begin) * sizeof(Frame))) {
            Report(recut.MusicFile() + " is not what was to be cut again from " + each.Base);
        }
        ++Recuts;
    }
}

}  // namespace Corvetape::Test
