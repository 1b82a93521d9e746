#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "sim/content_hash.h"
#include "sim/sim_disk.h"
#include "sim/sim_faults.h"

namespace Corvetape {

class SimFile;

/// A disk in memory. It can have several volumes with room of their own, fail at chosen operations, be slow
/// and be looked at as a crash would leave it. Errors are numbered as errno does: ENOENT without a file,
/// ENOSPC without room, EXDEV for a rename to another volume. A file that is deleted or replaced while
/// somebody writes it goes on without a name until it is closed.
///
/// Operations of the Files interface count and can fail; the functions of this class do neither.
class SimFiles : public Files {
 public:
    SimFiles();
    ~SimFiles() override;
    SimFiles(const SimFiles&) = delete;
    SimFiles& operator=(const SimFiles&) = delete;

    std::unique_ptr<File> Create(const std::string& path) override;
    std::unique_ptr<File> CreateNew(const std::string& path) override;
    std::optional<std::string> ReadAll(const std::string& path, uint64_t limit) override;
    std::optional<std::string> ReadPart(const std::string& path, uint64_t offset, size_t count) override;
    bool Patch(const std::string& path, uint64_t offset, std::string_view bytes) override;
    bool ReplaceAtomically(const std::string& path, std::string_view content) override;
    bool Append(const std::string& path, std::string_view content) override;
    bool Rename(const std::string& from, const std::string& to) override;
    bool Copy(const std::string& from, const std::string& to) override;
    bool Delete(const std::string& path) override;
    bool MakeFolder(const std::string& path) override;
    bool DeleteFolder(const std::string& path) override;
    bool IsFolder(const std::string& path) override;
    std::optional<uint64_t> FileSize(const std::string& path) override;
    std::vector<FileEntry> List(const std::string& folder) override;
    bool SameFile(const std::string& one, const std::string& other) override;
    bool SameDrive(const std::string& one, const std::string& other) override;
    std::optional<uint64_t> FreeSpace(const std::string& folder) override;
    int32_t LastError() const override { return Error; }

    /// Puts a volume of its own at a folder, which is made if it is missing.
    void Mount(const std::string& path, uint64_t capacity);

    /// Sets the room on the volume of a path: as a whole, or what is left of it now.
    void SetCapacity(const std::string& path, uint64_t bytes);
    void SetFreeSpace(const std::string& path, uint64_t bytes);

    /// A volume that is taken out fails every operation with EIO; put back, it holds what it held.
    void TakeOut(const std::string& path);
    void PutBack(const std::string& path);

    /// Rules for failing and slow operations, see FileFault. The number is for RemoveFault.
    size_t AddFault(FileFault fault) { return Faults.Add(std::move(fault)); }
    void RemoveFault(size_t fault) { Faults.Remove(fault); }
    void ClearFaults() { Faults.Clear(); }

    /// Lets the operation with this number fail once, counted from 1 on over the life of the disk: the means
    /// to let each operation of a run fail in turn. 0 for none.
    void FailOperation(uint64_t number, int32_t error = EIO) { Faults.FailNumber(number, error); }
    uint64_t OperationCount() const { return Faults.Count(); }
    const std::vector<std::string>& FailedOperations() const { return Faults.Struck(); }

    /// How a slow operation stands still.
    void DelayWith(std::function<void(std::chrono::milliseconds)> delay) {
        Faults.DelayWith(std::move(delay));
    }

    /// Gets the path of each file that is asked to be brought to the disk.
    void NoticeSyncs(std::function<void(const std::string& path)> notice) { OnSync = std::move(notice); }

    /// Paths of the files that are open for writing, as they were when opened.
    std::vector<std::string> OpenPaths() const;
    size_t OpenHandles() const { return OpenFiles.size(); }

    bool Exists(const std::string& path) const;
    std::optional<std::string> Content(const std::string& path) const;
    void VisitContent(const std::string& path,
                      const std::function<void(std::span<const std::byte>)>& visitor) const;

    /// Hash of a file's content (see ContentHash); nothing if there is none.
    std::optional<uint64_t> HashOfFile(const std::string& path) const;

    /// Writes a file, with the folders above it.
    void Put(const std::string& path, std::string_view content);
    void MakeFolders(const std::string& path);

    /// All paths below a folder, in the order of names; folders end with "/".
    std::vector<std::string> Tree(const std::string& folder = "/") const;

    /// Hash over every change of the disk so far, in order: two runs that wrote the same agree in it.
    uint64_t HistoryHash() const { return History.Value(); }

    /// What a crash at this moment would leave, and a disk made from it. Handles open before the restoring
    /// write to nowhere.
    SimDiskImage Snapshot() const { return Disk.Image(); }
    void Restore(const SimDiskImage& image);

 private:
    friend class SimFile;

    /// Counts an operation and sets the error if it is to fail.
    bool Passes(FileOperation operation, const std::string& path);

    /// True for the error 0; another one is kept.
    bool Done(int32_t error);
    const SimDisk::Node* FindFile(const std::string& path);
    void Note(FileOperation operation, std::string_view path, std::string_view content = {});

    SimDisk Disk;
    SimFaults Faults;
    ContentHash History;
    std::vector<SimFile*> OpenFiles;  ///< entered and left by the files themselves
    int32_t Error = 0;
    std::function<void(const std::string&)> OnSync;
};

}  // namespace Corvetape
