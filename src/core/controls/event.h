#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Corvetape {

/// Ends a connection to an event when it is destroyed. It may outlive the event.
class Connection {
 public:
    Connection() = default;
    explicit Connection(std::function<void()> disconnect) : Disconnect(std::move(disconnect)) {}
    ~Connection() { Release(); }
    Connection(Connection&& other) noexcept : Disconnect(std::exchange(other.Disconnect, nullptr)) {}
    Connection& operator=(Connection&& other) noexcept {
        if (this == &other) return *this;
        Release();
        Disconnect = std::exchange(other.Disconnect, nullptr);
        return *this;
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Ends the connection now.
    void Release() {
        if (const auto disconnect = std::exchange(Disconnect, nullptr)) disconnect();
    }

 private:
    std::function<void()> Disconnect;
};

/// A list of handlers that run one after the other, in the order in which they were connected.
/// A handler may connect further ones; those run from the next time on. It may disconnect any, itself
/// included; those do not run again, not even in the same round.
template <typename... Arguments>
class Event {
 public:
    using Handler = std::function<void(Arguments...)>;

    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    /// Connects for as long as the event lives.
    void Connect(Handler handler) {
        List->Entries.push_back({0, std::make_shared<Handler>(std::move(handler))});
    }

    /// Connects for as long as the result lives, for listeners that may go before the event does.
    [[nodiscard]] Connection Listen(Handler handler) {
        const uint64_t id = ++List->LastId;
        List->Entries.push_back({id, std::make_shared<Handler>(std::move(handler))});
        return Connection([weak = std::weak_ptr<Handlers>(List), id] {
            if (const auto list = weak.lock()) list->Remove(id);
        });
    }

    void Raise(Arguments... arguments) const {
        const std::shared_ptr<Handlers> list = List;  // a handler may destroy the event
        ++list->Rounds;
        const size_t count = list->Entries.size();
        for (size_t i = 0; i < count; ++i) {
            // A copy: the list may grow while the handler runs, and the handler may be disconnected.
            if (const std::shared_ptr<Handler> handler = list->Entries[i].Call) (*handler)(arguments...);
        }
        if (--list->Rounds == 0) std::erase_if(list->Entries, [](const Entry& each) { return !each.Call; });
    }

 private:
    struct Entry {
        uint64_t Id;  // 0 for those that cannot be disconnected
        std::shared_ptr<Handler> Call;
    };

    struct Handlers {
        std::vector<Entry> Entries;
        uint64_t LastId = 0;
        int32_t Rounds = 0;  // how many rounds are under way; entries keep their places meanwhile

        void Remove(uint64_t id) {
            const auto found = std::ranges::find(Entries, id, &Entry::Id);
            if (found == Entries.end()) return;
            found->Call.reset();
            if (Rounds == 0) Entries.erase(found);
        }
    };

    std::shared_ptr<Handlers> List = std::make_shared<Handlers>();
};

}  // namespace Corvetape
