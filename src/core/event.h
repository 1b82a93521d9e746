#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace Corvetape {

/// A list of handlers that run one after the other, in the order in which they were connected.
/// A handler may connect further ones; those run from the next time on.
template <typename... Arguments>
class Event {
 public:
    void Connect(std::function<void(Arguments...)> handler) { Handlers.push_back(std::move(handler)); }

    void Raise(Arguments... arguments) const {
        const size_t count = Handlers.size();
        for (size_t i = 0; i < count; ++i) {
            const auto handler = Handlers[i];  // a copy: the list may grow while it runs
            handler(arguments...);
        }
    }

 private:
    std::vector<std::function<void(Arguments...)>> Handlers;
};

}  // namespace Corvetape
