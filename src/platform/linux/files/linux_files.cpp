#include "platform/linux/files/linux_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <limits>
#include <thread>

#include "platform/linux/files/descriptor.h"
#include "platform/linux/files/new_file.h"

namespace Corvetape {
namespace {

/// How an operation ended whose system call has set errno if it failed.
FileResult Ended(std::string_view attempt, const std::string& path, bool good) {
    if (good) return {};
    return {attempt, path, std::error_code(errno, std::generic_category())};
}

FileResult Failed(std::string_view attempt, const std::string& path, int error = errno) {
    return {attempt, path, std::error_code(error, std::generic_category())};
}

Descriptor OpenFile(const std::string& path, int flags) {
    return Descriptor(Uninterrupted([&] { return open(path.c_str(), flags | O_CLOEXEC, 0666); }));
}

/// Opens for reading without waiting for the other end of a pipe. The size is that of a regular file.
struct Readable {
    Descriptor Open;
    uint64_t Size = 0;
};

std::optional<Readable> OpenForReading(const std::string& path) {
    Readable file{OpenFile(path, O_RDONLY | O_NONBLOCK), 0};
    struct stat status {};
    if (!file.Open || fstat(file.Open.Number(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        return std::nullopt;
    }
    file.Size = static_cast<uint64_t>(status.st_size);
    return file;
}

/// What stands from `offset` on, `count` bytes at most, whatever size the file had when it was opened.
std::optional<std::string> ReadFrom(int descriptor, uint64_t offset, uint64_t count) {
    std::string content;
    constexpr uint64_t piece = 1 << 20;
    while (content.size() < count) {
        const size_t before = content.size();
        content.resize(before + static_cast<size_t>(std::min(count - before, piece)));
        const ssize_t got = Uninterrupted([&] {
            return pread(descriptor, content.data() + before, content.size() - before,
                         static_cast<off_t>(offset + before));
        });
        if (got < 0) return std::nullopt;
        content.resize(before + static_cast<size_t>(got));
        if (got == 0) break;
    }
    return content;
}

bool CopyContent(int from, int to) {
    bool inKernel = true;
    std::string piece(size_t{256} * 1024, '\0');
    for (;;) {
        ssize_t got = -1;
        if (inKernel) {
            got = Uninterrupted([&] { return copy_file_range(from, nullptr, to, nullptr, 1 << 30, 0); });
            if (got > 0) continue;
            const bool full = errno == ENOSPC || errno == EDQUOT || errno == EFBIG || errno == EIO;
            if (got < 0 && full) return false;
            inKernel = false;  // at the end, or not between these disks: by hand from where it stopped
        }
        got = Uninterrupted([&] { return read(from, piece.data(), piece.size()); });
        if (got <= 0) return got == 0;
        if (!WriteFully(to, std::string_view(piece).substr(0, static_cast<size_t>(got)))) return false;
    }
}

class LinuxFile : public File {
 public:
    LinuxFile(std::string path, Descriptor openFile, std::shared_ptr<DiskSyncer> diskSyncer)
        : Path(std::move(path)), Handle(std::move(openFile)), Syncer(std::move(diskSyncer)) {}
    ~LinuxFile() override { LinuxFile::Close(); }
    LinuxFile(const LinuxFile&) = delete;
    LinuxFile& operator=(const LinuxFile&) = delete;

    FileResult Write(std::span<const std::byte> bytes) override {
        if (!Handle) return Failed("write", Path, EBADF);
        while (!bytes.empty()) {
            const ssize_t written = Uninterrupted(
                [&] { return pwrite(Handle.Number(), bytes.data(), bytes.size(), static_cast<off_t>(At)); });
            if (written <= 0) return Failed("write", Path, written < 0 ? errno : EIO);
            At += static_cast<uint64_t>(written);
            bytes = bytes.subspan(static_cast<size_t>(written));
        }
        return {};
    }

    FileResult Seek(uint64_t target) override {
        if (!Handle) return Failed("seek in", Path, EBADF);
        if (target > static_cast<uint64_t>(std::numeric_limits<off_t>::max())) {
            return Failed("seek in", Path, EINVAL);
        }
        At = target;
        return {};
    }

    uint64_t Position() const override { return At; }

    FileResult CutBack(uint64_t size) override {
        constexpr std::string_view attempt = "shorten";
        struct stat status {};
        if (!Handle) return Failed(attempt, Path, EBADF);
        if (fstat(Handle.Number(), &status) != 0) return Failed(attempt, Path);
        if (static_cast<uint64_t>(status.st_size) <= size) return {};
        const auto length = static_cast<off_t>(size);
        const auto cut = Uninterrupted([&] { return ftruncate(Handle.Number(), length); });
        return Ended(attempt, Path, cut == 0);
    }

    void SyncSoon() override { Syncer->Add(Handle.Number()); }

    FileResult Close() override { return Ended("close", Path, !Handle || Handle.Close()); }

 private:
    std::string Path;
    Descriptor Handle;
    uint64_t At = 0;
    std::shared_ptr<DiskSyncer> Syncer;
};

}  // namespace

LinuxFiles::LinuxFiles() : Syncer(std::make_shared<DiskSyncer>()) {
    // A file that may not grow further is a write that fails, and no reason to die.
    std::signal(SIGXFSZ, SIG_IGN);
}

Opened<File> LinuxFiles::Create(const std::string& path) {
    Descriptor file = OpenFile(path, O_WRONLY | O_CREAT | O_TRUNC);
    if (!file) return Failed("create", path);
    return std::make_unique<LinuxFile>(path, std::move(file), Syncer);
}

Opened<File> LinuxFiles::CreateNew(const std::string& path) {
    Descriptor file = OpenFile(path, O_WRONLY | O_CREAT | O_EXCL);
    if (!file) return Failed("create", path);
    return std::make_unique<LinuxFile>(path, std::move(file), Syncer);
}

FileOr<std::string> LinuxFiles::ReadAll(const std::string& path, uint64_t limit) {
    const std::optional<Readable> file = OpenForReading(path);
    if (!file) return Failed("read", path);
    if (file->Size > limit) return Failed("read", path, EFBIG);
    const uint64_t oneMore = limit < std::numeric_limits<uint64_t>::max() ? limit + 1 : limit;
    std::optional<std::string> content = ReadFrom(file->Open.Number(), 0, oneMore);
    if (!content) return Failed("read", path);
    if (content->size() > limit) return Failed("read", path, EFBIG);
    return *std::move(content);
}

FileOr<std::string> LinuxFiles::ReadPart(const std::string& path, uint64_t offset, size_t count) {
    const std::optional<Readable> file = OpenForReading(path);
    if (!file) return Failed("read", path);
    if (offset >= file->Size) return std::string();
    std::optional<std::string> content = ReadFrom(file->Open.Number(), offset, count);
    if (!content) return Failed("read", path);
    return *std::move(content);
}

FileResult LinuxFiles::Patch(const std::string& path, uint64_t offset, std::string_view bytes) {
    constexpr std::string_view attempt = "change";
    const Descriptor file = OpenFile(path, O_WRONLY | O_NONBLOCK | O_NOFOLLOW);
    struct stat status {};
    if (!file || fstat(file.Number(), &status) != 0) return Failed(attempt, path);
    const auto size = static_cast<uint64_t>(status.st_size);
    if (!S_ISREG(status.st_mode) || offset > size || bytes.size() > size - offset) {
        return Failed(attempt, path, EINVAL);
    }
    if (lseek(file.Number(), static_cast<off_t>(offset), SEEK_SET) < 0) return Failed(attempt, path);
    return Ended(attempt, path, WriteFully(file.Number(), bytes));
}

FileResult LinuxFiles::ReplaceAtomically(const std::string& path, std::string_view content) {
    std::optional<NewFile> file = NewFile::Begin(path);
    return Ended("write", path, file && WriteFully(file->Number(), content) && file->TakePlace());
}

FileResult LinuxFiles::ReplaceQuickly(const std::string& path, std::string_view content) {
    std::optional<NewFile> file = NewFile::Begin(path);
    const bool good = file && WriteFully(file->Number(), content) && file->TakePlace(NewFile::Sync::No);
    return Ended("write", path, good);
}

FileResult LinuxFiles::Append(const std::string& path, std::string_view content) {
    Descriptor file = OpenFile(path, O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK);
    if (!file) return Failed("write", path);
    FileResult written = Ended("write", path, WriteFully(file.Number(), content));
    FileResult closed = Ended("close", path, file.Close());
    return written ? closed : written;
}

FileResult LinuxFiles::Rename(const std::string& from, const std::string& to) {
    if (rename(from.c_str(), to.c_str()) == 0) return {};
    FileResult refused = Failed("rename", from);
    const bool otherDisk = refused.Code() == EXDEV;
    if (!otherDisk || IsFolder(from)) return refused;
    FileResult copied = Copy(from, to);
    return copied ? Delete(from) : copied;
}

FileResult LinuxFiles::Copy(const std::string& from, const std::string& to) {
    const std::optional<Readable> source = OpenForReading(from);
    if (!source) return Failed("read", from);
    struct stat fromStatus {};
    struct stat toStatus {};
    if (fstat(source->Open.Number(), &fromStatus) == 0 && stat(to.c_str(), &toStatus) == 0 &&
        fromStatus.st_dev == toStatus.st_dev && fromStatus.st_ino == toStatus.st_ino) {
        return {};
    }
    std::optional<NewFile> copy = NewFile::Begin(to);
    return Ended("write", to,
                 copy && CopyContent(source->Open.Number(), copy->Number()) && copy->TakePlace());
}

FileResult LinuxFiles::Link(const std::string& from, const std::string& to) {
    if (link(from.c_str(), to.c_str()) == 0) return {};
    // Some disks know one name for each file only.
    const bool cannot = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS || errno == EXDEV;
    return cannot ? Copy(from, to) : Failed("link", to);
}

FileResult LinuxFiles::Delete(const std::string& path) {
    return Ended("delete", path, unlink(path.c_str()) == 0);
}

FileResult LinuxFiles::MakeFolder(const std::string& path) {
    return Ended("make the folder", path, mkdir(path.c_str(), 0777) == 0);
}

FileResult LinuxFiles::DeleteFolder(const std::string& path) {
    return Ended("delete the folder", path, rmdir(path.c_str()) == 0);
}

bool LinuxFiles::IsFolder(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

FileOr<uint64_t> LinuxFiles::FileSize(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return Failed("look at", path);
    if (S_ISDIR(status.st_mode)) return Failed("look at", path, EISDIR);
    return static_cast<uint64_t>(status.st_size);
}

std::vector<FileEntry> LinuxFiles::List(const std::string& folder) {
    std::vector<FileEntry> entries;
    const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), closedir);
    if (!open) return entries;
    while (const dirent* item = readdir(open.get())) {
        const std::string name = item->d_name;
        struct stat status {};
        if (name == "." || name == "..") continue;
        if (fstatat(dirfd(open.get()), name.c_str(), &status, 0) != 0) continue;  // gone, or a dead link
        const bool isFolder = S_ISDIR(status.st_mode);
        entries.push_back({name, isFolder ? 0 : static_cast<uint64_t>(status.st_size), isFolder});
    }
    std::ranges::sort(entries, {}, &FileEntry::Name);
    return entries;
}

bool LinuxFiles::SameFile(const std::string& one, const std::string& other) {
    struct stat first {};
    struct stat second {};
    return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool LinuxFiles::SameDrive(const std::string& one, const std::string& other) {
    struct stat first {};
    struct stat second {};
    return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev;
}

std::unique_ptr<FileLock> LinuxFiles::Lock(const std::string& path) {
    class HeldLock : public FileLock {
     public:
        explicit HeldLock(Descriptor open) : Locked(std::move(open)) {}

     private:
        Descriptor Locked;  // its closing gives the lock back
    };
    Descriptor file = OpenFile(path, O_RDWR | O_CREAT | O_NOFOLLOW);
    if (!file) return nullptr;
    // Whoever holds it does so for the time of one small write. A process that was stopped in the middle of
    // that must not stop this one.
    constexpr int tries = 200;
    for (int i = 0; i < tries; ++i) {
        if (flock(file.Number(), LOCK_EX | LOCK_NB) == 0) return std::make_unique<HeldLock>(std::move(file));
        if (errno != EWOULDBLOCK && errno != EINTR) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return nullptr;
}

FileOr<uint64_t> LinuxFiles::FreeSpace(const std::string& folder) {
    struct statvfs status {};
    if (Uninterrupted([&] { return statvfs(folder.c_str(), &status); }) != 0) {
        return Failed("find out the free space of", folder);
    }
    return uint64_t{status.f_bavail} * status.f_frsize;
}

}  // namespace Corvetape
