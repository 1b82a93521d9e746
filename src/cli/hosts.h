#pragma once

#include <memory>
#include <string>

#include "platform/desktop.h"
#include "platform/linux/desktop/console_dialogs.h"
#include "platform/linux/files/linux_files.h"
#include "platform/linux/files/linux_folders.h"
#include "platform/linux/loop/linux_clock.h"
#include "platform/linux/processes/linux_processes.h"
#include "platform/linux/processes/linux_system.h"
#include "platform/machine.h"
#include "platform/mixer.h"
#include "platform/virtual/sim_clock.h"
#include "platform/virtual/sim_loop.h"
#include "platform/virtual/source_wave_in.h"

namespace Corvetape {

/// What both kinds of run have of the real machine. Boxes become lines on the error output.
class HostParts {
 public:
    /// An empty `home` means the user's own folders.
    explicit HostParts(const std::string& home);

    LinuxFiles Files;
    LinuxProcesses Processes;
    std::unique_ptr<LinuxFolders> Folders;
    ConsoleDialogs Dialogs;
    NoMixer Mixer;  ///< that of the user stays as it is
    LinuxSystemInfo System;
    LinuxClock Wall;             ///< stamps the log, whatever time the machine runs by
    Corvetape::Desktop Desktop;  ///< none: any number of command lines may run side by side
};

/// Real files and programs on virtual time: for inputs that need no clock of their own.
class VirtualHost : public HostParts {
 public:
    explicit VirtualHost(const std::string& home);

    /// The machine with these inputs, which run by its clock and its loop.
    Machine With(WaveIn& inputs);

    /// The same with other files than its own.
    Machine With(WaveIn& inputs, Corvetape::Files& files);

    SimClock Clock;  ///< starts at the present wall clock
    SimLoop Loop;
};

}  // namespace Corvetape
