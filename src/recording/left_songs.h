#pragma once

#include <string>
#include <vector>

#include "core/reporter.h"
#include "core/settings/settings.h"
#include "platform/machine.h"
#include "post/transfer/transfer_job.h"

namespace Corvetape {

/// Looks after the songs that earlier runs have left because they ended before their songs did: a few
/// every second, beside the recording.
class LeftSongs {
 public:
    /// All of them, and the machine's parts, outlive it.
    LeftSongs(const Machine& machine, const WorkingFolders& folders, TransferJob& transfer, SongNotes& notes,
              Reporter& say);

    /// Looks for the songs, once, at the start of the program.
    void Find();

    /// Hands on, deletes or leaves the next ones.
    void Recover();

 private:
    bool Recover(const LeftSong& song);

    Machine Computer;
    const WorkingFolders& Folders;
    TransferJob& Transfer;
    SongNotes& Notes;
    Reporter& Say;
    std::vector<std::string> Names;  ///< of songs that may be of earlier runs, the first last
    bool Cleared = false;            ///< what they have left beside their songs was looked for
};

}  // namespace Corvetape
