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

    std::unique_ptr<File> Create(const std::string& path) override;
    std::unique_ptr<File> CreateNew(const std::string& path) override;
    std::optional<std::string> ReadAll(const std::string& path, uint64_t limit) override;
    std::optional<std::string> ReadPart(const std::string& path, uint64_t offset, size_t count) override;
    bool Patch(const std::string& path, uint64_t offset, std::string_view bytes) override;

    /// Writes a new file into the same folder, brings it to the disk, and puts it in the old one's place.
    /// A symbolic link stays one: the file that it leads to is replaced. Permissions are kept.
    bool ReplaceAtomically(const std::string& path, std::string_view content) override;

    bool ReplaceQuickly(const std::string& path, std::string_view content) override;
    bool Append(const std::string& path, std::string_view content) override;

    /// Between two disks the file is copied, brought to the disk, and then deleted at its old place.
    bool Rename(const std::string& from, const std::string& to) override;

    /// The copy appears in full or not at all. A file copied to itself stays as it is.
    bool Copy(const std::string& from, const std::string& to) override;

    bool Link(const std::string& from, const std::string& to) override;

    bool Delete(const std::string& path) override;
    bool MakeFolder(const std::string& path) override;
    bool DeleteFolder(const std::string& path) override;
    bool IsFolder(const std::string& path) override;
    std::optional<uint64_t> FileSize(const std::string& path) override;
    std::vector<FileEntry> List(const std::string& folder) override;
    bool SameFile(const std::string& one, const std::string& other) override;
    bool SameDrive(const std::string& one, const std::string& other) override;
    std::unique_ptr<FileLock> Lock(const std::string& path) override;
    std::optional<uint64_t> FreeSpace(const std::string& folder) override;

    /// errno of the last failure, of these operations and of the files opened by Create.
    int32_t LastError() const override { return *ErrorNumber; }

 protected:
    /// Where files leave the number of their failures.
    const std::shared_ptr<int32_t>& ErrorPlace() const { return ErrorNumber; }

 private:
    bool Result(bool succeeded) const;  // keeps errno of a failure
    std::shared_ptr<int32_t> ErrorNumber;
    std::shared_ptr<DiskSyncer> Syncer;
};

}  // namespace Corvetape
