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
    explicit FrameQueue(size_t capacity) : ring(capacity) {}

    /// Writing thread: appends what there is room for and returns how many frames that were.
    size_t Push(std::span<const Frame> frames) {
        const uint64_t begin = written.load(std::memory_order_relaxed);
        const auto room = static_cast<size_t>(ring.size() - (begin - taken.load(std::memory_order_acquire)));
        const size_t count = std::min(room, frames.size());
        const auto place = static_cast<size_t>(begin % ring.size());
        const size_t straight = std::min(count, ring.size() - place);
        std::copy_n(frames.begin(), straight, ring.begin() + static_cast<std::ptrdiff_t>(place));
        std::copy_n(frames.begin() + static_cast<std::ptrdiff_t>(straight), count - straight, ring.begin());
        written.store(begin + count, std::memory_order_release);
        return count;
    }

    /// Reading thread: takes the oldest frames. There must be that many.
    void Pop(std::span<Frame> frames) {
        const uint64_t begin = taken.load(std::memory_order_relaxed);
        const auto place = static_cast<size_t>(begin % ring.size());
        const size_t straight = std::min(frames.size(), ring.size() - place);
        std::copy_n(ring.begin() + static_cast<std::ptrdiff_t>(place), straight, frames.begin());
        std::copy_n(ring.begin(), frames.size() - straight,
                    frames.begin() + static_cast<std::ptrdiff_t>(straight));
        taken.store(begin + frames.size(), std::memory_order_release);
    }

    /// Reading thread: forgets everything.
    void Clear() { taken.store(written.load(std::memory_order_acquire), std::memory_order_release); }

    uint64_t Written() const { return written.load(std::memory_order_acquire); }
    uint64_t Taken() const { return taken.load(std::memory_order_acquire); }
    size_t Available() const {
        const uint64_t begin = Taken();  // first, so that the difference cannot become negative
        return static_cast<size_t>(Written() - begin);
    }

 private:
    std::vector<Frame> ring;
    alignas(64) std::atomic<uint64_t> written{0};
    alignas(64) std::atomic<uint64_t> taken{0};
};

}  // namespace Corvetape
