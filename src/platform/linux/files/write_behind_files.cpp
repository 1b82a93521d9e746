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
    /// `ownDisk` is the one that `openFile` was opened by, used by the writing thread alone.
    WriteBehindFile(std::unique_ptr<LinuxFiles> ownDisk, std::unique_ptr<File> openFile,
                    std::shared_ptr<int32_t> errorPlace)
        : Disk(std::move(ownDisk)),
          Output(std::move(openFile)),
          ErrorPlace(std::move(errorPlace)),
          Thread([this] { WritePieces(); }) {}
    ~WriteBehindFile() override { Close(); }
    WriteBehindFile(const WriteBehindFile&) = delete;
    WriteBehindFile& operator=(const WriteBehindFile&) = delete;

    bool Write(std::span<const std::byte> bytes) override {
        while (!bytes.empty()) {
            const auto room = static_cast<size_t>(PieceBytes - At % PieceBytes);
            const std::span<const std::byte> part = bytes.first(std::min(room, bytes.size()));
            if (Present.Bytes.empty()) Begin();
            Present.Bytes.insert(Present.Bytes.end(), part.begin(), part.end());
            At += part.size();
            bytes = bytes.subspan(part.size());
            if (part.size() == room && !HandOver()) return false;
        }
        return Told();
    }

    bool Seek(uint64_t target) override {
        if (!HandOver()) return false;
        At = target;
        return true;
    }

    uint64_t Position() const override { return At; }

    bool CutBack(uint64_t size) override {
        if (!HandOver()) return false;
        std::unique_lock guard(Lock);
        Changed.wait(guard, [this] { return Waiting.empty(); });
        // The thread has nothing to do, so the file is not in use.
        if (Error == 0 && !Output->CutBack(size)) Error = Disk->LastError();
        guard.unlock();
        return Told();
    }

    bool Close() override {
        if (!Thread.joinable()) return true;
        HandOver();
        {
            const std::lock_guard guard(Lock);
            Ending = true;
        }
        Changed.notify_all();
        Thread.join();
        const bool closed = Output->Close();
        if (!closed) *ErrorPlace = Disk->LastError();
        return Told() && closed;
    }

 private:
    void Begin() {
        Present.Position = At;
        if (Present.Bytes.capacity() == 0) Present.Bytes.reserve(PieceBytes);
    }

    /// Waits for room and gives the collected piece to the thread. False if writing has failed.
    bool HandOver() {
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
        return Told();
    }

    /// False, and the system's number is left where it is looked for, once writing has failed.
    bool Told() {
        if (Error != 0) *ErrorPlace = Error;
        return Error == 0;
    }

    void WritePieces() {
        LeaveSignalsToTheMainThread();
        std::unique_lock guard(Lock);
        for (;;) {
            Changed.wait(guard, [this] { return Ending || !Waiting.empty(); });
            if (Waiting.empty()) return;
            Piece& piece = Waiting.front();  // stays there while it is written: it still takes its room
            if (Error == 0) {
                guard.unlock();
                const bool good = Output->Seek(piece.Position) && Output->Write(piece.Bytes);
                guard.lock();
                if (!good) Error = Disk->LastError();
            }
            piece.Bytes.clear();
            Spare.push_back(std::move(piece.Bytes));
            Waiting.pop_front();
            Changed.notify_all();
        }
    }

    const std::unique_ptr<LinuxFiles> Disk;
    const std::unique_ptr<File> Output;
    const std::shared_ptr<int32_t> ErrorPlace;
    uint64_t At = 0;
    Piece Present;

    std::mutex Lock;
    std::condition_variable Changed;
    std::deque<Piece> Waiting;
    std::vector<std::vector<std::byte>> Spare;  // memory of pieces that are written
    std::atomic<int32_t> Error = 0;
    bool Ending = false;
    std::thread Thread;
};

}  // namespace

std::unique_ptr<File> WriteBehindFiles::Create(const std::string& path) {
    auto disk = std::make_unique<LinuxFiles>();
    std::unique_ptr<File> file = disk->Create(path);
    return Behind(std::move(disk), std::move(file));
}

std::unique_ptr<File> WriteBehindFiles::CreateNew(const std::string& path) {
    auto disk = std::make_unique<LinuxFiles>();
    std::unique_ptr<File> file = disk->CreateNew(path);
    return Behind(std::move(disk), std::move(file));
}

/// `file` of `disk`, or the number of its failure.
std::unique_ptr<File> WriteBehindFiles::Behind(std::unique_ptr<LinuxFiles> disk, std::unique_ptr<File> file) {
    if (!file) {
        *ErrorPlace() = disk->LastError();
        return nullptr;
    }
    return std::make_unique<WriteBehindFile>(std::move(disk), std::move(file), ErrorPlace());
}

}  // namespace Corvetape
