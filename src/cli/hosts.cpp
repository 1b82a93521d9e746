#include "cli/hosts.h"

#include <cstdio>

namespace Corvetape {

HostParts::HostParts(const std::string& home)
    : Folders(home.empty() ? std::make_unique<LinuxFolders>() : std::make_unique<LinuxFolders>(home)),
      Dialogs(stderr) {}

VirtualHost::VirtualHost(const std::string& home)
    : HostParts(home), Clock(LinuxClock().LocalNow()), Loop(Clock) {}

Machine VirtualHost::With(WaveIn& inputs) {
    return With(inputs, Files);
}

Machine VirtualHost::With(WaveIn& inputs, Corvetape::Files& files) {
    return {Clock, Loop, inputs, Mixer, files, Processes, *Folders, Dialogs, System, Desktop};
}

}  // namespace Corvetape
