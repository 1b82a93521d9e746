#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/files/descriptor.h"

namespace Corvetape {

/// Writes everything at the descriptor's position. False with errno if not all could be written.
bool WriteFully(int descriptor, std::string_view bytes);

/// A file in the making, which takes its place under its name in one step when it is complete. Until then
/// nobody sees it, and after a crash nothing of it is left where the disk can hold nameless files.
class NewFile {
 public:
    /// Begins a file that is to stand at `path`. A symbolic link is followed, so that it stays. Takes over
    /// the permissions of the file that stands there. Nothing on failure, with errno.
    static std::optional<NewFile> Begin(const std::string& path);

    NewFile(NewFile&&) = default;
    NewFile& operator=(NewFile&&) = delete;
    ~NewFile();

    int Number() const { return Content.Number(); }

    enum class Sync { Yes, No };

    /// Gives the content its name, and brings both to the disk first if wanted. False with errno; the old
    /// file stands as it was.
    bool TakePlace(Sync sync = Sync::Yes);

 private:
    NewFile() = default;
    bool Open();
    bool GiveName();

    Descriptor Content;
    Descriptor Folder;
    std::string FolderPath;
    std::string Name;           // of the finished file
    std::string TemporaryName;  // empty as long as the file has no name
    std::optional<mode_t> Mode;
};

}  // namespace Corvetape
