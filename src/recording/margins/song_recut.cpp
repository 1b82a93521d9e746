#include "recording/margins/song_recut.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "audio/wav_file.h"
#include "audio/wave_buffer.h"
#include "post/encoders/encoder_table.h"
#include "post/transfer/encode_job.h"

namespace Corvetape {

namespace {

constexpr const char* TooShort = "Nothing would be left of the song.";
constexpr double LeastSeconds = 1;

std::string FolderOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

/// A piece of what follows one another.
struct Piece {
    std::string Path;
    uint64_t Frames = 0;
};

/// Copies frames of a song file to the end of another one.
FileResult CopyFrames(Files& disk, const std::string& from, uint64_t first, uint64_t count, WavFile& to) {
    constexpr uint64_t mostFrames = uint64_t{256} * 1024;
    std::vector<Frame> frames;
    while (count > 0) {
        const auto part = static_cast<size_t>(std::min(count, mostFrames));
        const auto bytes = disk.ReadPart(from, WavHeaderBytes + first * sizeof(Frame), part * sizeof(Frame));
        if (!bytes) return bytes.Failure;
        if (bytes->size() != part * sizeof(Frame)) {
            return {"read", from, std::make_error_code(std::errc::io_error)};  // shorter than it was
        }
        frames.resize(part);
        std::memcpy(frames.data(), bytes->data(), bytes->size());
        if (FileResult written = to.Write(frames); !written) return written;
        first += part;
        count -= part;
    }
    return {};
}

/// The tags that a song's recording has.
FileResult WriteTags(WavFile& file, const STATIONANDSONGDATA& media) {
    if (media.Song.empty()) return {};
    const std::array<InfoTag, 4> tags = {
        {{"IGNR", media.StationName}, {"IART", media.Artist}, {"IALB", media.Album}, {"INAM", media.Song}}};
    return file.WriteInfo(tags);
}

/// The settings that the song was encoded by.
Settings SettingsOf(const Settings& present, const KeptMargins& song, const EncoderRow& row) {
    Settings settings = present;
    settings.Encoder = song.Encoder;
    if (row.QualityIndex != nullptr) settings.*row.QualityIndex = song.Quality;
    settings.Normalize = song.Normalize;
    settings.DelTemp = false;
    return settings;
}

/// Where a cut was, corrected by so many frames, teaches its source.
void LearnCut(LearnedCuts& learned, const std::optional<CutOrigin>& cut, int64_t frames,
              uint32_t framesPerSecond) {
    if (!cut || frames == 0) return;
    const double slots = static_cast<double>(frames) * BuffersPerSecond / framesPerSecond;
    const double edge = cut->Edge + std::round(slots);
    if (edge < FirstEdge || edge > LastEdge) return;  // as late as no title is
    learned.Of(cut->Source, cut->Exact).LearnCorrection(static_cast<int32_t>(edge));
    learned.Store(cut->Source, cut->Exact);
}

}  // namespace

std::optional<RecutRoom> SongRecut::RoomOf(const KeptMargins& margins) const {
    const auto lengths = MeasureMargins(Parts.Files, Parts.Folders, margins.Base);
    if (!lengths) return std::nullopt;
    const double rate = lengths->FramesPerSecond;
    const auto before = static_cast<double>(lengths->Before);
    const auto after = static_cast<double>(lengths->After);
    const auto begin = static_cast<double>(margins.BeginMoved);
    const auto end = static_cast<double>(margins.EndMoved);
    return RecutRoom{-(before + begin) / rate, (after - end) / rate,
                     (static_cast<double>(lengths->Song) + end - begin) / rate};
}

std::string SongRecut::Begin(const KeptMargins& margins, const RecutWish& wish) {
    if (!Job.empty()) return "Another song is being cut again.";
    if (Parts.Store.IsWaiting(margins) || margins.MusicFile.empty()) return "Its music file is not made yet.";
    const auto lengths = MeasureMargins(Parts.Files, Parts.Folders, margins.Base);
    if (!lengths) return "What was kept of it is gone or damaged.";
    Song = margins;
    Lengths = *lengths;
    if (std::string refused = Plan(wish); !refused.empty()) return refused;
    Work = MarginFile(Parts.Folders, Song.Base, ".recut-" + Parts.RunName);
    TidyUp();  // of an earlier process of this name
    if (const FileResult written = WriteRecording(); !written) {
        TidyUp();
        return "The new recording cannot be written to " + FolderOf(Work) + " (" + written.Reason() + ").";
    }
    if (Song.Encoder < 0) return Place(Work + ".wav");
    std::string problem = StartEncoder();
    if (!problem.empty()) TidyUp();
    return problem;
}

std::string SongRecut::Plan(const RecutWish& wish) {
    const double rate = Lengths.FramesPerSecond;
    const std::optional<RecutRoom> room = RoomOf(Song);
    if (!room || !std::isfinite(wish.Begin) || !std::isfinite(wish.End)) return TooShort;
    constexpr double rounding = 1e-6;
    if (wish.Begin < room->BeginEarliest - rounding) {
        return fmt::format("Only {:.2f} s before its present begin were kept.", -room->BeginEarliest);
    }
    if (wish.End > room->EndLatest + rounding) {
        return fmt::format("Only {:.2f} s after its present end were kept.", room->EndLatest);
    }
    if (room->Length + wish.End - wish.Begin < LeastSeconds) return TooShort;
    BeginShift = std::llround(wish.Begin * rate);
    EndShift = std::llround(wish.End * rate);
    const auto before = static_cast<int64_t>(Lengths.Before);
    const auto end = before + static_cast<int64_t>(Lengths.Song);
    const int64_t last = end + static_cast<int64_t>(Lengths.After);
    Wanted.Begin = static_cast<uint64_t>(std::max<int64_t>(before + Song.BeginMoved + BeginShift, 0));
    Wanted.End = static_cast<uint64_t>(std::clamp<int64_t>(end + Song.EndMoved + EndShift, 0, last));
    return Wanted.End > Wanted.Begin ? "" : TooShort;
}

FileResult SongRecut::WriteRecording() const {
    const auto path = [this](const char* ending) { return MarginFile(Parts.Folders, Song.Base, ending); };
    const std::array<Piece, 3> pieces = {{{path(".before.wav"), Lengths.Before},
                                          {path(".song.wav"), Lengths.Song},
                                          {path(".after.wav"), Lengths.After}}};
    const auto file = WavFile::Create(Parts.Files, Work + ".wav", MakeWaveFormat(Lengths.FramesPerSecond));
    if (!file) return file.Failure;
    uint64_t start = 0;
    for (const Piece& piece : pieces) {
        const uint64_t begin = std::max(Wanted.Begin, start);
        const uint64_t end = std::min(Wanted.End, start + piece.Frames);
        FileResult copied;
        if (begin < end) copied = CopyFrames(Parts.Files, piece.Path, begin - start, end - begin, *file);
        if (!copied) return copied;
        start += piece.Frames;
    }
    FileResult finished = file->FinishData();
    if (finished) finished = WriteTags(*file, Song.Media);
    if (finished) finished = file->FinishRiff();
    if (finished) finished = file->Close();
    const std::string cover = path(".jpg");
    // The tags can do without a picture.
    if (finished && Parts.Files.FileSize(cover)) Parts.Files.Link(cover, Work + ".jpg");
    return finished;
}

std::string SongRecut::StartEncoder() {
    const EncoderRow* row = FindEncoder(Song.Encoder);
    if (row == nullptr) return "There is no encoder " + std::to_string(Song.Encoder) + ".";
    const Settings settings = SettingsOf(Parts.Settings, Song, *row);
    if (row->Qualities != nullptr && QualityOptions(settings, *row) == nullptr) {
        return "There is no quality " + std::to_string(Song.Quality) + " for " + std::string(row->Section) +
               ".";
    }
    // Made under a name of its own, whatever the command does, and put in place as a whole afterwards.
    SongNames names;
    names.TargetBase = Work + ".new";
    Made = names.TargetBase + "." + std::string(row->Extension);
    const EncodeRequest request = {settings,
                                   Parts.Folders,
                                   Song.Media,
                                   names,
                                   0,
                                   Work,
                                   SameNameRule::Replace,
                                   "recut-" + Parts.RunName,
                                   "",
                                   "",
                                   ""};
    const EncodeJob encoding = MakeEncodeJob("recut " + Song.Base, *row, request, Parts.Processes);
    if (!encoding.Problem.empty()) return encoding.Problem;
    if (!Parts.Processes.StartHidden(encoding.Job)) return "Its encoder could not be started.";
    Job = encoding.Job.Name;
    return {};
}

std::string SongRecut::End(const JobResult& result) {
    if (Job.empty() || result.Name != Job) return {};
    Job.clear();
    if (result.ExitCode != 0 || Parts.Files.FileSize(Made).value_or(0) == 0) {
        TidyUp();
        return fmt::format("Its encoder ended with code {}; the music file stays as it was.",
                           result.ExitCode);
    }
    return Place(Made);
}

std::string SongRecut::Place(const std::string& made) {
    const std::string to = Song.MusicKnown ? Song.MusicFile : FreeName(Song.MusicFile);
    if (const FileResult renamed = Parts.Files.Rename(made, to); !renamed) {
        TidyUp();
        return "The new file cannot be put at " + to + " (" + renamed.Reason() +
               "); the music file stays as it was.";
    }
    TidyUp();
    Learn();
    Song.MusicFile = to;
    Song.MusicKnown = true;
    Song.BeginMoved += BeginShift;
    Song.EndMoved += EndShift;
    if (BeginShift != 0) Song.Begin = Certainty::Sure;
    if (EndShift != 0) Song.End = Certainty::Sure;
    const FileResult noted = Parts.Store.Write(Song);
    if (noted) return {};
    return "The music file is written, but its margins could not be brought up to date (" + noted.Reason() +
           ").";
}

/// The name of a file that may be another song's belongs to that one.
std::string SongRecut::FreeName(const std::string& wanted) const {
    const size_t dot = wanted.rfind('.');
    std::string name = wanted;
    for (int32_t number = 2; Parts.Files.FileSize(name); ++number) {
        name = wanted.substr(0, dot) + " (" + std::to_string(number) + ")" + wanted.substr(dot);
    }
    return name;
}

/// What was corrected, from where the cut was found first.
void SongRecut::Learn() const {
    const uint32_t rate = Lengths.FramesPerSecond;
    if (BeginShift != 0) LearnCut(Parts.Learned, Song.BeginCut, Song.BeginMoved + BeginShift, rate);
    if (EndShift != 0) LearnCut(Parts.Learned, Song.EndCut, Song.EndMoved + EndShift, rate);
}

void SongRecut::TidyUp() {
    Parts.Files.Delete(Work + ".wav");  // some of them are not there
    Parts.Files.Delete(Work + ".jpg");
    Parts.Files.Delete(Work + ".new.jpg");
    if (!Made.empty()) Parts.Files.Delete(Made);
    Made.clear();
}

}  // namespace Corvetape
