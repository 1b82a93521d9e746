#pragma once

#include "cli/arguments.h"

namespace Corvetape {

/// The commands. Each prints what it has to say and returns the exit code.
int RunDevices(const DevicesArguments& arguments);
int RunMixer(const MixerArguments& arguments);
int RunProfiles(const ProfilesArguments& arguments);
int RunRecord(const RecordArguments& arguments);
int RunRecut(const RecutArguments& arguments);
int RunSplit(const SplitArguments& arguments);

}  // namespace Corvetape
