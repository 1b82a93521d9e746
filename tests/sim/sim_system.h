#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
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

/// The one place that the programs of a user compete for. Share it between machines to run two programs.
struct InstancePlace {
    const void* Holder = nullptr;
    size_t Activations = 0;  ///< how often the holder was asked to come to the front
};

class SimSingleInstance : public SingleInstance {
 public:
    explicit SimSingleInstance(std::shared_ptr<InstancePlace> place) : Place(std::move(place)) {}
    ~SimSingleInstance() override;
    SimSingleInstance(const SimSingleInstance&) = delete;
    SimSingleInstance& operator=(const SimSingleInstance&) = delete;

    bool Claim() override;
    void ActivateOther() override;

 private:
    std::shared_ptr<InstancePlace> Place;
};

}  // namespace Corvetape
