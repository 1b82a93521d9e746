#include "sim/sim_machine.h"

#include <utility>

namespace Corvetape {

SimMachine::SimMachine(SimMachineOptions options)
    : Clock(options.WallTime, options.MonotonicNanoseconds),
      Loop(Clock),
      WaveIn(Clock, Loop),
      Processes(Clock, Loop),
      Folders(Files),
      System(options.Seed),
      Desktop(options.Place != nullptr ? std::move(options.Place) : std::make_shared<InstancePlace>()) {
    Files.DelayWith([this](std::chrono::milliseconds delay) { Loop.Sleep(delay); });
    Processes.OnRun = [this](const std::string& run, bool alive) {
        if (alive) {
            System.AliveRuns.insert(run);
        } else {
            System.AliveRuns.erase(run);
        }
    };
    Files.MakeFolders("/home/user/.cache");
    Files.MakeFolders("/home/user/.config");
    Files.MakeFolders(Folders.Program);
}

Machine SimMachine::Get() {
    return {Clock, Loop, WaveIn, Mixer, Files, Processes, Folders, Dialogs, System, Desktop};
}

}  // namespace Corvetape
