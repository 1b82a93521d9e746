#pragma once

#include <map>
#include <string>

#include "platform/files.h"
#include "platform/mixer.h"

namespace Corvetape {

/// What the user had set on the inputs before a search changes them. It is kept in a file as well, so that
/// the next start can put it back if the program is gone in the middle of the search.
///
/// Devices are known by their names, as the machine may have others by then.
class MixerRescue {
 public:
    /// Both outlive it. The folder of the file is there when it is used.
    MixerRescue(Mixer& mixer, Files& files, std::string path);

    /// Remembers all controls of the lines that feed wave-in. Without the file, if it cannot be written. What
    /// is still kept from an earlier search is put back first.
    void Keep();

    /// The search has come to its end: what it has set stays.
    void Forget();

    /// Sets the inputs as they were and forgets it; also for a run before this one, whose file is still
    /// there. False if nothing is kept, and nothing happens on a machine without mixers.
    bool PutBack();

 private:
    using Values = std::map<std::string, int32_t>;       // by control
    using DeviceValues = std::map<std::string, Values>;  // by section of the device in the file

    void ReadFile();

    Mixer& Devices;
    Files& Disk;
    std::string Path;
    DeviceValues Kept;
};

}  // namespace Corvetape
