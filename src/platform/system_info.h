#pragma once

#include <cstdint>
#include <string>

namespace Corvetape {

/// The version record of the system. Platform 2 is the NT family, 1 the older one; others are neither.
struct SystemVersion {
    uint32_t Platform = 0;
    uint32_t Major = 0;
    uint32_t Minor = 0;
    uint32_t Build = 0;
};

class SystemInfo {
 public:
    virtual ~SystemInfo() = default;

    virtual SystemVersion Version() = 0;

    /// True where a program can be started again with the rights of an administrator.
    virtual bool RestartsElevated() { return false; }

    /// A number to begin a sequence of random numbers with.
    virtual uint64_t RandomSeed() = 0;

    /// A name for this run of the program that no other process of this machine has or had.
    virtual std::string RunName() = 0;

    /// True while the process of that name runs.
    virtual bool RunIsAlive(const std::string& runName) = 0;

    /// Raises the priority of the process and of the calling thread where that is granted; silently
    /// leaves it as it is otherwise.
    virtual void RaisePriority() = 0;
};

}  // namespace Corvetape
