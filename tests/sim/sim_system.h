#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "platform/system_info.h"

namespace Corvetape {

class SimSystemInfo : public SystemInfo {
 public:
    explicit SimSystemInfo(uint64_t seed) : Seed(seed) {}

    SystemVersion Version() override { return VersionRecord; }
    bool RestartsElevated() override { return Elevates; }
    uint64_t RandomSeed() override { return Seed; }
    std::string RunName() override { return OwnRun; }
    bool RunIsAlive(const std::string& runName) override { return AliveRuns.contains(runName); }
    void RaisePriority() override { ++PriorityRaises; }

    SystemVersion VersionRecord = {2, 10, 0, 19045};
    bool Elevates = true;
    uint64_t Seed;
    size_t PriorityRaises = 0;
    std::string OwnRun = "run-1";
    std::set<std::string> AliveRuns = {"run-1"};  ///< runs whose processes have not ended
};

}  // namespace Corvetape
