#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/wave_in.h"

namespace Corvetape {

/// Frames on their way from one writing to one reading thread. Neither ever waits, and all memory is taken
/// and touched at the beginning. Positions count all frames since then.
class FrameQueue {
 public:
    /// Holds `capacity` frames, at least 1.
    explicit FrameQueue(size_t capacity) : Ring(capacity) {}

    /// Writing thread: appends what there is room for and returns how many frames that were.
    size_t Push(std::span<const Frame> frames) {
        const uint64_t begin = WrittenFrames.load(std::memory_order_relaxed);
        const auto room =
            static_cast<size_t>(Ring.size() - (begin - TakenFrames.load(std::memory_order_acquire)));
        const size_t count = std::min(room, frames.size());
        const auto place = static_cast<size_t>(begin % Ring.size());
        const size_t straight = std::min(count, Ring.size() - place);
        std::copy_n(frames.begin(), straight, Ring.begin() + static_cast<std::ptrdiff_t>(place));
        std::copy_n(frames.begin() + static_cast<std::ptrdiff_t>(straight), count - straight, Ring.begin());
        WrittenFrames.store(begin + count, std::memory_order_release);
        return count;
    }

    /// Reading thread: takes the oldest frames. There must be that many.
    void Pop(std::span<Frame> frames) {
        const uint64_t begin = TakenFrames.load(std::memory_order_relaxed);
        const auto place = static_cast<size_t>(begin % Ring.size());
        const size_t straight = std::min(frames.size(), Ring.size() - place);
        std::copy_n(Ring.begin() + static_cast<std::ptrdiff_t>(place), straight, frames.begin());
        std::copy_n(Ring.begin(), frames.size() - straight,
                    frames.begin() + static_cast<std::ptrdiff_t>(straight));
        TakenFrames.store(begin + frames.size(), std::memory_order_release);
    }

    /// Reading thread: forgets everything.
    void Clear() {
        TakenFrames.store(WrittenFrames.load(std::memory_order_acquire), std::memory_order_release);
    }

    uint64_t Written() const { return WrittenFrames.load(std::memory_order_acquire); }
    uint64_t Taken() const { return TakenFrames.load(std::memory_order_acquire); }
    size_t Available() const {
        const uint64_t begin = Taken();  // first, so that the difference cannot become negative
        return static_cast<size_t>(Written() - begin);
    }

 private:
    std::vector<Frame> Ring;
    alignas(64) std::atomic<uint64_t> WrittenFrames{0};
    alignas(64) std::atomic<uint64_t> TakenFrames{0};
};

}  // namespace Corvetape
