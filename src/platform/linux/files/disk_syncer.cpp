#include "platform/linux/files/disk_syncer.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "platform/linux/loop/thread_signals.h"

namespace Corvetape {

DiskSyncer::DiskSyncer()
    : DiskSyncer([](int descriptor) {
          // Nobody could do anything about a failure: the file is written on as it would be without this.
          static_cast<void>(fdatasync(descriptor));
      }) {}

DiskSyncer::DiskSyncer(std::function<void(int)> syncCall) : sync(std::move(syncCall)) {}

DiskSyncer::~DiskSyncer() {
    if (!thread.joinable()) return;
    {
        const std::lock_guard guard(lock);
        ending = true;
    }
    changed.notify_all();
    thread.join();
}

void DiskSyncer::Add(int descriptor) {
    Descriptor own(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    if (!own) return;
    {
        const std::lock_guard guard(lock);
        if (waiting.size() == MostWaiting) return;
        waiting.push_back(std::move(own));
    }
    changed.notify_all();
    if (!thread.joinable()) thread = std::thread([this] { Run(); });
}

void DiskSyncer::Run() {
    LeaveSignalsToTheMainThread();
    std::unique_lock guard(lock);
    for (;;) {
        changed.wait(guard, [this] { return ending || !waiting.empty(); });
        if (ending) return;
        Descriptor next = std::move(waiting.front());
        waiting.erase(waiting.begin());
        guard.unlock();
        sync(next.Number());
        next.Close();  // may take its time, too, if the file was deleted meanwhile
        guard.lock();
    }
}

}  // namespace Corvetape
