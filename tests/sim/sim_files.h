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

    Opened<File> Create(const std::string& path) override;
    Opened<File> CreateNew(const std::string& path) override;
    FileOr<std::string> ReadAll(const std::string& path, uint64_t limit) override;
    FileOr<std::string> ReadPart(const std::string& path, uint64_t offset, size_t count) override;
    FileResult Patch(const std::string& path, uint64_t offset, std::string_view bytes) override;
    FileResult ReplaceAtomically(const std::string& path, std::string_view content) override;
    FileResult Append(const std::string& path, std::string_view content) override;
    FileResult Rename(const std::string& from, const std::string& to) override;
    FileResult Copy(const std::string& from, const std::string& to) override;
    FileResult Delete(const std::string& path) override;
    FileResult MakeFolder(const std::string& path) override;
    FileResult DeleteFolder(const std::string& path) override;
    bool IsFolder(const std::string& path) override;
    FileOr<uint64_t> FileSize(const std::string& path) override;
    std::vector<FileEntry> List(const std::string& folder) override;
    bool SameFile(const std::string& one, const std::string& other) override;
    bool SameDrive(const std::string& one, const std::string& other) override;
    FileOr<uint64_t> FreeSpace(const std::string& folder) override;

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

    /// Counts an operation. Fails if it is to fail.
    FileResult Pass(FileOperation operation, const std::string& path);

    /// The file at a normal path, or why there is none for this operation: a fault, a folder, nothing.
    struct Found {
        const SimDisk::Node* Node = nullptr;
        FileResult Failure;
    };
    Found FindFile(FileOperation operation, const std::string& path);
    void Note(FileOperation operation, std::string_view path, std::string_view content = {});

    SimDisk Disk;
    SimFaults Faults;
    ContentHash History;
    std::vector<SimFile*> OpenFiles;  ///< entered and left by the files themselves
    std::function<void(const std::string&)> OnSync;
};

}  // namespace Corvetape
