#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Corvetape {

/// Memory for contents of files, in pieces of one size. What a deleted file held is used again by the next,
/// last given first taken, so that song after song costs no fresh memory.
class ChunkPool {
 public:
    static constexpr size_t ChunkBytes = size_t{128} * 1024;
    using Chunk = std::unique_ptr<std::byte[]>;

    /// A piece of unknown content.
    Chunk Take();
    void Give(Chunk chunk) { Free.push_back(std::move(chunk)); }

    size_t FreeChunks() const { return Free.size(); }

 private:
    std::vector<Chunk> Free;
};

/// A disk of its own, standing at a folder.
struct SimVolume {
    std::string Path;
    uint64_t Capacity = std::numeric_limits<uint64_t>::max() / 4;
    uint64_t Used = 0;
    bool Present = true;

    uint64_t Free() const { return Used < Capacity ? Capacity - Used : 0; }
};

/// The content of a file. Lives as long as its name or somebody who writes it; then its space is free again.
class SimFileData {
 public:
    SimFileData(std::shared_ptr<ChunkPool> pool, std::shared_ptr<SimVolume> volume);
    ~SimFileData();
    SimFileData(const SimFileData&) = delete;
    SimFileData& operator=(const SimFileData&) = delete;

    uint64_t Size() const { return Bytes; }
    const std::shared_ptr<SimVolume>& Volume() const { return OwnVolume; }

    /// Writes at a position, which may be after the end, and returns how much found room on the volume.
    uint64_t Write(uint64_t position, std::span<const std::byte> bytes);
    void Clear();

    /// Leaves the first `size` bytes at most; what is taken away is free again.
    void CutBack(uint64_t size);

    /// Content from `offset` on, at most `count` bytes.
    std::string Text(uint64_t offset, uint64_t count) const;

    /// Gives the content piece by piece without copying it.
    void Visit(const std::function<void(std::span<const std::byte>)>& visitor) const;

 private:
    void Grow(uint64_t size, uint64_t written);
    void Put(uint64_t position, std::span<const std::byte> bytes);

    std::shared_ptr<ChunkPool> Pool;
    std::shared_ptr<SimVolume> OwnVolume;
    std::vector<ChunkPool::Chunk> Chunks;
    uint64_t Bytes = 0;
};

/// Everything on a disk at one moment.
struct SimDiskImage {
    std::map<std::string, std::optional<std::string>> Entries;  ///< by path; folders have no content

    bool operator==(const SimDiskImage&) const = default;
};

/// Folders and files in memory, on one or more volumes. Paths are absolute; "." and ".." are resolved by
/// their text alone. Knows nothing of faults.
class SimDisk {
 public:
    SimDisk();

    /// `path` as it is stored: from the root, without a slash at its end, empty parts, "." and "..".
    static std::string Normal(std::string_view path);
    static std::string ParentOf(const std::string& normal);

    struct Node {
        std::shared_ptr<SimFileData> Data;  ///< none for a folder
        bool IsFolder() const { return Data == nullptr; }
    };
    const std::map<std::string, Node>& Nodes() const { return AllNodes; }
    const Node* Find(const std::string& normal) const;

    /// The functions below return 0 or the number of the error. Paths are normal ones.
    int32_t CheckParent(const std::string& path) const;
    int32_t MakeFolder(const std::string& path);
    int32_t DeleteFolder(const std::string& path);
    int32_t Delete(const std::string& path);
    int32_t Rename(const std::string& from, const std::string& to);

    /// A file's content, or none with the number of the error.
    struct Created {
        std::shared_ptr<SimFileData> Data;
        int32_t Error = 0;
    };

    /// Makes a file, or empties the one that stands there.
    Created Create(const std::string& path);

    /// Content without a name, for the volume of `path`.
    std::shared_ptr<SimFileData> NewData(const std::string& path) const;

    /// Gives content its name, taking it away from what had it. The parent is there.
    void Attach(const std::string& path, std::shared_ptr<SimFileData> data);

    /// Takes everything from the disk; the volumes stay.
    void Clear();

    /// The volume that a path is on.
    const std::shared_ptr<SimVolume>& VolumeOf(const std::string& path) const;
    void AddVolume(const std::string& path, uint64_t capacity);

    SimDiskImage Image() const;

 private:
    std::shared_ptr<ChunkPool> Pool;
    std::vector<std::shared_ptr<SimVolume>> Volumes;  ///< the root's first
    std::map<std::string, Node> AllNodes;
};

}  // namespace Corvetape
