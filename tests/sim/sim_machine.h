#pragma once

#include <cstdint>
#include <memory>

#include "platform/machine.h"
#include "platform/virtual/sim_clock.h"
#include "platform/virtual/sim_loop.h"
#include "sim/sim_desktop.h"
#include "sim/sim_dialogs.h"
#include "sim/sim_files.h"
#include "sim/sim_folders.h"
#include "sim/sim_mixer.h"
#include "sim/sim_processes.h"
#include "sim/sim_system.h"
#include "sim/sim_wave_in.h"

namespace Corvetape {

/// What a simulated machine starts with.
struct SimMachineOptions {
    DateTime WallTime = SimClock::DefaultWallTime;
    int64_t MonotonicNanoseconds = 0;
    uint64_t Seed = 1;
    std::shared_ptr<InstancePlace> Place;  ///< none: a place of its own
};

/// A whole simulated machine. A slow disk moves its time. The home of the user, /home/user, and the program
/// folder are there. Two machines know nothing of each other, unless they share a place.
class SimMachine {
 public:
    explicit SimMachine(SimMachineOptions options = {});

    Machine Get();

    SimClock Clock;
    SimLoop Loop;
    SimWaveIn WaveIn;
    SimMixer Mixer;
    SimFiles Files;
    SimProcesses Processes;
    SimFolders Folders;
    SimDialogs Dialogs;
    SimSystemInfo System;
    SimDesktop Desktop;
};

}  // namespace Corvetape
