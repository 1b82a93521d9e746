#include "sim/sim_files.h"

#include <algorithm>
#include <utility>

namespace Corvetape {

namespace {

std::span<const std::byte> BytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

}  // namespace

/// A handle. Its disk may go first; then it writes to nowhere.
class SimFile : public File {
 public:
    SimFile(SimFiles& owner, std::string path, std::shared_ptr<SimFileData> data)
        : Owner(&owner), Path(std::move(path)), Data(std::move(data)) {
        Owner->OpenFiles.push_back(this);
    }
    ~SimFile() override { SimFile::Close(); }
    SimFile(const SimFile&) = delete;
    SimFile& operator=(const SimFile&) = delete;

    bool Write(std::span<const std::byte> bytes) override {
        if (!IsOpen()) return false;
        SimFaults::WritePass pass = Owner->Faults.StrikeWrite(Path, Taken, bytes.size());
        if (pass.Error == 0 && !Data->Volume()->Present) pass = {0, EIO};
        const uint64_t written = Data->Write(At, bytes.first(static_cast<size_t>(pass.Bytes)));
        Owner->History.Add(At);
        Owner->History.Add(bytes.first(static_cast<size_t>(written)));
        At += written;
        Taken += written;
        if (pass.Error != 0) return Owner->Done(pass.Error);
        return Owner->Done(written < bytes.size() ? ENOSPC : 0);
    }

    bool Seek(uint64_t position) override {
        if (!IsOpen() || !Passes(FileOperation::Seek)) return false;
        At = position;
        return true;
    }

    uint64_t Position() const override { return At; }

    bool CutBack(uint64_t size) override {
        if (!IsOpen() || !Passes(FileOperation::CutBack)) return false;
        Data->CutBack(size);
        Owner->History.Add(static_cast<uint64_t>(FileOperation::CutBack));
        Owner->History.Add(size);
        return true;
    }

    void SyncSoon() override {
        if (IsOpen() && Owner->OnSync) Owner->OnSync(Path);
    }

    bool Close() override {
        if (!IsOpen()) return false;
        SimFiles& owner = *Owner;
        const bool passed = Passes(FileOperation::Close);
        if (passed) owner.Note(FileOperation::Close, Path);
        Forget();
        return passed;
    }

    const std::string& OpenedPath() const { return Path; }

    /// Leaves the disk. Everything asked for later fails.
    void Forget() {
        std::erase(Owner->OpenFiles, this);
        Data.reset();
        Owner = nullptr;
    }

 private:
    bool IsOpen() const { return Owner != nullptr; }

    bool Passes(FileOperation operation) {
        int32_t error = Owner->Faults.Strike(operation, Path);
        if (error == 0 && !Data->Volume()->Present) error = EIO;
        return Owner->Done(error);
    }

    SimFiles* Owner;  ///< none once closed
    std::string Path;
    std::shared_ptr<SimFileData> Data;
    uint64_t At = 0;
    uint64_t Taken = 0;  ///< bytes written through this handle
};

SimFiles::SimFiles() = default;

SimFiles::~SimFiles() {
    while (!OpenFiles.empty()) OpenFiles.back()->Forget();
}

bool SimFiles::Done(int32_t error) {
    if (error != 0) Error = error;
    return error == 0;
}

bool SimFiles::Passes(FileOperation operation, const std::string& path) {
    int32_t error = Faults.Strike(operation, path);
    if (error == 0 && !Disk.VolumeOf(path)->Present) error = EIO;
    return Done(error);
}

void SimFiles::Note(FileOperation operation, std::string_view path, std::string_view content) {
    History.Add(static_cast<uint64_t>(operation));
    History.Add(path);
    History.Add(content);
}

/// The file at a normal path; none, with the error set, for a folder or nothing.
const SimDisk::Node* SimFiles::FindFile(const std::string& path) {
    const SimDisk::Node* node = Disk.Find(path);
    if (node != nullptr && !node->IsFolder()) return node;
    Done(node == nullptr ? ENOENT : EISDIR);
    return nullptr;
}

std::unique_ptr<File> SimFiles::Create(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::Create, normal)) return nullptr;
    SimDisk::Created created = Disk.Create(normal);
    if (!Done(created.Error)) return nullptr;
    Note(FileOperation::Create, normal);
    return std::make_unique<SimFile>(*this, normal, std::move(created.Data));
}

std::unique_ptr<File> SimFiles::CreateNew(const std::string& path) {
    if (!Done(Disk.Find(SimDisk::Normal(path)) != nullptr ? EEXIST : 0)) return nullptr;
    return Create(path);
}

bool SimFiles::SameFile(const std::string& one, const std::string& other) {
    const SimDisk::Node* first = Disk.Find(SimDisk::Normal(one));
    const SimDisk::Node* second = Disk.Find(SimDisk::Normal(other));
    return first != nullptr && second != nullptr && !first->IsFolder() && first->Data == second->Data;
}

bool SimFiles::SameDrive(const std::string& one, const std::string& other) {
    const std::string first = SimDisk::Normal(one);
    const std::string second = SimDisk::Normal(other);
    return Disk.Find(first) != nullptr && Disk.Find(second) != nullptr &&
           Disk.VolumeOf(first) == Disk.VolumeOf(second);
}

std::optional<std::string> SimFiles::ReadAll(const std::string& path, uint64_t limit) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::Read, normal)) return std::nullopt;
    const SimDisk::Node* node = FindFile(normal);
    if (node == nullptr) return std::nullopt;
    if (!Done(node->Data->Size() > limit ? EFBIG : 0)) return std::nullopt;
    return node->Data->Text(0, node->Data->Size());
}

std::optional<std::string> SimFiles::ReadPart(const std::string& path, uint64_t offset, size_t count) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::Read, normal)) return std::nullopt;
    const SimDisk::Node* node = FindFile(normal);
    if (node == nullptr) return std::nullopt;
    return node->Data->Text(offset, count);
}

bool SimFiles::Patch(const std::string& path, uint64_t offset, std::string_view bytes) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::Patch, normal)) return false;
    const SimDisk::Node* node = FindFile(normal);
    if (node == nullptr) return false;
    const uint64_t size = node->Data->Size();
    if (!Done(offset > size || bytes.size() > size - offset ? EINVAL : 0)) return false;
    node->Data->Write(offset, BytesOf(bytes));
    Note(FileOperation::Patch, normal, bytes);
    return true;
}

bool SimFiles::ReplaceAtomically(const std::string& path, std::string_view content) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::Replace, normal)) return false;
    if (const SimDisk::Node* node = Disk.Find(normal); node != nullptr && node->IsFolder()) {
        return Done(EISDIR);
    }
    if (!Done(Disk.CheckParent(normal))) return false;
    // Until the new content stands, the old one takes its room too.
    auto data = Disk.NewData(normal);
    if (!Done(data->Write(0, BytesOf(content)) < content.size() ? ENOSPC : 0)) return false;
    Disk.Attach(normal, std::move(data));
    Note(FileOperation::Replace, normal, content);
    return true;
}

bool SimFiles::Append(const std::string& path, std::string_view content) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::Append, normal)) return false;
    const SimDisk::Node* node = Disk.Find(normal);
    SimDisk::Created file;
    if (node == nullptr) {
        file = Disk.Create(normal);
    } else if (node->IsFolder()) {
        file.Error = EISDIR;
    } else {
        file.Data = node->Data;
    }
    if (!Done(file.Error)) return false;
    const uint64_t written = file.Data->Write(file.Data->Size(), BytesOf(content));
    Note(FileOperation::Append, normal, content.substr(0, static_cast<size_t>(written)));
    return Done(written < content.size() ? ENOSPC : 0);
}

bool SimFiles::Rename(const std::string& from, const std::string& to) {
    const std::string source = SimDisk::Normal(from);
    const std::string target = SimDisk::Normal(to);
    if (!Passes(FileOperation::Rename, source) || !Done(Disk.Rename(source, target))) return false;
    Note(FileOperation::Rename, source, target);
    return true;
}

bool SimFiles::Copy(const std::string& from, const std::string& to) {
    const std::string source = SimDisk::Normal(from);
    const std::string target = SimDisk::Normal(to);
    if (!Passes(FileOperation::Copy, source)) return false;
    const SimDisk::Node* node = FindFile(source);
    if (node == nullptr) return false;
    if (const SimDisk::Node* old = Disk.Find(target); old != nullptr && old->IsFolder()) return Done(EISDIR);
    if (!Done(Disk.CheckParent(target))) return false;
    auto data = Disk.NewData(target);
    if (!Done(data->Volume()->Free() < node->Data->Size() ? ENOSPC : 0)) return false;
    node->Data->Visit([&](std::span<const std::byte> bytes) { data->Write(data->Size(), bytes); });
    Disk.Attach(target, std::move(data));
    Note(FileOperation::Copy, source, target);
    return true;
}

bool SimFiles::Delete(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::Delete, normal) || !Done(Disk.Delete(normal))) return false;
    Note(FileOperation::Delete, normal);
    return true;
}

bool SimFiles::MakeFolder(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::MakeFolder, normal) || !Done(Disk.MakeFolder(normal))) return false;
    Note(FileOperation::MakeFolder, normal);
    return true;
}

bool SimFiles::DeleteFolder(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::DeleteFolder, normal) || !Done(Disk.DeleteFolder(normal))) return false;
    Note(FileOperation::DeleteFolder, normal);
    return true;
}

bool SimFiles::IsFolder(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::Look, normal)) return false;
    const SimDisk::Node* node = Disk.Find(normal);
    return node != nullptr && node->IsFolder();
}

std::optional<uint64_t> SimFiles::FileSize(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    if (!Passes(FileOperation::Look, normal)) return std::nullopt;
    const SimDisk::Node* node = FindFile(normal);
    if (node == nullptr) return std::nullopt;
    return node->Data->Size();
}

std::vector<FileEntry> SimFiles::List(const std::string& folder) {
    const std::string normal = SimDisk::Normal(folder);
    if (!Passes(FileOperation::Look, normal)) return {};
    const SimDisk::Node* top = Disk.Find(normal);
    if (!Done(top == nullptr ? ENOENT : (top->IsFolder() ? 0 : ENOTDIR))) return {};
    const std::string prefix = normal == "/" ? "/" : normal + "/";
    std::vector<FileEntry> entries;
    for (auto at = Disk.Nodes().lower_bound(prefix); at != Disk.Nodes().end(); ++at) {
        const auto& [path, node] = *at;
        if (!path.starts_with(prefix)) break;
        const std::string name = path.substr(prefix.size());
        if (name.empty() || name.find('/') != std::string::npos) continue;
        entries.push_back({name, node.IsFolder() ? 0 : node.Data->Size(), node.IsFolder()});
    }
    return entries;
}

std::optional<uint64_t> SimFiles::FreeSpace(const std::string& folder) {
    const std::string normal = SimDisk::Normal(folder);
    if (!Passes(FileOperation::FreeSpace, normal)) return std::nullopt;
    if (!Done(Disk.Find(normal) == nullptr ? ENOENT : 0)) return std::nullopt;
    return Disk.VolumeOf(normal)->Free();
}

void SimFiles::Mount(const std::string& path, uint64_t capacity) {
    MakeFolders(path);
    Disk.AddVolume(SimDisk::Normal(path), capacity);
}

void SimFiles::SetCapacity(const std::string& path, uint64_t bytes) {
    Disk.VolumeOf(SimDisk::Normal(path))->Capacity = bytes;
}

void SimFiles::SetFreeSpace(const std::string& path, uint64_t bytes) {
    SimVolume& volume = *Disk.VolumeOf(SimDisk::Normal(path));
    volume.Capacity = volume.Used + bytes;
}

void SimFiles::TakeOut(const std::string& path) {
    Disk.VolumeOf(SimDisk::Normal(path))->Present = false;
}

void SimFiles::PutBack(const std::string& path) {
    Disk.VolumeOf(SimDisk::Normal(path))->Present = true;
}

std::vector<std::string> SimFiles::OpenPaths() const {
    std::vector<std::string> paths;
    for (const SimFile* file : OpenFiles) paths.push_back(file->OpenedPath());
    return paths;
}

bool SimFiles::Exists(const std::string& path) const {
    return Disk.Find(SimDisk::Normal(path)) != nullptr;
}

std::optional<std::string> SimFiles::Content(const std::string& path) const {
    const SimDisk::Node* node = Disk.Find(SimDisk::Normal(path));
    if (node == nullptr || node->IsFolder()) return std::nullopt;
    return node->Data->Text(0, node->Data->Size());
}

void SimFiles::VisitContent(const std::string& path,
                            const std::function<void(std::span<const std::byte>)>& visitor) const {
    const SimDisk::Node* node = Disk.Find(SimDisk::Normal(path));
    if (node != nullptr && !node->IsFolder()) node->Data->Visit(visitor);
}

std::optional<uint64_t> SimFiles::HashOfFile(const std::string& path) const {
    const SimDisk::Node* node = Disk.Find(SimDisk::Normal(path));
    if (node == nullptr || node->IsFolder()) return std::nullopt;
    ContentHash hash;
    node->Data->Visit([&hash](std::span<const std::byte> bytes) { hash.Add(bytes); });
    return hash.Value();
}

void SimFiles::Put(const std::string& path, std::string_view content) {
    const std::string normal = SimDisk::Normal(path);
    MakeFolders(SimDisk::ParentOf(normal));
    const SimDisk::Created created = Disk.Create(normal);
    if (created.Data != nullptr) created.Data->Write(0, BytesOf(content));
}

void SimFiles::MakeFolders(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    if (Disk.Find(normal) != nullptr) return;
    MakeFolders(SimDisk::ParentOf(normal));
    Disk.MakeFolder(normal);
}

std::vector<std::string> SimFiles::Tree(const std::string& folder) const {
    const std::string normal = SimDisk::Normal(folder);
    const std::string prefix = normal == "/" ? "/" : normal + "/";
    std::vector<std::string> paths;
    for (auto at = Disk.Nodes().upper_bound(prefix); at != Disk.Nodes().end(); ++at) {
        if (!at->first.starts_with(prefix)) break;
        paths.push_back(at->second.IsFolder() ? at->first + "/" : at->first);
    }
    return paths;
}

void SimFiles::Restore(const SimDiskImage& image) {
    Disk.Clear();
    for (const auto& [path, content] : image.Entries) {
        if (content.has_value()) {
            Put(path, *content);
        } else {
            MakeFolders(path);
        }
    }
}

}  // namespace Corvetape
