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
        : disk(std::move(ownDisk)),
          file(std::move(openFile)),
          lastError(std::move(errorPlace)),
          thread([this] { WritePieces(); }) {}
    ~WriteBehindFile() override { Close(); }
    WriteBehindFile(const WriteBehindFile&) = delete;
    WriteBehindFile& operator=(const WriteBehindFile&) = delete;

    bool Write(std::span<const std::byte> bytes) override {
        while (!bytes.empty()) {
            const auto room = static_cast<size_t>(PieceBytes - position % PieceBytes);
            const std::span<const std::byte> part = bytes.first(std::min(room, bytes.size()));
            if (present.Bytes.empty()) Begin();
            present.Bytes.insert(present.Bytes.end(), part.begin(), part.end());
            position += part.size();
            bytes = bytes.subspan(part.size());
            if (part.size() == room && !HandOver()) return false;
        }
        return Told();
    }

    bool Seek(uint64_t target) override {
        if (!HandOver()) return false;
        position = target;
        return true;
    }

    uint64_t Position() const override { return position; }

    bool CutBack(uint64_t size) override {
        if (!HandOver()) return false;
        std::unique_lock guard(lock);
        changed.wait(guard, [this] { return waiting.empty(); });
        // The thread has nothing to do, so the file is not in use.
        if (error == 0 && !file->CutBack(size)) error = disk->LastError();
        guard.unlock();
        return Told();
    }

    bool Close() override {
        if (!thread.joinable()) return true;
        HandOver();
        {
            const std::lock_guard guard(lock);
            ending = true;
        }
        changed.notify_all();
        thread.join();
        const bool closed = file->Close();
        if (!closed) *lastError = disk->LastError();
        return Told() && closed;
    }

 private:
    void Begin() {
        present.Position = position;
        if (present.Bytes.capacity() == 0) present.Bytes.reserve(PieceBytes);
    }

    /// Waits for room and gives the collected piece to the thread. False if writing has failed.
    bool HandOver() {
        if (!present.Bytes.empty()) {
            std::unique_lock guard(lock);
            changed.wait(guard, [this] { return waiting.size() < MostPieces; });
            waiting.push_back(std::exchange(present, {}));
            if (!spare.empty()) {
                present.Bytes = std::move(spare.back());
                spare.pop_back();
            }
            changed.notify_all();
        }
        return Told();
    }

    /// False, and the system's number is left where it is looked for, once writing has failed.
    bool Told() {
        if (error != 0) *lastError = error;
        return error == 0;
    }

    void WritePieces() {
        LeaveSignalsToTheMainThread();
        std::unique_lock guard(lock);
        for (;;) {
            changed.wait(guard, [this] { return ending || !waiting.empty(); });
            if (waiting.empty()) return;
            Piece& piece = waiting.front();  // stays there while it is written: it still takes its room
            if (error == 0) {
                guard.unlock();
                const bool good = file->Seek(piece.Position) && file->Write(piece.Bytes);
                guard.lock();
                if (!good) error = disk->LastError();
            }
            piece.Bytes.clear();
            spare.push_back(std::move(piece.Bytes));
            waiting.pop_front();
            changed.notify_all();
        }
    }

    const std::unique_ptr<LinuxFiles> disk;
    const std::unique_ptr<File> file;
    const std::shared_ptr<int32_t> lastError;
    uint64_t position = 0;
    Piece present;

    std::mutex lock;
    std::condition_variable changed;
    std::deque<Piece> waiting;
    std::vector<std::vector<std::byte>> spare;  // memory of pieces that are written
    std::atomic<int32_t> error = 0;
    bool ending = false;
    std::thread thread;
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
