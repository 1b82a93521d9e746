#pragma once

#include "platform/system_info.h"

namespace Corvetape {

/// The name of a process of this machine as a run; empty if there is none of this number.
std::string RunNameOf(int process);

class LinuxSystemInfo : public SystemInfo {
 public:
    /// Platform 2, version 6.0: the record of a system on which every input is a device of its own, which
    /// is what the logic reads from it.
    SystemVersion Version() override;

    uint64_t RandomSeed() override;

    /// Process number and the time of its start, since numbers are used again.
    std::string RunName() override;
    bool RunIsAlive(const std::string& runName) override;

    /// Asks for nice -10, from the kernel and, where that refuses, from RealtimeKit on the system bus,
    /// whose answer is not waited for.
    void RaisePriority() override;
};

}  // namespace Corvetape
