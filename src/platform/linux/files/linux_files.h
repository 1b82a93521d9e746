#pragma once

#include <memory>

#include "platform/files.h"
#include "platform/linux/files/disk_syncer.h"

namespace Corvetape {

/// The files of this machine. One thread uses an object of this class at a time.
///
/// Descriptors are not handed to processes that are started. Calls that a signal interrupts go on, and
/// short writes are completed.
class LinuxFiles : public Files {
 public:
    LinuxFiles();

    Opened<File> Create(const std::string& path) override;
    Opened<File> CreateNew(const std::string& path) override;
    FileOr<std::string> ReadAll(const std::string& path, uint64_t limit) override;
    FileOr<std::string> ReadPart(const std::string& path, uint64_t offset, size_t count) override;
    FileResult Patch(const std::string& path, uint64_t offset, std::string_view bytes) override;

    /// Writes a new file into the same folder, brings it to the disk, and puts it in the old one's place.
    /// A symbolic link stays one: the file that it leads to is replaced. Permissions are kept.
    FileResult ReplaceAtomically(const std::string& path, std::string_view content) override;

    FileResult ReplaceQuickly(const std::string& path, std::string_view content) override;
    FileResult Append(const std::string& path, std::string_view content) override;

    /// Between two disks the file is copied, brought to the disk, and then deleted at its old place.
    FileResult Rename(const std::string& from, const std::string& to) override;

    /// The copy appears in full or not at all. A file copied to itself stays as it is.
    FileResult Copy(const std::string& from, const std::string& to) override;

    FileResult Link(const std::string& from, const std::string& to) override;

    FileResult Delete(const std::string& path) override;
    FileResult MakeFolder(const std::string& path) override;
    FileResult DeleteFolder(const std::string& path) override;
    bool IsFolder(const std::string& path) override;
    FileOr<uint64_t> FileSize(const std::string& path) override;
    std::vector<FileEntry> List(const std::string& folder) override;
    bool SameFile(const std::string& one, const std::string& other) override;
    bool SameDrive(const std::string& one, const std::string& other) override;
    std::unique_ptr<FileLock> Lock(const std::string& path) override;
    FileOr<uint64_t> FreeSpace(const std::string& folder) override;

 private:
    std::shared_ptr<DiskSyncer> Syncer;
};

}  // namespace Corvetape
