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

DiskSyncer::DiskSyncer(std::function<void(int)> syncCall) : Sync(std::move(syncCall)) {}

DiskSyncer::~DiskSyncer() {
    if (!Thread.joinable()) return;
    {
        const std::lock_guard guard(Lock);
        Ending = true;
    }
    Changed.notify_all();
    Thread.join();
}

void DiskSyncer::Add(int descriptor) {
    Descriptor own(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    if (!own) return;
    {
        const std::lock_guard guard(Lock);
        if (Waiting.size() == MostWaiting) return;
        Waiting.push_back(std::move(own));
    }
    Changed.notify_all();
    if (!Thread.joinable()) Thread = std::thread([this] { Run(); });
}

void DiskSyncer::Run() {
    LeaveSignalsToTheMainThread();
    std::unique_lock guard(Lock);
    for (;;) {
        Changed.wait(guard, [this] { return Ending || !Waiting.empty(); });
        if (Ending) return;
        Descriptor next = std::move(Waiting.front());
        Waiting.erase(Waiting.begin());
        guard.unlock();
        Sync(next.Number());
        next.Close();  // may take its time, too, if the file was deleted meanwhile
        guard.lock();
    }
}

}  // namespace Corvetape
