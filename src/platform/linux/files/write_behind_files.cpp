#include "platform/linux/files/write_behind_files.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/linux/loop/thread_signals.h"

namespace Corvetape {
namespace {

/// Large enough that the calls cost nothing beside the copying, small enough for a processor's cache.
constexpr size_t PieceBytes = size_t{512} * 1024;
constexpr size_t MostPieces = 2;  // besides the one that is being collected

/// A stretch of a file to be written.
struct Piece {
    uint64_t Position = 0;
    std::vector<std::byte> Bytes;
};

class WriteBehindFile : public File {
 public:
    explicit WriteBehindFile(std::unique_ptr<File> openFile)
        : Output(std::move(openFile)), Thread([this] { WritePieces(); }) {}
    ~WriteBehindFile() override { WriteBehindFile::Close(); }
    WriteBehindFile(const WriteBehindFile&) = delete;
    WriteBehindFile& operator=(const WriteBehindFile&) = delete;

    FileResult Write(std::span<const std::byte> bytes) override {
        while (!bytes.empty()) {
            const auto room = static_cast<size_t>(PieceBytes - At % PieceBytes);
            const std::span<const std::byte> part = bytes.first(std::min(room, bytes.size()));
            if (Present.Bytes.empty()) Begin();
            Present.Bytes.insert(Present.Bytes.end(), part.begin(), part.end());
            At += part.size();
            bytes = bytes.subspan(part.size());
            if (part.size() != room) continue;
            if (FileResult result = HandOver(); !result) return result;
        }
        return Result();
    }

    FileResult Seek(uint64_t target) override {
        if (FileResult result = HandOver(); !result) return result;
        At = target;
        return {};
    }

    uint64_t Position() const override { return At; }

    FileResult CutBack(uint64_t size) override {
        if (FileResult result = HandOver(); !result) return result;
        std::unique_lock guard(Lock);
        Changed.wait(guard, [this] { return Waiting.empty(); });
        // The thread has nothing to do, so the file is not in use.
        if (!HasFailed) KeepFailure(Output->CutBack(size));
        guard.unlock();
        return Result();
    }

    FileResult Close() override {
        if (!Thread.joinable()) return {};
        HandOver();  // its failure is reported below
        {
            const std::lock_guard guard(Lock);
            Ending = true;
        }
        Changed.notify_all();
        Thread.join();
        FileResult closed = Output->Close();
        return HasFailed ? Failure : closed;
    }

 private:
    void Begin() {
        Present.Position = At;
        if (Present.Bytes.capacity() == 0) Present.Bytes.reserve(PieceBytes);
    }

    /// Waits for room and gives the collected piece to the thread. Fails if writing has failed.
    FileResult HandOver() {
        if (!Present.Bytes.empty()) {
            std::unique_lock guard(Lock);
            Changed.wait(guard, [this] { return Waiting.size() < MostPieces; });
            Waiting.push_back(std::exchange(Present, {}));
            if (!Spare.empty()) {
                Present.Bytes = std::move(Spare.back());
                Spare.pop_back();
            }
            Changed.notify_all();
        }
        return Result();
    }

    /// How the writing goes: the first failure stays.
    FileResult Result() const { return HasFailed ? Failure : FileResult(); }

    /// Called with the lock held, and only as long as nothing has failed.
    void KeepFailure(FileResult result) {
        if (result) return;
        Failure = std::move(result);
        HasFailed = true;
    }

    void WritePieces() {
        LeaveSignalsToTheMainThread();
        std::unique_lock guard(Lock);
        for (;;) {
            Changed.wait(guard, [this] { return Ending || !Waiting.empty(); });
            if (Waiting.empty()) return;
            Piece& piece = Waiting.front();  // stays there while it is written: it still takes its room
            if (!HasFailed) {
                guard.unlock();
                FileResult result = Output->Seek(piece.Position);
                if (result) result = Output->Write(piece.Bytes);
                guard.lock();
                KeepFailure(std::move(result));
            }
            piece.Bytes.clear();
            Spare.push_back(std::move(piece.Bytes));
            Waiting.pop_front();
            Changed.notify_all();
        }
    }

    const std::unique_ptr<File> Output;
    uint64_t At = 0;
    Piece Present;

    std::mutex Lock;
    std::condition_variable Changed;
    std::deque<Piece> Waiting;
    std::vector<std::vector<std::byte>> Spare;  // memory of pieces that are written
    FileResult Failure;                         // set before HasFailed and never changed again
    std::atomic<bool> HasFailed = false;
    bool Ending = false;
    std::thread Thread;
};

}  // namespace

Opened<File> WriteBehindFiles::Create(const std::string& path) {
    Opened<File> file = LinuxFiles::Create(path);
    if (!file) return file;
    return std::make_unique<WriteBehindFile>(std::move(file));
}

Opened<File> WriteBehindFiles::CreateNew(const std::string& path) {
    Opened<File> file = LinuxFiles::CreateNew(path);
    if (!file) return file;
    return std::make_unique<WriteBehindFile>(std::move(file));
}

}  // namespace Corvetape
