#pragma once

#include "platform/linux/files/linux_files.h"

namespace Corvetape {

/// The files of this machine, for work that can be done again: what is written to a file opened by Create is
/// collected and reaches it a little later, from a thread of its own, in large pieces and in order. Whoever
/// makes the data does not wait for the disk that way.
///
/// A failure is reported by the next Write or Seek, at the latest by Close; from then on all of them fail.
/// Until Close has returned, the file may be behind, so it is not to be looked at by its path. At most 1.5
/// MiB of a file wait.
class WriteBehindFiles : public LinuxFiles {
 public:
    Opened<File> Create(const std::string& path) override;
    Opened<File> CreateNew(const std::string& path) override;
};

}  // namespace Corvetape
