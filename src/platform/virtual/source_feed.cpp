#include "platform/virtual/source_feed.h"

#include <algorithm>
#include <utility>

namespace Corvetape {

namespace {

constexpr int64_t Million = 1'000'000;
constexpr uint32_t BuffersPerSecond = 20;
constexpr auto BufferTime = std::chrono::milliseconds(1000 / BuffersPerSecond);

/// Millionths of a frame that a device hears in a second.
int64_t MicroFramesPerSecond(const FeedSetup& setup) {
    return int64_t{setup.FramesPerSecond} * (Million + setup.DriftMillionths);
}

/// Microseconds until `frames` have been heard, rounded up. Whole seconds are split off, or a month of
/// frames would not fit into 64 bits.
int64_t MicrosecondsFor(uint64_t frames, int64_t rate) {
    const int64_t microFrames = static_cast<int64_t>(frames) * Million;
    const int64_t rest = microFrames % rate;
    return microFrames / rate * Million + (rest * Million + rate - 1) / rate;
}

}  // namespace

void SourceFeed::HeaderQueue::Push(WaveHeader& header) {
    if (Count == Items.size()) {
        std::rotate(Items.begin(), Items.begin() + static_cast<std::ptrdiff_t>(First), Items.end());
        First = 0;
        Items.push_back(nullptr);
    }
    Items[(First + Count) % Items.size()] = &header;
    ++Count;
}

void SourceFeed::HeaderQueue::Pop() {
    First = (First + 1) % Items.size();
    --Count;
}

SourceFeed::SourceFeed(Clock& clock, EventLoop& loop)
    : Time(clock), Loop(loop), Timer(loop.NewTimer([this] { Tick(); })) {}

void SourceFeed::Open(FeedSetup setup) {
    Close();
    Setup = std::make_shared<FeedSetup>(std::move(setup));
    Held = Interrupted = ReportedGone = EndReached = false;
    DeliveredFrames = HeardBefore = 0;
    LostParts.clear();
    NextGap = NextToReport = 0;
}

void SourceFeed::Close() {
    Reset();
    Setup.reset();
}

void SourceFeed::Reset() {
    ++Generation;
    CountHeard();
    Started = false;
    Timer->Stop();
    TimerInterval = {};
    Queued.Clear();
    Filled.Clear();
}

bool SourceFeed::Start() {
    if (Setup == nullptr) return false;
    if (Started) return true;
    Started = true;
    RunningSince = Time.MonotonicNanoseconds();
    ArmForNext();
    return true;
}

void SourceFeed::AddBuffer(WaveHeader& header) {
    Queued.Push(header);
    if (Queued.Size() == 1) ArmForNext();
}

void SourceFeed::Deliver() {
    if (Setup == nullptr || !Polled()) return;
    ApplyQueueLimit();
    const uint64_t began = Generation;
    for (ReportGaps(); began == Generation; ReportGaps()) {
        if (!Delivering() || Queued.Size() == 0 || !NextIsDue()) break;
        WaveHeader& header = Queued.Front();
        if (!FillNext()) break;
        header.dwFlags |= WHDR_DONE;
    }
    if (began == Generation && EndReached) ReportEnd();
}

bool SourceFeed::Polled() const {
    return Setup->Mode == BufferReturn::PollByTimer || Setup->Mode == BufferReturn::PollPrecisely;
}

uint64_t SourceFeed::HeardIn(int64_t nanoseconds) const {
    if (nanoseconds <= 0) return 0;
    const int64_t rate = MicroFramesPerSecond(*Setup);
    const int64_t seconds = nanoseconds / (1000 * Million);
    const int64_t microseconds = nanoseconds / 1000 % Million;
    return static_cast<uint64_t>((seconds * rate + microseconds * rate / Million) / Million);
}

uint64_t SourceFeed::Heard() const {
    if (!Started || Interrupted) return HeardBefore;
    return HeardBefore + HeardIn(Time.MonotonicNanoseconds() - RunningSince);
}

/// Settles what was heard up to now, because the way of counting changes.
void SourceFeed::CountHeard() {
    if (!Started || Interrupted || Time.MonotonicNanoseconds() < RunningSince) return;
    HeardBefore = Heard();
    RunningSince = Time.MonotonicNanoseconds();
}

uint64_t SourceFeed::FramesOfNext() const {
    return Queued.Size() == 0 ? Setup->FramesPerSecond / BuffersPerSecond
                              : Queued.Front().dwBufferLength / sizeof(Frame);
}

bool SourceFeed::NextIsDue() const {
    return DeliveredFrames + FramesOfNext() <= Heard();
}

/// Fills the first queued buffer straight from the source and takes it out of the queue. At the source's end
/// the buffer is filled up with silence; false if there was nothing left for it, and it stays queued.
bool SourceFeed::FillNext() {
    WaveHeader& header = Queued.Front();
    const std::span<Frame> frames(header.lpData, header.dwBufferLength / sizeof(Frame));
    size_t filled = 0;
    while (filled < frames.size() && !EndReached) {
        size_t part = frames.size() - filled;
        if (NextGap < LostParts.size()) {
            const FeedGap& gap = LostParts[NextGap];
            if (gap.At == DeliveredFrames) {
                Setup->Source->Skip(gap.Frames);
                ++NextGap;
                continue;
            }
            part = static_cast<size_t>(std::min<uint64_t>(part, gap.At - DeliveredFrames));
        }
        const size_t got = Setup->Source->Read(frames.subspan(filled, part));
        filled += got;
        DeliveredFrames += got;
        EndReached = got < part;
    }
    if (filled == 0) return false;
    std::fill(frames.begin() + static_cast<std::ptrdiff_t>(filled), frames.end(), Frame{});
    header.dwBytesRecorded = static_cast<uint32_t>(filled * sizeof(Frame));
    Queued.Pop();
    return true;
}

/// Fills what is due; each buffer reaches its owner as an event of its own, so that an owner who handles
/// events while he has a buffer gets the next one.
void SourceFeed::Tick() {
    ApplyQueueLimit();
    while (Delivering() && Queued.Size() > 0 && NextIsDue()) {
        WaveHeader& header = Queued.Front();
        if (!FillNext()) break;
        Filled.Push(header);
        // These two words are held in place by the function: no allocation.
        Loop.Post([this, generation = Generation] {
            if (generation == Generation) HandOver();
        });
        PostGaps();
    }
    if (EndReached) {
        ReportEnd();
    } else {
        ArmForNext();
    }
}

void SourceFeed::HandOver() {
    WaveHeader& header = Filled.Front();
    Filled.Pop();
    header.dwFlags |= WHDR_DONE;
    const std::shared_ptr<FeedSetup> setup = Setup;  // the owner may close or reopen meanwhile
    if (setup->Events.BufferDone) setup->Events.BufferDone(header);
}

/// Posts an event that is void if the stream was reset meanwhile.
template <typename News>
void SourceFeed::PostEvent(News news) {
    Loop.Post([this, generation = Generation, news] {
        if (generation == Generation) news(*this);
    });
}

void SourceFeed::ReportEnd() {
    Timer->Stop();
    TimerInterval = {};
    if (!Started) return;
    Started = false;
    PostEvent([](SourceFeed& feed) {
        const std::shared_ptr<FeedSetup> setup = feed.Setup;
        if (setup->Events.Ended) setup->Events.Ended();
    });
}

void SourceFeed::PostAvailability(bool lost) {
    PostEvent([lost](SourceFeed& feed) {
        const std::shared_ptr<FeedSetup> setup = feed.Setup;
        if (setup->Events.Availability) setup->Events.Availability(lost);
    });
}

void SourceFeed::AddGap(uint64_t at, uint64_t frames, WaveInIncidentKind kind) {
    if (frames == 0) return;
    LostParts.push_back({at, frames, kind});
    if (!Polled()) PostGaps();
}

bool SourceFeed::GapIsNext() const {
    return NextToReport < LostParts.size() && LostParts[NextToReport].At < DeliveredFrames + FramesOfNext();
}

void SourceFeed::ReportGap(const FeedGap& gap) {
    const std::shared_ptr<FeedSetup> setup = Setup;
    if (setup->Events.Incident)
        setup->Events.Incident({gap.Kind, gap.Frames, setup->Device.Name, setup->LossReason});
}

/// After the buffers that were filled so far.
void SourceFeed::PostGaps() {
    for (; GapIsNext(); ++NextToReport) {
        PostEvent([gap = LostParts[NextToReport]](SourceFeed& feed) { feed.ReportGap(gap); });
    }
}

/// At once, for an owner who polls.
void SourceFeed::ReportGaps() {
    const uint64_t began = Generation;
    while (began == Generation && GapIsNext()) ReportGap(FeedGap(LostParts[NextToReport++]));
}

void SourceFeed::ApplyQueueLimit() {
    if (!Delivering()) return;
    const uint64_t heard = Heard();
    const uint64_t keep = DeliveredFrames + std::min(Setup->QueueLimitFrames, heard - DeliveredFrames);
    if (keep == heard) return;
    CountHeard();
    HeardBefore = keep;
    AddGap(keep, heard - keep, WaveInIncidentKind::Overrun);
}

void SourceFeed::Interrupt(Report report) {
    if (Setup == nullptr) return;
    if (!Interrupted) {
        CountHeard();
        Interrupted = true;
    }
    if (report == Report::Yes && !ReportedGone) {
        ReportedGone = true;
        PostAvailability(true);
    }
}

void SourceFeed::Resume(WaveInIncidentKind kind) {
    if (Setup == nullptr || !Interrupted) return;
    const int64_t now = Time.MonotonicNanoseconds();
    if (Started) AddGap(HeardBefore, HeardIn(now - RunningSince), kind);
    Interrupted = false;
    RunningSince = std::max(RunningSince, now);
    if (std::exchange(ReportedGone, false)) PostAvailability(false);
    ArmForNext();
}

void SourceFeed::Hold() {
    Held = true;
}

void SourceFeed::Release() {
    Held = false;
    if (Setup != nullptr) ArmForNext();
}

void SourceFeed::Lose(uint64_t frames, WaveInIncidentKind kind) {
    if (Setup == nullptr || frames == 0) return;
    CountHeard();
    RunningSince += MicrosecondsFor(frames, MicroFramesPerSecond(*Setup)) * 1000;
    AddGap(HeardBefore, frames, kind);
    ArmForNext();
}

void SourceFeed::SetDrift(int64_t millionths) {
    if (Setup == nullptr) return;
    CountHeard();
    Setup->DriftMillionths = millionths;
    ArmForNext();
}

const WaveInDevice& SourceFeed::Device() const {
    static const WaveInDevice none;
    return Setup == nullptr ? none : Setup->Device;
}

SourceMedia SourceFeed::NowPlaying() const {
    return Setup == nullptr ? SourceMedia{} : Setup->Source->NowPlaying();
}

uint64_t SourceFeed::SourceFrameOf(uint64_t delivered) const {
    uint64_t frame = delivered;
    for (const FeedGap& gap : LostParts) {
        if (gap.At > delivered) break;
        frame += gap.Frames;
    }
    return frame;
}

void SourceFeed::Arm(std::chrono::milliseconds delay) {
    if (Timer->Active() && delay == TimerInterval) return;
    TimerInterval = delay;
    Timer->Start(delay, TimerPrecision::Precise);
}

/// Sets the timer to the moment when the next buffer is full. A polled feed needs no timer, and neither does
/// one without a buffer to fill.
void SourceFeed::ArmForNext() {
    if (Setup == nullptr || Polled() || !Delivering() || Interrupted || Queued.Size() == 0) {
        Timer->Stop();
        return;
    }
    const uint64_t wanted = DeliveredFrames + FramesOfNext();
    if (wanted <= HeardBefore) return Arm(std::chrono::milliseconds(1));
    const int64_t due =
        RunningSince + MicrosecondsFor(wanted - HeardBefore, MicroFramesPerSecond(*Setup)) * 1000;
    const int64_t wait = due - Time.MonotonicNanoseconds();
    Arm(std::chrono::milliseconds(std::max<int64_t>((wait + Million - 1) / Million, 1)));
}

}  // namespace Corvetape
