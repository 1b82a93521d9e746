#include "scenario/soak/book.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <span>
#include <utility>

namespace Corvetape::Test {

namespace {

constexpr size_t MostProblems = 5;

/// The greater level of the two channels, as the pause recognition measures it.
int32_t LevelOf(std::span<const Frame> frames, bool byPeak) {
    int64_t left = 0;
    int64_t right = 0;
    for (const Frame frame : frames) {
        const int64_t l = std::abs(int32_t{frame.Left});
        const int64_t r = std::abs(int32_t{frame.Right});
        left = byPeak ? std::max(left, l) : left + l;
        right = byPeak ? std::max(right, r) : right + r;
    }
    const auto count = byPeak ? int64_t{1} : static_cast<int64_t>(frames.size());
    return static_cast<int32_t>(std::max(left, right) / count);
}

}  // namespace

std::string PictureAt(const std::string& cover) {
    constexpr size_t bytes = 3000;
    std::string picture;
    while (picture.size() < bytes) picture += cover + "\n";
    return picture;
}

uint64_t HashOf(std::span<const std::byte> bytes) {
    uint64_t hash = 0x9E3779B97F4A7C15U;
    uint64_t word = 0;
    for (; bytes.size() >= sizeof(word); bytes = bytes.subspan(sizeof(word))) {
        std::memcpy(&word, bytes.data(), sizeof(word));
        hash = (hash ^ word) * 0xD6E8FEB86659FD93U;
        hash ^= hash >> 32U;
    }
    word = bytes.size();
    std::memcpy(&word, bytes.data(), bytes.size());
    return (hash ^ word) * 0xD6E8FEB86659FD93U;
}

/// An input whose buffers are entered into the book when the program gives them back.
struct Book::Input : WaveIn {
    struct Stream : WaveInStream {
        Stream(Book& book, std::unique_ptr<WaveInStream> inner) : Owner(book), Inner(std::move(inner)) {}
        void AddBuffer(WaveHeader& header) override {
            if (header.dwBytesRecorded > 0) Owner.Arrived(header);
            Inner->AddBuffer(header);
        }
        bool Start() override { return Inner->Start(); }
        void Reset() override { Inner->Reset(); }
        void Deliver() override { Inner->Deliver(); }

        Book& Owner;
        std::unique_ptr<WaveInStream> Inner;
    };

    Input(Book& book, WaveIn& inner) : Owner(book), Inner(inner) {}
    WaveInList Devices() override { return Inner.Devices(); }
    OpenedWaveIn Open(size_t device, const WaveFormat& format, BufferReturn mode,
                      WaveInEvents events) override {
        auto stream = Inner.Open(device, format, mode, std::move(events));
        if (!stream) return stream;
        Owner.Opened(format.nSamplesPerSec);
        return std::make_unique<Stream>(Owner, std::move(stream));
    }

    Book& Owner;
    WaveIn& Inner;
};

Book::Book() = default;
Book::~Book() = default;

Machine Book::Through(Machine machine) {
    if (!Between) Between = std::make_unique<Input>(*this, machine.WaveIn);
    return {machine.Clock,     machine.Loop,    *Between,        machine.Mixer,  machine.Files,
            machine.Processes, machine.Folders, machine.Dialogs, machine.System, machine.Desktop,
            machine.Documents, machine.Windows, machine.Players, machine.Web,    machine.Browser};
}

void Book::Report(const std::string& problem) {
    if (++FoundCount > MostProblems) return;
    Found += std::to_string(Radio->Now()) + ": " + problem + "\n";
}

void Book::Opened(uint32_t /*framesPerSecond*/) {
    NoteOpenFile();  // what waited in the ring was written before the input was opened anew
    ++Openings;
    FirstFrame = Radio->Computer.WaveIn.RadioFrameOf(0).value_or(0);
    RingIndex = 0;
    Skipping = Values().Signal.SkipBuffers > 0;
}

void Book::Arrived(const WaveHeader& buffer) {
    State& values = Values();
    BookedBuffer booked;
    const std::span<const Frame> frames(buffer.lpData, buffer.dwBytesRecorded / sizeof(Frame));
    booked.Opening = Openings;
    booked.Frames = static_cast<uint32_t>(frames.size());
    const uint64_t inOpening = values.Signal.FramesReceived - frames.size();
    booked.Position = FramesOfEarlierRuns + values.Signal.FramesOfEarlierInputs + inOpening;
    const SimWaveIn& inputs = Radio->Computer.WaveIn;
    const uint64_t last = inOpening + std::max<uint64_t>(frames.size(), 1) - 1;
    booked.RadioEnd = inputs.RadioFrameOf(last).value_or(0) + 1;
    const bool isFirst = Buffers.empty() || Buffers.back().Opening != Openings;
    const uint64_t before = isFirst ? FirstFrame : Buffers.back().RadioEnd;
    booked.Lost = booked.RadioEnd - before - frames.size();
    booked.Hash = HashOf(std::as_bytes(frames));
    booked.Level = LevelOf(frames, values.Pause.DetectSilenceByPeak);
    booked.Quiet =
        booked.Level <= std::max({values.Pause.SilenceAmplitude, values.Pause.EndOfSilenceAmplitude,
                                  values.Signal.ActiveThreshold});

    if (values.Pause.EndOfSongDetection != EndOfSong::Automatic) HeardOtherwise = true;
    const bool throughRing = values.Pause.EndOfSongDetection != EndOfSong::Silence;
    const bool skipped = std::exchange(Skipping, values.Signal.SkipBuffers > 0);
    const bool tookIndex = std::exchange(RingIndex, values.Ring.AudioWriteIndex) != RingIndex;
    if (tookIndex) {
        booked.RingNumber = static_cast<int32_t>(RingBuffers.size());
        RingBuffers.push_back(Buffers.size());
    }
    const bool ignored = values.Signal.InPause && (!throughRing || values.Pause.IgnoreSilence);
    booked.Skipped = skipped;
    booked.Off = !values.Flags.RecordingEnabled && !skipped && !ignored;
    booked.MayBeMissing = !values.Flags.RecordingEnabled || skipped || ignored;
    // By everything that is known, silence and gaps are in no song.
    constexpr int32_t quietLevel = 164;
    const bool byItself = values.Pause.EndOfSongDetection == EndOfSong::Automatic;
    const bool silent = booked.Level <= std::max<int32_t>(values.Pause.SilenceAmplitude, quietLevel);
    if (byItself && silent) booked.MayBeMissing = true;
    if (throughRing && !tookIndex && !booked.MayBeMissing) Report("a buffer did not get into the ring");
    Buffers.push_back(booked);
    if (!throughRing && values.Signal.InPause) ExcusePause();
    if (!values.Flags.RecordingEnabled) {
        ExcuseUnread(Unread);
        ExcuseUnread(FirstUnread());
    }

    const uint64_t overruns = values.Ring.OverrunBuffers;
    const bool written = tookIndex && values.Flags.RecordingEnabled && values.Ring.Unread() == 0;
    if (written && overruns == Overruns) Report("unread audio was overwritten without a report");
    if (overruns != Overruns) ExcuseUnread(Unread);
    Overruns = overruns;
    Unread = FirstUnread();
    RingSize = static_cast<size_t>(Values().Ring.Size());
}

/// The first buffer that waits in the ring.
size_t Book::FirstUnread() {
    const auto waiting = static_cast<size_t>(Values().Ring.Unread());
    if (waiting == 0 || waiting > RingBuffers.size()) return Buffers.size();
    return RingBuffers[RingBuffers.size() - waiting];
}

void Book::ExcuseUnread(size_t from) {
    for (size_t i = from; i < Buffers.size(); ++i) Buffers[i].MayBeMissing = true;
}

/// The quiet buffers before a pause, up to its length. What was skipped is in no file, so that the length is
/// taken off what is before it.
void Book::ExcusePause() {
    int32_t left = Values().Pause.PauseBuffers;
    for (size_t i = Buffers.size(); i-- > 0 && left > 0;) {
        BookedBuffer& each = Buffers[i];
        if (each.Skipped) continue;
        if (!each.Quiet) return;
        each.MayBeMissing = true;
        --left;
    }
}

void Book::NoteCut() {
    const CutState& cut = Values().Cut;
    const PauseSettings& pause = Values().Pause;
    // While the input stands still one change after the other is noticed at the same place.
    const bool begun = cut.SongBoundary && !std::exchange(WasBoundary, cut.SongBoundary);
    const bool further = begun && pause.EndOfSongDetection == EndOfSong::Automatic;
    const bool isNew = cut.CutPending && (!WasCutPending || cut.CutIndex != LastCutIndex || further);
    if (!cut.CutPending) {
        CutByTitle = false;
        if (!EndsWait()) Noticed.clear();
    }
    if (isNew && pause.EndOfSongDetection == EndOfSong::Automatic) {
        Noticed.emplace_back(TitleForAutomatic.Song.empty() ? LastTitle : TitleForAutomatic, CurrentWanted);
        TitleForAutomatic = LastTitle;
    }
    if (isNew && (!CutByTitle || EarlierCutIsDue())) {
        CutByTitle = pause.EndOfSongDetection == EndOfSong::MediaData;
        Ended = LastTitle;
        EndedWanted = CurrentWanted;
    }
    if (isNew) Cuts.push_back({static_cast<int32_t>(RingBuffers.size()), 0, 0});
    if (cut.CutPending || WasCutPending) {
        // Both may be changed while the cut waits.
        Cuts.back().Before = std::max(Cuts.back().Before, pause.EndOfSongThreshold[0] / 50);
        Cuts.back().After = std::max(Cuts.back().After, pause.EndOfSongThreshold[1] / 50);
    }
    WasBoundary = cut.SongBoundary;
    WasCutPending = cut.CutPending;
    LastCutIndex = cut.CutIndex;
}

/// Whether songs that have ended by everything that is known wait for recording to go on, which takes up to a
/// second: a file is open, whose song has ended while nothing was recorded. Another mode in which nothing is
/// heard changes nothing of that.
bool Book::EndsWait() {
    constexpr double untilCarriedOut = 2;
    if (HeardOtherwise || Radio->Disk().OpenPaths().empty()) return false;
    if (!Values().Flags.RecordingEnabled) LastOff = Radio->Now();
    return Radio->Now() < LastOff + untilCarriedOut;
}

/// Whether a cut that a title has raised is carried out before the next title moves it.
bool Book::EarlierCutIsDue() {
    if (!Values().Flags.RecordingEnabled) return false;
    const int32_t since = static_cast<int32_t>(RingBuffers.size()) - Cuts.back().At;
    return (CurrentWanted && !EndedWanted) || since >= Values().Pause.EndOfSongThreshold[1] / 50;
}

void Book::NoteTitle() {
    const MediaState& media = Values().Media;
    const STATIONANDSONGDATA before = LastTitle;
    if (std::exchange(Source, media.ProviderName) != media.ProviderName) LastTitle = {};
    if (!media.CurrentMedia.Song.empty()) LastTitle = media.CurrentMedia;
    // Of a song that was recorded before, titles say nothing that came in another mode while nothing was
    // heard, but for what they add to its own.
    const bool automatic = Values().Pause.EndOfSongDetection == EndOfSong::Automatic;
    const bool recorded = !Radio->Disk().OpenPaths().empty() || Values().Ring.Unread() > 0;
    const bool same =
        LastTitle.Artist == TitleForAutomatic.Artist && LastTitle.Song == TitleForAutomatic.Song;
    const bool looked = automatic && (LastTitle != before || same);
    if (looked || HeardOtherwise || !recorded) TitleForAutomatic = LastTitle;
    if (automatic) HeardOtherwise = false;
}

void Book::AfterEvent() {
    if (!Radio->Recorder) return;
    // A ring that grows counts its slots anew.
    const auto size = static_cast<size_t>(Values().Ring.Size());
    if (std::exchange(RingSize, size) != size) RingIndex = Values().Ring.AudioWriteIndex;
    CheckFlags();
    CheckLosses();
    NoteCut();
    NoteTitle();
    const RecordingFlags& flags = Values().Flags;
    if (!flags.RecordingEnabled) {
        if (Stops.empty() || Stops.back() != Buffers.size()) Stops.push_back(Buffers.size());
        ExcuseUnread(Unread);
        ExcuseUnread(FirstUnread());
    }
    // A piece by time ends where the silence has begun, which goes.
    const bool byTime = Values().Pause.EndOfSongDetection == EndOfSong::FixedTime;
    const bool silent = Values().Signal.SilenceSeconds >= Values().Options.InfoAfterSilence;
    if (byTime && silent && Values().Ring.Unread() == 0) {
        const auto quiet = static_cast<size_t>(std::max(Values().Signal.SilentBufferCount, 0));
        ExcuseUnread(Buffers.size() - std::min(quiet, Buffers.size()));
    }
    Unread = FirstUnread();
    CurrentWanted = flags.RecordCurrentSong;
    WaitsForNext = flags.RecordNextSong;
    NoteOpenFile();
}

void Book::NoteOpenFile() {
    const std::vector<std::string> open = Radio->Disk().OpenPaths();
    if (open.size() > 1) Report("more than one file is open");
    if (open.empty() || open[0] == OpenPath) return;
    OpenPath = open[0];
}

void Book::CheckFlags() {
    const RecordingFlags& flags = Values().Flags;
    if (flags.RecordCurrentSong && flags.RecordNextSong) Report("a song is both kept and waited for");
    if (flags.RecordingSecondsLeft < 0) Report("a timed recording has run past its end");
}

void Book::BeforePress() {
    AfterEvent();
    Pressing = true;
    SizeAtPress = Buffers.size();
    UnreadAtPress = Unread;
    WishesAtPress = Values().Flags.Wishes;
}

void Book::AfterPress() {
    if (!Radio->Recorder) return;
    const bool byTime = Values().Pause.EndOfSongDetection == EndOfSong::FixedTime;
    // A piece ends at the click, kept or not as it is wished then, whatever title came before.
    if (byTime && Values().Flags.Wishes != WishesAtPress) CutByTitle = false;
    if (byTime && Values().Flags.RecordCurrentSong && Values().Ring.Unread() == 0) {
        for (size_t i = UnreadAtPress; i < SizeAtPress; ++i) Buffers[i].MayBeMissing = true;
    }
    AfterEvent();
    Pressing = false;
}

}  // namespace Corvetape::Test
