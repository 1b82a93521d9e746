#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_result.h"

namespace Corvetape {

/// A file opened for writing. Closed by its destructor if nobody did.
class File {
 public:
    virtual ~File() = default;

    /// Writes all bytes at the position and moves it past them. Fails if not all could be written.
    virtual FileResult Write(std::span<const std::byte> bytes) = 0;

    /// Moves the position, counted from the file's beginning.
    virtual FileResult Seek(uint64_t position) = 0;

    virtual uint64_t Position() const = 0;

    /// Cuts the file to its first `size` bytes; one that is no longer stays as it is. The position does not
    /// move.
    virtual FileResult CutBack(uint64_t size) = 0;

    /// Asks that all that was written so far be brought to the disk, so that it outlives a power cut. Does
    /// not wait and reports nothing. A disk whose files can be made again need not do it.
    virtual void SyncSoon() {}

    /// Fails if the system reports late that something was not written. The file is closed in any case.
    virtual FileResult Close() = 0;
};

/// Something that only one process has at a time, as long as the object lives.
class FileLock {
 public:
    virtual ~FileLock() = default;
};

struct FileEntry {
    std::string Name;  ///< without its folder
    uint64_t Size = 0;
    bool IsFolder = false;

    bool operator==(const FileEntry&) const = default;
};

/// Paths are UTF-8 with "/" between folders. Every failure carries its reason.
class Files {
 public:
    virtual ~Files() = default;

    /// Creates or empties a file.
    virtual Opened<File> Create(const std::string& path) = 0;

    /// Creates a file that is not there yet. Whatever stands at the path makes it fail, also a symbolic link
    /// that leads nowhere: nobody's file is written over or written through a link.
    virtual Opened<File> CreateNew(const std::string& path) = 0;

    /// The whole content if the file exists and holds at most `limit` bytes.
    virtual FileOr<std::string> ReadAll(const std::string& path, uint64_t limit) = 0;

    /// `count` bytes at most from `offset` on; an empty text past the end.
    virtual FileOr<std::string> ReadPart(const std::string& path, uint64_t offset, size_t count) = 0;

    /// Overwrites bytes inside an existing file; the rest stays.
    virtual FileResult Patch(const std::string& path, uint64_t offset, std::string_view bytes) = 0;

    /// Replaces the content so that at any moment, also after a crash, either the old or the new is there.
    virtual FileResult ReplaceAtomically(const std::string& path, std::string_view content) = 0;

    /// The same without waiting for the disk: it outlives the end of the process at any moment, but a power
    /// cut may take the last seconds of it. For what is written often and means little.
    virtual FileResult ReplaceQuickly(const std::string& path, std::string_view content) {
        return ReplaceAtomically(path, content);
    }

    /// Opens, appends in one write, closes. Creates a missing file, not a missing folder.
    virtual FileResult Append(const std::string& path, std::string_view content) = 0;

    /// Replaces a file that stands at `to`.
    virtual FileResult Rename(const std::string& from, const std::string& to) = 0;

    virtual FileResult Copy(const std::string& from, const std::string& to) = 0;

    /// Gives the content of a file, which nobody changes any more, a second name that nothing has yet. It
    /// costs neither time nor room where the disk can do that, and is a copy elsewhere.
    virtual FileResult Link(const std::string& from, const std::string& to) {
        if (FileSize(to)) return {"link", to, std::make_error_code(std::errc::file_exists)};
        return Copy(from, to);
    }

    virtual FileResult Delete(const std::string& path) = 0;

    /// Creates the last level only. Fails if it is there already or its parent is missing.
    virtual FileResult MakeFolder(const std::string& path) = 0;

    /// Removes an empty folder.
    virtual FileResult DeleteFolder(const std::string& path) = 0;

    virtual bool IsFolder(const std::string& path) = 0;

    /// Size of a file. Fails if there is none.
    virtual FileOr<uint64_t> FileSize(const std::string& path) = 0;

    /// What a folder holds, in the order of names; nothing if it cannot be read.
    virtual std::vector<FileEntry> List(const std::string& folder) = 0;

    /// True if both paths lead to one file, under whatever names.
    virtual bool SameFile(const std::string& one, const std::string& other) {
        return one == other && FileSize(one);
    }

    /// True if both paths are on one drive, so that what is written to one takes room from the other. False
    /// also if one of them cannot be asked.
    virtual bool SameDrive(const std::string& one, const std::string& other) = 0;

    /// Waits, for a fraction of a second at most, until no other process has the lock of this name, a path
    /// whose file is made for it. Null if it could not be had.
    virtual std::unique_ptr<FileLock> Lock(const std::string& /*path*/) { return nullptr; }

    /// Bytes free for this user on the folder's disk.
    virtual FileOr<uint64_t> FreeSpace(const std::string& folder) = 0;
};

}  // namespace Corvetape
