#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/linux/sound/frame_queue.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// Something that the capture thread has to say besides frames.
struct CaptureNotice {
    enum class What { Lost, Back, Incident };
    What Said = What::Incident;
    WaveInIncidentKind Kind = WaveInIncidentKind::Overrun;
    uint64_t LostFrames = 0;
    uint64_t Position = 0;  ///< frames that were queued before it
    int Error = 0;          ///< the sound server's number of the reason; 0 if it gave none
};

/// What leads from the capture thread to the logic thread: the frames without a lock, and the few notices
/// with one.
class CaptureRoad {
 public:
    explicit CaptureRoad(size_t capacity) : Frames(capacity) {}

    FrameQueue Frames;

    /// Frames are wanted. Before, the capture thread throws them away.
    std::atomic<bool> Open{false};

    void Say(CaptureNotice notice) {
        notice.Position = Frames.Written();
        const std::lock_guard guard(Lock);
        Notices.push_back(notice);
        Waiting.store(Notices.size(), std::memory_order_release);
    }

    bool AnyNotice() const { return Waiting.load(std::memory_order_acquire) > 0; }

    /// The oldest notice whose place is before the end of the next `frames` frames, or nothing.
    std::optional<CaptureNotice> NoticeWithin(size_t frames) {
        if (!AnyNotice()) return std::nullopt;
        const std::lock_guard guard(Lock);
        if (Notices.empty() || Notices.front().Position >= Frames.Taken() + frames) return std::nullopt;
        const CaptureNotice notice = Notices.front();
        Notices.erase(Notices.begin());
        Waiting.store(Notices.size(), std::memory_order_release);
        return notice;
    }

    /// Logic thread, with the capture thread at rest: forgets everything.
    void Clear() {
        Frames.Clear();
        const std::lock_guard guard(Lock);
        Notices.clear();
        Waiting.store(0, std::memory_order_release);
    }

 private:
    std::mutex Lock;
    std::vector<CaptureNotice> Notices;
    std::atomic<size_t> Waiting{0};
};

}  // namespace Corvetape
