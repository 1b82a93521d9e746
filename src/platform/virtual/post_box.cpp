#include "platform/virtual/post_box.h"

#include <utility>

namespace Corvetape {

void PostBox::Put(std::function<void()> work) {
    const std::lock_guard lock(Guard);
    Incoming.push_back(std::move(work));
    Waiting.store(true, std::memory_order_release);
}

// The two lists change places, so that in the long run no list allocates.
std::function<void()> PostBox::Take() {
    if (Next == Taken.size()) {
        if (!Waiting.load(std::memory_order_acquire)) return {};
        Taken.clear();
        Next = 0;
        const std::lock_guard lock(Guard);
        Taken.swap(Incoming);
        Waiting.store(false, std::memory_order_release);
    }
    return std::exchange(Taken[Next++], {});
}

}  // namespace Corvetape
