#include "audio/song_writer.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "core/text/date_format.h"
#include "core/text/placeholders.h"

namespace Corvetape {

namespace {

constexpr std::array<std::string_view, 4> TagIds = {"IGNR", "IART", "IALB", "INAM"};

/// What is made beside a temporary song under its name: the song, its note and its cover.
constexpr std::array<std::string_view, 5> ExtensionsOfSong = {".wav", ".note", ".jpg", ".png", ".gif"};

/// A name that goes on after the song's with anything else is that of another song.
bool IsFileOfSong(std::string_view name, std::string_view baseName) {
    return name.starts_with(baseName) &&
           std::ranges::find(ExtensionsOfSong, name.substr(baseName.size())) != ExtensionsOfSong.end();
}

/// Bytes of one buffer of 50 ms.
int64_t BufferBytesOf(const WaveFormat& format) {
    return int64_t{FramesPerBufferOf(format)} * static_cast<int64_t>(sizeof(Frame));
}

}  // namespace

SongWriter::SongWriter(SongParts parts, SongPlace place, SongEvents events)
    : Parts(parts), Place(std::move(place)), Events(std::move(events)) {
    if (Place.MaxSongBytes == 0) Place.MaxSongBytes = MostSongBytes;
    Place.MaxSongBytes = std::min(Place.MaxSongBytes, MostSongBytes);
}

SongWriter::~SongWriter() = default;

bool SongWriter::WriteBufferToSong(const SignalBuffer& buffer, bool end) {
    if (Parts.Pause.EndOfSongDetection != EndOfSong::Silence || !Parts.Flags.RecordingEnabled) return true;
    // An end without a pause comes when the recognition is switched off: no song ends there.
    const SongEnd how = Parts.Signal.InPause ? SongEnd::Boundary : SongEnd::Stopped;
    if (!SongFileOpen()) {
        if (end) {
            NextBeginsAtBoundary = how == SongEnd::Boundary;
            return true;
        }
        if (!CreateSongFile()) return false;
    }
    const Written written = WriteBuffer(buffer);
    if (written == Written::NoFile) return false;
    return written == Written::Failed || !end || CloseSongFile(how);
}

SongWriter::Written SongWriter::WriteBuffer(const SignalBuffer& buffer) {
    const std::span<const Frame> frames = FramesOf(buffer);
    if (frames.empty()) return Written::Yes;
    if (SongFileOpen() && MustGoOn(frames.size_bytes()) && !GoOnInNextFile()) return Written::NoFile;
    if (!SongFileOpen()) return Written::Failed;
    FileResult written = WriteOrCount(buffer);
    if (IsLargestBy(written)) {
        if (!GoOnInNextFile()) return Written::NoFile;
        if (SongFile) written = SongFile->Write(frames);
    }
    if (!written) {
        Begin(buffer);
        Present.Unbroken = false;
        Present.Failing = true;
        RaiseError(ErrorWritingSong, written);
        return Written::Failed;
    }
    LastResult = static_cast<int32_t>(frames.size_bytes());
    BytesOfSong += static_cast<int64_t>(frames.size_bytes());
    Note(buffer);
    return Written::Yes;
}

/// A buffer that was written ahead to just where it belongs needs only to be counted.
FileResult SongWriter::WriteOrCount(const SignalBuffer& buffer) {
    const std::span<const Frame> frames = FramesOf(buffer);
    const AheadMark place{AheadStretch, SongFile->DataBytes() + frames.size_bytes()};
    if (buffer.Ahead == place && frames.size_bytes() <= SongFile->AheadBytes()) {
        SongFile->Count(frames.size_bytes());
        return {};
    }
    DropAhead();
    return SongFile->Write(frames);
}

std::optional<AheadMark> SongWriter::WriteAhead(const SignalBuffer& buffer) {
    const std::span<const Frame> frames = FramesOf(buffer);
    if (MadeAhead && SongFile->Format() != Place.Format) DeleteFileMadeAhead();
    if (!SongFile) {
        NameFile();
        MadeAhead = static_cast<bool>(MakeFile());
        if (!MadeAhead) FilePath.clear();
    }
    if (!SongFile || SongFile->Format() != Place.Format) return std::nullopt;
    const uint64_t end = SongFile->DataBytes() + SongFile->AheadBytes() + frames.size_bytes();
    if (end > MostWavDataBytes || !SongFile->WriteAhead(frames)) return std::nullopt;
    return AheadMark{AheadStretch, end};
}

bool SongWriter::IsEndOfAhead(const AheadMark& mark) const {
    return SongFile && mark == AheadMark{AheadStretch, SongFile->DataBytes() + SongFile->AheadBytes()};
}

void SongWriter::DropAhead() {
    ++AheadStretch;
    if (SongFile) SongFile->DropAhead();
}

bool SongWriter::MustGoOn(size_t bytes) const {
    if (SongFile->Format() != Place.Format) return true;
    return BytesOfSong > 0 && static_cast<uint64_t>(BytesOfSong) + bytes > Place.MaxSongBytes;
}

/// The system has refused to let a file grow further that holds some of the song already.
bool SongWriter::IsLargestBy(const FileResult& result) const {
    return BytesOfSong > 0 && result.Error == std::errc::file_too_large;
}

void SongWriter::Begin(const SignalBuffer& buffer) {
    if (std::exchange(Present.Begun, true)) return;
    Present.BeginFrame = buffer.StreamPosition;
    Present.EndFrame = buffer.StreamPosition;
}

void SongWriter::Note(const SignalBuffer& buffer) {
    Begin(buffer);
    if (Present.Stretches.empty() || buffer.StreamPosition != Present.EndFrame) {
        const auto frames = static_cast<uint64_t>(BytesOfSong) / sizeof(Frame);
        Present.Stretches.push_back({frames - FramesOf(buffer).size(), buffer.StreamPosition});
    }
    // What the disk has refused since then is missing, unless it has waited in the ring, and so is what came
    // while recording was off.
    const bool failed = std::exchange(Present.Failing, false);
    const bool interrupted = std::exchange(Parts.Flags.Interrupted, false);
    if ((failed || interrupted) && buffer.StreamPosition > Present.EndFrame) {
        Present.LostFrames += buffer.StreamPosition - Present.EndFrame;
        Present.FramesAfterGap = 0;
    }
    Present.EndFrame = buffer.StreamPosition + FramesOf(buffer).size();
    if (Present.FramesAfterGap) *Present.FramesAfterGap += FramesOf(buffer).size();
    Present.LostFrames += buffer.FramesLostBefore;
    Present.DeviceChanges += buffer.DeviceChangesBefore;
    Present.ClippedSamples += buffer.ClippedSamples;
}

bool SongWriter::CreateSongFile() {
    if (Parts.Pause.EndOfSongDetection == EndOfSong::Silence) {
        LevelHistory& history = Parts.Signal.History;
        if (history.Size() > 0) history.ReplaceLast(-history[history.Size() - 1]);
    }
    FullFiles = 0;
    BytesInFullFiles = 0;
    if (MadeAhead && (!Parts.Flags.RecordingEnabled || SongFile->Format() != Place.Format)) {
        DeleteFileMadeAhead();
    }
    if (std::exchange(MadeAhead, false)) {
        BeginSong();
        return true;
    }
    NameFile();
    return !Parts.Flags.RecordingEnabled || OpenFile();
}

void SongWriter::NameFile() {
    const std::string date = FormatDate(Place.Settings.MusicFileTemplate[0], Place.Time.LocalNow());
    const std::string stamp = SafePathPart(Place.NamePrefix + date);
    // A disk that fails to look must not cost the song that was kept in the same second.
    const bool again = stamp == Kept.Stamp;
    Name = {stamp, again ? Kept.Number : 0};
    do {
        TakeNextNumber();
    } while (Parts.Disk.FileSize(FilePath));
}

void SongWriter::TakeNextNumber() {
    ++Name.Number;
    BaseName = Name.Number == 1 ? Name.Stamp : Name.Stamp + "-" + std::to_string(Name.Number);
    FilePath = Place.Folders.SongTempFolder + "/" + BaseName + ".wav";
}

FileResult SongWriter::MakeFile() {
    ++AheadStretch;
    Opened<WavFile> made = WavFile::Create(Parts.Disk, FilePath, Place.Format);
    // Another run has taken the name at this moment, or a link that leads nowhere has it.
    constexpr int32_t mostNumbers = 1000;
    while (made.Failure.Error == std::errc::file_exists && Name.Number < mostNumbers) {
        TakeNextNumber();
        made = WavFile::Create(Parts.Disk, FilePath, Place.Format);
    }
    FileResult result = std::move(made.Failure);
    SongFile = std::move(made);
    if (SongFile && Events.SongBegun) Events.SongBegun(FilePath);
    return result;
}

void SongWriter::DeleteFileMadeAhead() {
    if (!std::exchange(MadeAhead, false)) return;
    DeleteSongFiles();
    ForgetFile();
}

bool SongWriter::OpenFile() {
    BeginSong();
    const FileResult made = MakeFile();
    if (!made) RaiseError(ErrorCreatingSong, made);
    return static_cast<bool>(made);
}

void SongWriter::BeginSong() {
    BytesOfSong = 0;
    Present = {};
    Parts.Flags.Interrupted = false;
    PauseNeverCame = false;
    Present.BegunAtBoundary = std::exchange(NextBeginsAtBoundary, false);
}

bool SongWriter::GoOnInNextFile() {
    ++FullFiles;
    TakeEndedMedia();
    const bool kept = IsWanted() && BytesOfSong > 0;
    if (kept) {
        Keep(FullFiles);
    } else {
        DeleteSongFiles();
    }
    // The song has not ended: the flags for its end and for the next song stay as they are.
    ClosedSong song = Describe(kept ? SongFate::Kept : SongFate::Unwanted);
    song.Continues = true;
    BytesInFullFiles += BytesOfSong;
    ForgetFile();
    if (Events.SongClosed) Events.SongClosed(song);
    if (!Parts.Flags.RecordingEnabled) return true;
    NameFile();
    return OpenFile();
}

bool SongWriter::CloseSongFile(SongEnd how) {
    RecordingFlags& flags = Parts.Flags;
    const bool bySilence = Parts.Pause.EndOfSongDetection == EndOfSong::Silence;
    if (bySilence) Parts.Signal.History.ReplaceLast(MarkSongEnd);
    DeleteFileMadeAhead();
    if (!flags.RecordingEnabled || !SongFile) return true;
    if (bySilence) TakePauseOff();
    TakeEndedMedia();

    const SongFate fate = Fate();
    if (fate == SongFate::Kept) {
        Keep(FullFiles > 0 ? FullFiles + 1 : 0);
    } else {
        DeleteSongFiles();
    }
    // A kept song leaves the wish for the next one as it is.
    const bool waits = fate == SongFate::Kept && flags.RecordNextSong;
    if (!Parts.Cut.Ended) flags.PassOn();
    flags.KeepWaiting(waits);
    ClosedSong song = Describe(fate);
    // What is known of its begin is that of the song, which may have filled a file before.
    const bool begun = Present.BegunAtBoundary || (FullFiles == 0 && song.Trust.Begin == Certainty::Sure);
    song.Whole = begun && how == SongEnd::Boundary && Present.Unbroken && Present.LostFrames == 0 &&
                 song.Trust.IsClean();
    ForgetFile();
    NextBeginsAtBoundary = how == SongEnd::Boundary;
    const bool endsProgram = EndsProgram();
    flags.EndWithSong(endsProgram);
    if (Events.SongClosed) Events.SongClosed(song);
    // A song that is handed on ends the program when its transfer is done.
    if (fate != SongFate::Kept && endsProgram && Events.QuitWanted) Events.QuitWanted();
    return true;
}

void SongWriter::TakePauseOff() {
    if (PauseNeverCame) return;
    int64_t pause = std::max<int64_t>(Parts.Pause.PauseBuffers, 0) * BufferBytesOf(SongFile->Format());
    // Trim only what reached the disk.
    if (const auto since = Present.FramesAfterGap) {
        pause = std::min(pause, static_cast<int64_t>(*since * sizeof(Frame)));
    }
    TakeOff(pause);
}

void SongWriter::TakeOff(int64_t bytes) {
    BytesOfSong -= bytes;
    if (BytesOfSong <= 0) return;
    DropAhead();
    if (const FileResult taken = SongFile->TakeOff(static_cast<uint64_t>(bytes)); !taken) {
        RaiseError(ErrorClosingSong, taken);
        return;
    }
    const uint64_t frames = static_cast<uint64_t>(bytes) / sizeof(Frame);
    Present.EndFrame -= std::min(frames, Present.EndFrame);
}

uint64_t SongWriter::SilenceBegin() const {
    const SignalState& signal = Parts.Signal;
    const uint64_t now = signal.FramesOfEarlierInputs + signal.FramesReceived;
    const auto silent = static_cast<uint64_t>(std::max(signal.SilentBufferCount, 0));
    return now - std::min(now, silent * FramesPerBufferOf(Place.Format));
}

/// How much of the file came before a position. What was skipped after a pause is not in it.
uint64_t SongWriter::FramesBefore(uint64_t position) const {
    uint64_t end = static_cast<uint64_t>(std::max<int64_t>(BytesOfSong, 0)) / sizeof(Frame);
    for (size_t i = Present.Stretches.size(); i-- > 0;) {
        const Stretch& stretch = Present.Stretches[i];
        const bool isInIt = stretch.Position <= position;
        if (isInIt) return std::min(end, stretch.FileFrame + (position - stretch.Position));
        end = stretch.FileFrame;
    }
    return 0;
}

void SongWriter::TakeSilenceOff() {
    if (!SongFileOpen()) return;
    const auto heard = static_cast<int64_t>(FramesBefore(SilenceBegin()) * sizeof(Frame));
    if (heard < BytesOfSong) TakeOff(BytesOfSong - heard);
}

/// A song may be over before it was taken over into SongMedia, which may still be that of a song that waits.
void SongWriter::TakeEndedMedia() {
    if (!Parts.Cut.Ended) return;
    // By everything that is known, what has no title is known to have none.
    const bool known = Parts.Pause.EndOfSongDetection == EndOfSong::Automatic;
    if (Parts.Cut.Ended->Media.Song.empty() && !known) return;
    Parts.Media.SongMedia = Parts.Cut.Ended->Media;
}

bool SongWriter::IsWanted() const {
    return Parts.Cut.Ended ? Parts.Cut.Ended->Wanted : Parts.Flags.RecordCurrentSong;
}

bool SongWriter::EndsProgram() const {
    return Parts.Cut.Ended ? Parts.Cut.Ended->EndsProgram : Parts.Flags.QuitAtEndOfSong;
}

SongFate SongWriter::Fate() const {
    if (!IsWanted()) return SongFate::Unwanted;
    const int64_t least = Parts.Pause.IgnoreShortSongs * BufferBytesOf(SongFile->Format()) * BuffersPerSecond;
    // The last file of a song that filled others may be short, but not empty.
    const bool tooShort = BytesOfSong <= 0 || BytesOfSong + BytesInFullFiles <= least;
    return tooShort ? SongFate::Short : SongFate::Kept;
}

void SongWriter::Keep(int32_t part) {
    Kept = Name;
    STATIONANDSONGDATA& media = Parts.Media.SongMedia;
    const auto check = [this](const FileResult& result) {
        if (!result) RaiseError(ErrorClosingSong, result);
    };
    check(SongFile->FinishData());
    if (!media.Song.empty() && Parts.Media.StationDataEnabled) {
        const std::array<std::string, TagIds.size()> texts = {media.StationName, media.Artist, media.Album,
                                                              media.Song};
        WriteInfoChunk(TagIds, texts);
    }
    check(SongFile->FinishRiff());
    check(SongFile->Close());
    if (!media.Cover.empty() && Place.Settings.StoreCoverImage && Events.StoreCover) {
        Events.StoreCover(FilePath.substr(0, FilePath.rfind('.')));
    }
    media.Size = static_cast<int32_t>(BytesOfSong / SongFile->Format().nAvgBytesPerSec);
    media.TempFileName = BaseName;
    media.FilePart = part;
    SongKept.Raise(media);
}

void SongWriter::WriteInfoChunk(std::span<const std::string_view> ids, std::span<const std::string> texts) {
    std::vector<InfoTag> tags;
    for (size_t i = 0; i < ids.size(); ++i) tags.push_back({ids[i], texts[i]});
    const FileResult written = SongFile->WriteInfo(tags);
    // A file of the largest size has no room for tags. Its music file takes them from the record.
    if (!written && !IsLargestBy(written)) RaiseError(ErrorClosingSong, written);
}

void SongWriter::DeleteSongFiles() {
    SongFile->Close();            // its content is given up; what the close says does not matter
    Parts.Disk.Delete(FilePath);  // by its name, so that it goes even where the folder cannot be listed
    const std::string folder = FilePath.substr(0, FilePath.rfind('/'));
    for (const FileEntry& entry : Parts.Disk.List(folder)) {
        const bool ours = !entry.IsFolder && IsFileOfSong(entry.Name, BaseName);
        if (ours) Parts.Disk.Delete(folder + "/" + entry.Name);  // one that stays does no harm
    }
}

ClosedSong SongWriter::Describe(SongFate fate) const {
    ClosedSong song;
    song.Fate = fate;
    song.Frames = static_cast<uint64_t>(std::max<int64_t>(BytesOfSong, 0)) / sizeof(Frame);
    song.BeginFrame = Present.BeginFrame;
    // A song that was followed round the ring ends with audio from before its beginning.
    song.EndFrame = std::max(Present.EndFrame, Present.BeginFrame + song.Frames);
    song.FramesPerSecond = SongFile->Format().nSamplesPerSec;
    song.LostFrames = Present.LostFrames;
    song.DeviceChanges = Present.DeviceChanges;
    song.ClippedSamples = Present.ClippedSamples;
    song.TempPath = FilePath;
    song.Media = Parts.Media.SongMedia;
    if (Parts.Cut.Ended) song.Trust = Parts.Cut.Ended->Trust;
    return song;
}

void SongWriter::ForgetFile() {
    SongFile.reset();
    BytesOfSong = 0;
    FilePath.clear();
}

void SongWriter::AbortSong() {
    Parts.Flags.EndAtOnce();
    DeleteFileMadeAhead();
    if (!SongFile) return;
    DeleteSongFiles();
    const ClosedSong song = Describe(SongFate::Aborted);
    ForgetFile();
    if (Events.SongClosed) Events.SongClosed(song);
}

void SongWriter::RaiseError(int32_t number, const FileResult& failure) {
    LastResult = failure.Code();
    if (FirstError == 0) {
        FirstError = number;
        FirstErrorPath = FilePath;
    }
    Parts.Messages.RaiseError(number, FilePath, failure.Code(), failure.Reason());
    Parts.Flags.EndAtOnce();
    SongFailure news{number, FilePath, failure.Code(), failure.Reason()};
    if (news == LastReported) return;
    LastReported = std::move(news);
    if (Events.Failed) Events.Failed(LastReported);
}

}  // namespace Corvetape
