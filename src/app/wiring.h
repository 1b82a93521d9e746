#pragma once

#include <string>
#include <vector>

#include "audio/capture.h"
#include "audio/route.h"
#include "audio/song_writer.h"
#include "media/provider_adoption.h"
#include "media/provider_choice.h"
#include "mixer/input_list.h"
#include "platform/machine.h"
#include "post/transfer/transfer_job.h"
#include "recording/disk_check.h"
#include "recording/media_poll.h"
#include "recording/session.h"
#include "recording/supervisor.h"

namespace Corvetape {

struct ProgramParts;

/// How the parts of a program reach one another. Each gives what one part asks of others; the results hold
/// references into `parts`, which need not be complete yet.
std::string UserRegistryFile(Machine machine);
std::string MachineRegistryFile(Machine machine);

/// Where what was learned of sources is kept.
std::string LearnedCutsFolder(Machine machine);
CaptureEvents CaptureEventsOf(ProgramParts& parts);
SongPlace SongPlaceOf(ProgramParts& parts);
SongEvents SongEventsOf(ProgramParts& parts);
AdoptionActions AdoptionActionsOf(ProgramParts& parts);
ProviderHost ProviderHostOf(ProgramParts& parts);
std::vector<ProviderFactory> FactoriesOf(ProgramParts& parts);
TransferCallbacks TransferCallbacksOf(ProgramParts& parts);
DiskCheckActions DiskCheckActionsOf(ProgramParts& parts);
SessionActions SessionActionsOf(ProgramParts& parts);
MediaPollActions MediaPollActionsOf(ProgramParts& parts);
InputListActions InputListActionsOf(ProgramParts& parts);
SupervisorActions SupervisorActionsOf(ProgramParts& parts);

/// Writes the sound that waits in the ring into its song, because it will not be drained any more. What
/// nobody records is forgotten, or it would come up in a later song.
void EmptyRing(ProgramParts& parts);

/// Connects the handlers that belong to no single part. Called once all parts are there.
void AttachHandlers(ProgramParts& parts);

}  // namespace Corvetape
