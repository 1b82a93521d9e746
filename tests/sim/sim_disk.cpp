#include "sim/sim_disk.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace Corvetape {

namespace {

bool IsBelow(std::string_view path, std::string_view folder) {
    if (folder == "/") return true;
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

}  // namespace

ChunkPool::Chunk ChunkPool::Take() {
    if (Free.empty()) return std::make_unique_for_overwrite<std::byte[]>(ChunkBytes);
    Chunk chunk = std::move(Free.back());
    Free.pop_back();
    return chunk;
}

SimFileData::SimFileData(std::shared_ptr<ChunkPool> pool, std::shared_ptr<SimVolume> volume)
    : Pool(std::move(pool)), OwnVolume(std::move(volume)) {}

SimFileData::~SimFileData() {
    Clear();
}

void SimFileData::Clear() {
    // Backward, so that the next file takes the pieces in the order in which this one took them.
    while (!Chunks.empty()) {
        Pool->Give(std::move(Chunks.back()));
        Chunks.pop_back();
    }
    OwnVolume->Used -= Bytes;
    Bytes = 0;
}

void SimFileData::CutBack(uint64_t size) {
    if (size >= Bytes) return;
    OwnVolume->Used -= Bytes - size;
    Bytes = size;
    const uint64_t needed = (size + ChunkPool::ChunkBytes - 1) / ChunkPool::ChunkBytes;
    while (Chunks.size() > needed) {
        Pool->Give(std::move(Chunks.back()));
        Chunks.pop_back();
    }
}

uint64_t SimFileData::Write(uint64_t position, std::span<const std::byte> bytes) {
    const uint64_t most = Bytes + OwnVolume->Free();
    const uint64_t end = std::min(position + bytes.size(), most);
    if (end <= position) return 0;
    if (end > Bytes) Grow(end, position);
    const auto room = static_cast<size_t>(end - position);
    Put(position, bytes.first(room));
    return room;
}

/// Makes the file longer; what is between its old end and `written` becomes zeros.
void SimFileData::Grow(uint64_t size, uint64_t written) {
    while (Chunks.size() * ChunkPool::ChunkBytes < size) Chunks.push_back(Pool->Take());
    OwnVolume->Used += size - Bytes;
    uint64_t at = Bytes;
    Bytes = size;
    while (at < written) {
        const auto inChunk = static_cast<size_t>(at % ChunkPool::ChunkBytes);
        const auto part =
            static_cast<size_t>(std::min<uint64_t>(written - at, ChunkPool::ChunkBytes - inChunk));
        std::fill_n(Chunks[static_cast<size_t>(at / ChunkPool::ChunkBytes)].get() + inChunk, part,
                    std::byte{0});
        at += part;
    }
}

void SimFileData::Put(uint64_t position, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const auto inChunk = static_cast<size_t>(position % ChunkPool::ChunkBytes);
        const size_t part = std::min(bytes.size(), ChunkPool::ChunkBytes - inChunk);
        std::copy_n(bytes.data(), part,
                    Chunks[static_cast<size_t>(position / ChunkPool::ChunkBytes)].get() + inChunk);
        bytes = bytes.subspan(part);
        position += part;
    }
}

std::string SimFileData::Text(uint64_t offset, uint64_t count) const {
    if (offset >= Bytes) return {};
    const uint64_t end = offset + std::min(count, Bytes - offset);
    std::string text;
    text.reserve(static_cast<size_t>(end - offset));
    while (offset < end) {
        const auto inChunk = static_cast<size_t>(offset % ChunkPool::ChunkBytes);
        const auto part =
            static_cast<size_t>(std::min<uint64_t>(end - offset, ChunkPool::ChunkBytes - inChunk));
        const std::byte* chunk = Chunks[static_cast<size_t>(offset / ChunkPool::ChunkBytes)].get();
        text.append(reinterpret_cast<const char*>(chunk + inChunk), part);
        offset += part;
    }
    return text;
}

void SimFileData::Visit(const std::function<void(std::span<const std::byte>)>& visitor) const {
    uint64_t left = Bytes;
    for (const ChunkPool::Chunk& chunk : Chunks) {
        const auto part = static_cast<size_t>(std::min<uint64_t>(left, ChunkPool::ChunkBytes));
        if (part > 0) visitor(std::span(chunk.get(), part));
        left -= part;
    }
}

SimDisk::SimDisk() : Pool(std::make_shared<ChunkPool>()) {
    Volumes.push_back(std::make_shared<SimVolume>());
    Volumes.front()->Path = "/";
    AllNodes["/"] = {};
}

std::string SimDisk::Normal(std::string_view path) {
    std::string normal;
    while (!path.empty()) {
        const size_t slash = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, slash);
        path.remove_prefix(std::min(slash + 1, path.size()));
        if (part.empty() || part == ".") continue;
        if (part == "..") {
            normal.resize(normal.empty() ? 0 : normal.rfind('/'));
        } else {
            normal.append("/").append(part);
        }
    }
    return normal.empty() ? "/" : normal;
}

std::string SimDisk::ParentOf(const std::string& normal) {
    const size_t slash = normal.rfind('/');
    return slash == 0 ? "/" : normal.substr(0, slash);
}

const SimDisk::Node* SimDisk::Find(const std::string& normal) const {
    const auto found = AllNodes.find(normal);
    return found == AllNodes.end() ? nullptr : &found->second;
}

int32_t SimDisk::CheckParent(const std::string& path) const {
    const Node* parent = Find(ParentOf(path));
    if (parent == nullptr) return ENOENT;
    return parent->IsFolder() ? 0 : ENOTDIR;
}

int32_t SimDisk::MakeFolder(const std::string& path) {
    if (Find(path) != nullptr) return EEXIST;
    if (const int32_t error = CheckParent(path); error != 0) return error;
    AllNodes[path] = {};
    return 0;
}

int32_t SimDisk::DeleteFolder(const std::string& path) {
    const auto folder = AllNodes.find(path);
    if (folder == AllNodes.end()) return ENOENT;
    if (!folder->second.IsFolder()) return ENOTDIR;
    if (VolumeOf(path)->Path == path) return EBUSY;
    const auto below = AllNodes.lower_bound(path + "/");
    if (below != AllNodes.end() && IsBelow(below->first, path)) return ENOTEMPTY;
    AllNodes.erase(folder);
    return 0;
}

int32_t SimDisk::Delete(const std::string& path) {
    const Node* node = Find(path);
    if (node == nullptr) return ENOENT;
    if (node->IsFolder()) return EISDIR;
    AllNodes.erase(path);
    return 0;
}

int32_t SimDisk::Rename(const std::string& from, const std::string& to) {
    const Node* source = Find(from);
    if (source == nullptr) return ENOENT;
    if (const int32_t error = CheckParent(to); error != 0) return error;
    if (VolumeOf(from) != VolumeOf(to)) return EXDEV;
    if (from == to) return 0;
    const Node* target = Find(to);
    if (!source->IsFolder()) {
        if (target != nullptr && target->IsFolder()) return EISDIR;
        AllNodes[to] = *source;
        AllNodes.erase(from);
        return 0;
    }
    if (target != nullptr) return target->IsFolder() ? ENOTEMPTY : ENOTDIR;
    if (VolumeOf(from)->Path == from) return EBUSY;
    if (IsBelow(to, from)) return EINVAL;
    std::vector<std::string> moved;
    for (const auto& [path, node] : AllNodes) {
        if (IsBelow(path, from)) moved.push_back(path);
    }
    for (const std::string& path : moved) {
        auto entry = AllNodes.extract(path);
        entry.key() = to + path.substr(from.size());
        AllNodes.insert(std::move(entry));
    }
    return 0;
}

SimDisk::Created SimDisk::Create(const std::string& path) {
    if (const Node* node = Find(path); node != nullptr) {
        if (node->IsFolder()) return {nullptr, EISDIR};
        node->Data->Clear();
        return {node->Data, 0};
    }
    if (const int32_t error = CheckParent(path); error != 0) return {nullptr, error};
    auto data = NewData(path);
    Attach(path, data);
    return {std::move(data), 0};
}

std::shared_ptr<SimFileData> SimDisk::NewData(const std::string& path) const {
    return std::make_shared<SimFileData>(Pool, VolumeOf(path));
}

void SimDisk::Attach(const std::string& path, std::shared_ptr<SimFileData> data) {
    AllNodes[path] = {std::move(data)};
}

void SimDisk::Clear() {
    AllNodes.clear();
    AllNodes["/"] = {};
}

const std::shared_ptr<SimVolume>& SimDisk::VolumeOf(const std::string& path) const {
    const std::shared_ptr<SimVolume>* nearest = &Volumes.front();
    for (const auto& volume : Volumes) {
        if (IsBelow(path, volume->Path) && volume->Path.size() >= (*nearest)->Path.size()) nearest = &volume;
    }
    return *nearest;
}

void SimDisk::AddVolume(const std::string& path, uint64_t capacity) {
    auto volume = std::make_shared<SimVolume>();
    volume->Path = path;
    volume->Capacity = capacity;
    Volumes.push_back(std::move(volume));
}

SimDiskImage SimDisk::Image() const {
    SimDiskImage image;
    for (const auto& [path, node] : AllNodes) {
        std::optional<std::string> content;
        if (!node.IsFolder()) content = node.Data->Text(0, node.Data->Size());
        image.Entries.emplace(path, std::move(content));
    }
    return image;
}

}  // namespace Corvetape
