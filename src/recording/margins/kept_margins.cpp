#include "recording/margins/kept_margins.h"

#include <algorithm>
#include <limits>

#include "audio/certainty_words.h"
#include "audio/wav_file.h"
#include "core/settings/profile.h"
#include "core/text/numbers.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

constexpr const char* Section = "Margins";
constexpr size_t MostValueBytes = 4000;

/// A line of the note. A line end inside a value would begin another one.
std::string Line(const char* key, std::string_view value) {
    std::string text(CutText(value, MostValueBytes));
    std::ranges::replace_if(
        text, [](char each) { return static_cast<unsigned char>(each) < ' '; }, ' ');
    return std::string(key) + "=\"" + text + "\"\n";
}

std::string Line(const char* key, int64_t value) {
    return std::string(key) + "=" + std::to_string(value) + "\n";
}

std::string CutLines(const std::string& which, const std::optional<CutOrigin>& cut) {
    if (!cut) return {};
    return Line((which + "Source").c_str(), cut->Source) + Line((which + "Edge").c_str(), cut->Edge) +
           Line((which + "Exact").c_str(), cut->Exact ? 1 : 0);
}

/// Reads the values of one note.
class NoteReader {
 public:
    NoteReader(Files& disk, const std::string& path) : Note(disk, path) {}

    std::string Text(const std::string& key) const { return Note.ReadText(Section, key, "", MostValueBytes); }
    int32_t Number(const std::string& key, int32_t missing = 0) const {
        return Note.ReadInt(Section, key, missing);
    }
    /// A whole number that may be larger than 32 bits.
    int64_t LongNumber(const std::string& key) const {
        const std::optional<double> number = NumberFromText(Text(key));
        constexpr double most = 1e15;
        return number && *number > -most && *number < most ? static_cast<int64_t>(*number) : 0;
    }
    std::optional<CutOrigin> Cut(const std::string& which) const {
        if (!Note.HasKey(Section, which + "Edge")) return std::nullopt;
        return CutOrigin{Text(which + "Source"), Number(which + "Edge"), Number(which + "Exact") != 0};
    }

 private:
    Profile Note;
};

uint64_t FramesIn(Files& disk, const std::string& path, const WaveFormat& format) {
    const std::optional<WavInfo> info = ReadWavInfo(disk, path);
    if (!info || info->Format != format || info->DataStart != WavHeaderBytes) return 0;
    return std::min(info->DataBytes, info->FileBytes - info->DataStart) / sizeof(Frame);
}

}  // namespace

std::string MarginFolder(const WorkingFolders& folders) {
    return folders.SongTempFolder + "/margins";
}

std::string MarginFile(const WorkingFolders& folders, const std::string& base, const std::string& ending) {
    return MarginFolder(folders) + "/" + base + ending;
}

std::string MarginNoteText(const KeptMargins& margins) {
    const STATIONANDSONGDATA& media = margins.Media;
    return "[" + std::string(Section) + "]\n" + Line("Run", margins.Run) + Line("KeptAt", margins.KeptAt) +
           Line("TempSong", margins.TempSong) + Line("Station", media.StationName) +
           Line("Artist", media.Artist) + Line("Title", media.Song) + Line("Album", media.Album) +
           Line("Cover", media.Cover) + Line("Begin", WordOf(margins.Begin)) +
           Line("End", WordOf(margins.End)) + CutLines("Begin", margins.BeginCut) +
           CutLines("End", margins.EndCut) + Line("MusicFile", margins.MusicFile) +
           Line("MusicKnown", margins.MusicKnown ? 1 : 0) + Line("Job", margins.Job) +
           Line("Encoder", margins.Encoder) + Line("Quality", margins.Quality) +
           Line("Normalize", margins.Normalize ? 1 : 0) + Line("BeginMoved", margins.BeginMoved) +
           Line("EndMoved", margins.EndMoved);
}

std::optional<KeptMargins> ReadMarginNote(Files& disk, const WorkingFolders& folders,
                                          const std::string& base) {
    const std::string path = MarginFile(folders, base, ".note");
    if (!disk.FileSize(path)) return std::nullopt;
    const NoteReader note(disk, path);
    KeptMargins margins;
    margins.Base = base;
    margins.Run = note.Text("Run");
    margins.KeptAt = note.LongNumber("KeptAt");
    margins.TempSong = note.Text("TempSong");
    margins.Media.StationName = note.Text("Station");
    margins.Media.Artist = note.Text("Artist");
    margins.Media.Song = note.Text("Title");
    margins.Media.Album = note.Text("Album");
    margins.Media.Cover = note.Text("Cover");
    margins.Begin = CertaintyFrom(note.Text("Begin"));
    margins.End = CertaintyFrom(note.Text("End"));
    margins.BeginCut = note.Cut("Begin");
    margins.EndCut = note.Cut("End");
    margins.MusicFile = note.Text("MusicFile");
    margins.MusicKnown = note.Number("MusicKnown") != 0;
    margins.Job = note.Text("Job");
    margins.Encoder = note.Number("Encoder", -1);
    margins.Quality = note.Number("Quality");
    margins.Normalize = note.Number("Normalize") != 0;
    margins.BeginMoved = note.LongNumber("BeginMoved");
    margins.EndMoved = note.LongNumber("EndMoved");
    return margins;
}

std::optional<MarginLengths> MeasureMargins(Files& disk, const WorkingFolders& folders,
                                            const std::string& base) {
    const std::string song = MarginFile(folders, base, ".song.wav");
    const std::optional<WavInfo> info = ReadWavInfo(disk, song);
    if (!info || info->Format.nBlockAlign != sizeof(Frame) || info->Format.nSamplesPerSec == 0) {
        return std::nullopt;
    }
    MarginLengths lengths;
    lengths.FramesPerSecond = info->Format.nSamplesPerSec;
    lengths.Song = FramesIn(disk, song, info->Format);
    lengths.Before = FramesIn(disk, MarginFile(folders, base, ".before.wav"), info->Format);
    lengths.After = FramesIn(disk, MarginFile(folders, base, ".after.wav"), info->Format);
    if (lengths.Song == 0) return std::nullopt;
    return lengths;
}

}  // namespace Corvetape
