#include "platform/linux/files/new_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/random.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>

namespace Corvetape {
namespace {

struct Target {
    std::string Folder;
    std::string Name;
};

Target Split(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return {".", path};
    return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

/// Where the content belongs: at the end of symbolic links, also if the last one leads to a file that is
/// still missing.
std::optional<Target> Resolve(std::string path) {
    for (int links = 0; links < 40; ++links) {
        struct stat status {};
        if (lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return Split(path);
        std::string content(4096, '\0');
        const ssize_t length = readlink(path.c_str(), content.data(), content.size());
        if (length < 0) return std::nullopt;
        content.resize(static_cast<size_t>(length));
        if (content.starts_with('/')) {
            path = content;
        } else {
            path = Split(path).Folder + "/" + content;
        }
    }
    errno = ELOOP;
    return std::nullopt;
}

std::string RandomName() {
    uint64_t number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number) number = static_cast<uint64_t>(getpid());
    char text[40];
    std::snprintf(text, sizeof text, ".corvet-%016llx.new", static_cast<unsigned long long>(number));
    return text;
}

}  // namespace

bool WriteFully(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = Uninterrupted([&] { return write(descriptor, bytes.data(), bytes.size()); });
        if (written < 0) return false;
        if (written == 0) {
            errno = EIO;
            return false;
        }
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

std::optional<NewFile> NewFile::Begin(const std::string& path) {
    const std::optional<Target> target = Resolve(path);
    if (!target) return std::nullopt;
    NewFile file;
    file.Name = target->Name;
    file.FolderPath = target->Folder;
    if (file.Name.empty() || file.Name == "." || file.Name == "..") {
        errno = EISDIR;
        return std::nullopt;
    }
    file.Folder = Descriptor(
        Uninterrupted([&] { return open(file.FolderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!file.Folder) return std::nullopt;
    struct stat old {};
    if (fstatat(file.Folder.Number(), file.Name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0) {
        if (S_ISDIR(old.st_mode)) {
            errno = EISDIR;
            return std::nullopt;
        }
        file.Mode = old.st_mode & 07777;
    }
    if (!file.Open()) return std::nullopt;
    return file;
}

bool NewFile::Open() {
    const mode_t first = Mode ? 0600 : 0666;
    Content = Descriptor(
        Uninterrupted([&] { return open(FolderPath.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, first); }));
    if (!Content) {
        // Some disks hold no nameless files. A new name of our own can be nobody's link.
        TemporaryName = RandomName();
        Content = Descriptor(Uninterrupted([&] {
            return openat(Folder.Number(), TemporaryName.c_str(),
                          O_CREAT | O_EXCL | O_NOFOLLOW | O_WRONLY | O_CLOEXEC, first);
        }));
        if (!Content) {
            TemporaryName.clear();
            return false;
        }
    }
    return !Mode || fchmod(Content.Number(), *Mode) == 0;
}

bool NewFile::GiveName() {
    if (!TemporaryName.empty()) return true;
    const std::string fresh = RandomName();
    const std::string itself = "/proc/self/fd/" + std::to_string(Content.Number());
    if (linkat(AT_FDCWD, itself.c_str(), Folder.Number(), fresh.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        return false;
    }
    TemporaryName = fresh;
    return true;
}

bool NewFile::TakePlace(Sync sync) {
    const bool wait = sync == Sync::Yes;
    if (wait && Uninterrupted([&] { return fsync(Content.Number()); }) != 0) return false;
    if (!GiveName()) return false;
    if (!Content.Close()) return false;
    if (renameat(Folder.Number(), TemporaryName.c_str(), Folder.Number(), Name.c_str()) != 0) return false;
    TemporaryName.clear();
    // The new content stands already; a disk that cannot sync folders is no failure of it.
    if (wait) Uninterrupted([&] { return fsync(Folder.Number()); });
    return true;
}

NewFile::~NewFile() {
    if (TemporaryName.empty() || !Folder) return;
    const int kept = errno;
    unlinkat(Folder.Number(), TemporaryName.c_str(), 0);
    errno = kept;
}

}  // namespace Corvetape
