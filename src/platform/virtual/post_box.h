#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

namespace Corvetape {

/// Work handed over from any thread, taken out by one thread in the order in which it was put in. Asking an
/// empty box costs one atomic read.
class PostBox {
 public:
    /// From any thread.
    void Put(std::function<void()> work);

    /// The oldest work, an empty function if there is none. On the owner's thread only.
    std::function<void()> Take();

    bool Empty() const { return Next == Taken.size() && !Waiting.load(std::memory_order_acquire); }

 private:
    std::mutex Guard;
    std::vector<std::function<void()>> Incoming;  ///< guarded by Guard
    std::atomic<bool> Waiting = false;            ///< Incoming holds something

    std::vector<std::function<void()>> Taken;  ///< the owner's portion, used up from Next on
    size_t Next = 0;
};

}  // namespace Corvetape
