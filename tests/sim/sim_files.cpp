#include "sim/sim_files.h"

#include <algorithm>
#include <utility>

namespace Corvetape {

namespace {

std::span<const std::byte> BytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

/// How an operation ended: well with the error 0.
FileResult Ended(FileOperation operation, const std::string& path, int32_t error) {
    if (error == 0) return {};
    return {NameOf(operation), path, std::error_code(error, std::generic_category())};
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

    FileResult Write(std::span<const std::byte> bytes) override {
        if (!IsOpen()) return NotOpen(FileOperation::Write);
        SimFaults::WritePass pass = Owner->Faults.StrikeWrite(Path, Taken, bytes.size());
        if (pass.Error == 0 && !Data->Volume()->Present) pass = {0, EIO};
        const uint64_t written = Data->Write(At, bytes.first(static_cast<size_t>(pass.Bytes)));
        Owner->History.Add(At);
        Owner->History.Add(bytes.first(static_cast<size_t>(written)));
        At += written;
        Taken += written;
        if (pass.Error == 0 && written < bytes.size()) pass.Error = ENOSPC;
        return Ended(FileOperation::Write, Path, pass.Error);
    }

    FileResult Seek(uint64_t position) override {
        FileResult passed = Pass(FileOperation::Seek);
        if (passed) At = position;
        return passed;
    }

    uint64_t Position() const override { return At; }

    FileResult CutBack(uint64_t size) override {
        if (FileResult passed = Pass(FileOperation::CutBack); !passed) return passed;
        Data->CutBack(size);
        Owner->History.Add(static_cast<uint64_t>(FileOperation::CutBack));
        Owner->History.Add(size);
        return {};
    }

    void SyncSoon() override {
        if (IsOpen() && Owner->OnSync) Owner->OnSync(Path);
    }

    FileResult Close() override {
        if (!IsOpen()) return NotOpen(FileOperation::Close);
        SimFiles& owner = *Owner;
        FileResult passed = Pass(FileOperation::Close);
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

    FileResult NotOpen(FileOperation operation) const { return Ended(operation, Path, EBADF); }

    FileResult Pass(FileOperation operation) {
        if (!IsOpen()) return NotOpen(operation);
        int32_t error = Owner->Faults.Strike(operation, Path);
        if (error == 0 && !Data->Volume()->Present) error = EIO;
        return Ended(operation, Path, error);
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

FileResult SimFiles::Pass(FileOperation operation, const std::string& path) {
    int32_t error = Faults.Strike(operation, path);
    if (error == 0 && !Disk.VolumeOf(path)->Present) error = EIO;
    return Ended(operation, path, error);
}

void SimFiles::Note(FileOperation operation, std::string_view path, std::string_view content) {
    History.Add(static_cast<uint64_t>(operation));
    History.Add(path);
    History.Add(content);
}

SimFiles::Found SimFiles::FindFile(FileOperation operation, const std::string& path) {
    if (FileResult passed = Pass(operation, path); !passed) return {nullptr, passed};
    const SimDisk::Node* node = Disk.Find(path);
    if (node != nullptr && !node->IsFolder()) return {node, {}};
    return {nullptr, Ended(operation, path, node == nullptr ? ENOENT : EISDIR)};
}

Opened<File> SimFiles::Create(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    if (FileResult passed = Pass(FileOperation::Create, normal); !passed) return passed;
    SimDisk::Created created = Disk.Create(normal);
    if (created.Error != 0) return Ended(FileOperation::Create, normal, created.Error);
    Note(FileOperation::Create, normal);
    return std::make_unique<SimFile>(*this, normal, std::move(created.Data));
}

Opened<File> SimFiles::CreateNew(const std::string& path) {
    const bool taken = Disk.Find(SimDisk::Normal(path)) != nullptr;
    if (taken) return Ended(FileOperation::Create, SimDisk::Normal(path), EEXIST);
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

FileOr<std::string> SimFiles::ReadAll(const std::string& path, uint64_t limit) {
    const std::string normal = SimDisk::Normal(path);
    const Found file = FindFile(FileOperation::Read, normal);
    if (file.Node == nullptr) return file.Failure;
    if (file.Node->Data->Size() > limit) return Ended(FileOperation::Read, normal, EFBIG);
    return file.Node->Data->Text(0, file.Node->Data->Size());
}

FileOr<std::string> SimFiles::ReadPart(const std::string& path, uint64_t offset, size_t count) {
    const Found file = FindFile(FileOperation::Read, SimDisk::Normal(path));
    if (file.Node == nullptr) return file.Failure;
    return file.Node->Data->Text(offset, count);
}

FileResult SimFiles::Patch(const std::string& path, uint64_t offset, std::string_view bytes) {
    const std::string normal = SimDisk::Normal(path);
    const Found file = FindFile(FileOperation::Patch, normal);
    if (file.Node == nullptr) return file.Failure;
    const uint64_t size = file.Node->Data->Size();
    const bool outside = offset > size || bytes.size() > size - offset;
    if (outside) return Ended(FileOperation::Patch, normal, EINVAL);
    file.Node->Data->Write(offset, BytesOf(bytes));
    Note(FileOperation::Patch, normal, bytes);
    return {};
}

FileResult SimFiles::ReplaceAtomically(const std::string& path, std::string_view content) {
    constexpr FileOperation operation = FileOperation::Replace;
    const std::string normal = SimDisk::Normal(path);
    if (FileResult passed = Pass(operation, normal); !passed) return passed;
    if (const SimDisk::Node* node = Disk.Find(normal); node != nullptr && node->IsFolder()) {
        return Ended(operation, normal, EISDIR);
    }
    if (const int32_t error = Disk.CheckParent(normal); error != 0) return Ended(operation, normal, error);
    // Until the new content stands, the old one takes its room too.
    auto data = Disk.NewData(normal);
    if (data->Write(0, BytesOf(content)) < content.size()) return Ended(operation, normal, ENOSPC);
    Disk.Attach(normal, std::move(data));
    Note(operation, normal, content);
    return {};
}

FileResult SimFiles::Append(const std::string& path, std::string_view content) {
    constexpr FileOperation operation = FileOperation::Append;
    const std::string normal = SimDisk::Normal(path);
    if (FileResult passed = Pass(operation, normal); !passed) return passed;
    const SimDisk::Node* node = Disk.Find(normal);
    SimDisk::Created file;
    if (node == nullptr) {
        file = Disk.Create(normal);
    } else if (node->IsFolder()) {
        file.Error = EISDIR;
    } else {
        file.Data = node->Data;
    }
    if (file.Error != 0) return Ended(operation, normal, file.Error);
    const uint64_t written = file.Data->Write(file.Data->Size(), BytesOf(content));
    Note(operation, normal, content.substr(0, static_cast<size_t>(written)));
    return Ended(operation, normal, written < content.size() ? ENOSPC : 0);
}

FileResult SimFiles::Rename(const std::string& from, const std::string& to) {
    const std::string source = SimDisk::Normal(from);
    const std::string target = SimDisk::Normal(to);
    FileResult result = Pass(FileOperation::Rename, source);
    if (result) result = Ended(FileOperation::Rename, source, Disk.Rename(source, target));
    if (result) Note(FileOperation::Rename, source, target);
    return result;
}

FileResult SimFiles::Copy(const std::string& from, const std::string& to) {
    constexpr FileOperation operation = FileOperation::Copy;
    const std::string source = SimDisk::Normal(from);
    const std::string target = SimDisk::Normal(to);
    const Found file = FindFile(operation, source);
    if (file.Node == nullptr) return file.Failure;
    if (const SimDisk::Node* old = Disk.Find(target); old != nullptr && old->IsFolder()) {
        return Ended(operation, target, EISDIR);
    }
    if (const int32_t error = Disk.CheckParent(target); error != 0) return Ended(operation, target, error);
    auto data = Disk.NewData(target);
    if (data->Volume()->Free() < file.Node->Data->Size()) return Ended(operation, target, ENOSPC);
    file.Node->Data->Visit([&](std::span<const std::byte> bytes) { data->Write(data->Size(), bytes); });
    Disk.Attach(target, std::move(data));
    Note(operation, source, target);
    return {};
}

FileResult SimFiles::Delete(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    FileResult result = Pass(FileOperation::Delete, normal);
    if (result) result = Ended(FileOperation::Delete, normal, Disk.Delete(normal));
    if (result) Note(FileOperation::Delete, normal);
    return result;
}

FileResult SimFiles::MakeFolder(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    FileResult result = Pass(FileOperation::MakeFolder, normal);
    if (result) result = Ended(FileOperation::MakeFolder, normal, Disk.MakeFolder(normal));
    if (result) Note(FileOperation::MakeFolder, normal);
    return result;
}

FileResult SimFiles::DeleteFolder(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    FileResult result = Pass(FileOperation::DeleteFolder, normal);
    if (result) result = Ended(FileOperation::DeleteFolder, normal, Disk.DeleteFolder(normal));
    if (result) Note(FileOperation::DeleteFolder, normal);
    return result;
}

bool SimFiles::IsFolder(const std::string& path) {
    const std::string normal = SimDisk::Normal(path);
    if (!Pass(FileOperation::Look, normal)) return false;
    const SimDisk::Node* node = Disk.Find(normal);
    return node != nullptr && node->IsFolder();
}

FileOr<uint64_t> SimFiles::FileSize(const std::string& path) {
    const Found file = FindFile(FileOperation::Look, SimDisk::Normal(path));
    if (file.Node == nullptr) return file.Failure;
    return file.Node->Data->Size();
}

std::vector<FileEntry> SimFiles::List(const std::string& folder) {
    const std::string normal = SimDisk::Normal(folder);
    if (!Pass(FileOperation::Look, normal)) return {};
    const SimDisk::Node* top = Disk.Find(normal);
    if (top == nullptr || !top->IsFolder()) return {};
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

FileOr<uint64_t> SimFiles::FreeSpace(const std::string& folder) {
    const std::string normal = SimDisk::Normal(folder);
    if (FileResult passed = Pass(FileOperation::FreeSpace, normal); !passed) return passed;
    if (Disk.Find(normal) == nullptr) return Ended(FileOperation::FreeSpace, normal, ENOENT);
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
