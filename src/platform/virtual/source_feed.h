#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/sound_source.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// Frames of a source that were never delivered.
struct FeedGap {
    uint64_t At = 0;      ///< frames delivered before the gap
    uint64_t Frames = 0;  ///< frames left out
    WaveInIncidentKind Kind = WaveInIncidentKind::Overrun;

    bool operator==(const FeedGap&) const = default;
};

/// What a feed is opened with.
struct FeedSetup {
    std::unique_ptr<SoundSource> Source;
    WaveInDevice Device;
    uint32_t FramesPerSecond = 44100;
    BufferReturn Mode = BufferReturn::Loop;
    WaveInEvents Events;
    int64_t DriftMillionths = 0;  ///< how much faster than the clock the device's own clock runs
    uint64_t QueueLimitFrames =
        std::numeric_limits<uint64_t>::max();  ///< what the device keeps for a slow owner
    std::string LossReason;  ///< what a sound server says of whatever is lost; empty for nothing
};

/// Turns a sound source into the input of a device: a buffer is due when the clock says that its frames have
/// been heard. Frames that are due and have no buffer yet stay in the source, so a late owner loses nothing.
/// The source writes straight into the owner's samples, and nothing is allocated per buffer.
///
/// A feed outlives what it posts to the loop; after Close it can be opened anew.
class SourceFeed {
 public:
    SourceFeed(Clock& clock, EventLoop& loop);
    SourceFeed(const SourceFeed&) = delete;
    SourceFeed& operator=(const SourceFeed&) = delete;

    void Open(FeedSetup setup);
    void Close();
    bool IsOpen() const { return Setup != nullptr; }

    void AddBuffer(WaveHeader& header);
    bool Start();
    void Reset();
    void Deliver();

    /// From now on nothing is heard of the device. With `report` its owner learns that it is gone.
    enum class Report { No, Yes };
    void Interrupt(Report report);

    /// The device is there again; what it would have delivered meanwhile is lost and reported as `kind`.
    void Resume(WaveInIncidentKind kind);

    /// Nothing is delivered until Release, then everything: a server or a driver that stands still.
    void Hold();
    void Release();

    /// The device drops what it hears next, `frames` of it. Reported when the buffers before it are
    /// delivered, as every loss: in the polling modes from Deliver.
    void Lose(uint64_t frames, WaveInIncidentKind kind);

    /// Changes the device's own clock from now on.
    void SetDrift(int64_t millionths);

    const WaveInDevice& Device() const;
    SourceMedia NowPlaying() const;

    /// Frames delivered since the feed was opened, without what was lost.
    uint64_t Delivered() const { return DeliveredFrames; }
    const std::vector<FeedGap>& Gaps() const { return LostParts; }

    /// The frame of the source that is at `delivered` in what the owner got.
    uint64_t SourceFrameOf(uint64_t delivered) const;

 private:
    /// Buffers in the order in which they came; grows, but never shrinks.
    class HeaderQueue {
     public:
        void Push(WaveHeader& header);
        WaveHeader& Front() const { return *Items[First]; }
        void Pop();
        void Clear() { Count = 0; }
        size_t Size() const { return Count; }

     private:
        std::vector<WaveHeader*> Items;
        size_t First = 0;
        size_t Count = 0;
    };

    bool Polled() const;
    bool Delivering() const { return Started && !Held && !EndReached; }

    /// Frames that should have been delivered by now, without lost ones.
    uint64_t Heard() const;
    uint64_t HeardIn(int64_t nanoseconds) const;
    void CountHeard();

    uint64_t FramesOfNext() const;
    bool NextIsDue() const;
    bool FillNext();
    void Tick();
    void HandOver();
    bool GapIsNext() const;
    void ReportGap(const FeedGap& gap);
    void PostGaps();
    void ReportGaps();
    void AddGap(uint64_t at, uint64_t frames, WaveInIncidentKind kind);
    void ApplyQueueLimit();
    void PostAvailability(bool lost);
    void ReportEnd();
    void Arm(std::chrono::milliseconds delay);
    void ArmForNext();
    template <typename News>
    void PostEvent(News news);

    Clock& Time;
    EventLoop& Loop;
    std::unique_ptr<LoopTimer> Timer;
    std::chrono::milliseconds TimerInterval{0};

    std::shared_ptr<FeedSetup> Setup;  ///< kept by an event that is being reported
    uint64_t Generation = 0;           ///< counts up when what was posted becomes void
    HeaderQueue Queued;
    HeaderQueue Filled;  ///< the hand-over is posted

    bool Started = false;
    bool Held = false;
    bool Interrupted = false;
    bool ReportedGone = false;
    bool EndReached = false;
    int64_t RunningSince = 0;  ///< monotonic nanoseconds; of an interruption, its beginning
    uint64_t HeardBefore = 0;  ///< frames heard before RunningSince
    uint64_t DeliveredFrames = 0;
    std::vector<FeedGap> LostParts;
    size_t NextGap = 0;       ///< the first one that is not yet passed over
    size_t NextToReport = 0;  ///< the first one that its owner does not know yet
};

}  // namespace Corvetape
