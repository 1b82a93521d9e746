#pragma once

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Corvetape {

/// Everything that can be asked of a disk, and so can fail.
enum class FileOperation : uint8_t {
    Create,
    Write,
    Seek,
    CutBack,
    Close,
    Read,  ///< ReadAll and ReadPart
    Patch,
    Replace,
    Append,
    Rename,
    Copy,
    Delete,
    MakeFolder,
    DeleteFolder,
    Look,  ///< IsFolder, FileSize and List
    FreeSpace,
};

/// The operation as a word, such as "Write".
std::string_view NameOf(FileOperation operation);

/// A rule: which operations fail or drag, on which paths, how often.
struct FileFault {
    std::string Pattern = "*";               ///< whole path; "*" stands for any text, "?" for one character
    std::optional<FileOperation> Operation;  ///< none: any
    int32_t Error = EIO;                     ///< 0: the operation only drags and then does its work
    uint64_t AfterCalls = 0;                 ///< so many matching operations pass first
    uint64_t AfterBytes = 0;                 ///< Write only: so many bytes a file takes; what fits is written
    uint64_t Times = std::numeric_limits<uint64_t>::max();  ///< then the fault is over
    std::chrono::milliseconds Delay{0};
};

/// True if `text` is of the form `pattern`.
bool MatchesPattern(std::string_view pattern, std::string_view text);

/// Decides which operation of a disk fails. Rules are tried in the order in which they were added; the first
/// one that strikes decides.
class SimFaults {
 public:
    size_t Add(FileFault fault);
    void Remove(size_t fault);
    void Clear();

    /// Lets the operation of this number fail, whatever it is. Operations count from 1 on.
    void FailNumber(uint64_t number, int32_t error);

    /// Stands still for a slow operation; without it none is slow.
    void DelayWith(std::function<void(std::chrono::milliseconds)> delay) { Delay = std::move(delay); }

    /// Counts an operation; its error, 0 if it may go on.
    int32_t Strike(FileOperation operation, std::string_view path);

    /// What may be written of a portion.
    struct WritePass {
        uint64_t Bytes = 0;  ///< may be written
        int32_t Error = 0;   ///< 0 if that is all of it
    };

    /// Counts a write of `bytes` to a file that has taken `taken` bytes since it was made.
    WritePass StrikeWrite(std::string_view path, uint64_t taken, uint64_t bytes);

    uint64_t Count() const { return Counted; }

    /// The operations that have failed by a fault so far, such as "Write /music/a.wav"; the last 100 of them.
    const std::vector<std::string>& Struck() const { return StruckOnes; }

 private:
    struct Rule {
        FileFault Fault;
        uint64_t Calls = 0;
        uint64_t Strikes = 0;
        bool Removed = false;
    };

    Rule* RuleFor(FileOperation operation, std::string_view path, uint64_t bytesAfter);
    int32_t Fail(FileOperation operation, std::string_view path, int32_t error);

    std::vector<Rule> Rules;
    uint64_t NumberToFail = 0;
    int32_t NumberError = EIO;
    uint64_t Counted = 0;
    std::vector<std::string> StruckOnes;
    std::function<void(std::chrono::milliseconds)> Delay;
};

}  // namespace Corvetape
