#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/linux/files/descriptor.h"

namespace Corvetape {

/// Brings files to the disk from a thread of its own, which begins with the first of them. Whoever writes
/// does not wait.
class DiskSyncer {
 public:
    /// More files than these do not wait; a disk that takes so long is asked again soon enough.
    static constexpr size_t MostWaiting = 4;

    /// `sync` gets a descriptor; the usual one is fdatasync, which brings the length of a file along.
    DiskSyncer();
    explicit DiskSyncer(std::function<void(int descriptor)> sync);

    /// Waits for the file that is being brought to the disk and forgets the others.
    ~DiskSyncer();
    DiskSyncer(const DiskSyncer&) = delete;
    DiskSyncer& operator=(const DiskSyncer&) = delete;

    /// The file may be closed and deleted at once. Nothing happens for no open descriptor.
    void Add(int descriptor);

 private:
    void Run();

    const std::function<void(int)> Sync;
    std::mutex Lock;
    std::condition_variable Changed;
    std::vector<Descriptor> Waiting;
    bool Ending = false;
    std::thread Thread;
};

}  // namespace Corvetape
