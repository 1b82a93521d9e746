#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/event_loop.h"
#include "platform/players.h"

namespace Corvetape {

/// Players made of what a test says.
class SimPlayers : public Players {
 public:
    /// The loop outlives it.
    explicit SimPlayers(EventLoop& loop) : Loop(loop) {}

    void Listen(std::function<void(const PlayerReport&)> changed,
                std::function<void(const std::string& player)> gone) override {
        Changed = std::move(changed);
        Gone = std::move(gone);
    }

    /// A player says all this from now on.
    void Say(const PlayerReport& report) {
        Loop.Post([this, report] {
            if (Changed) Changed(report);
        });
    }

    /// A player has ended.
    void Quit(const std::string& player) {
        Loop.Post([this, player] {
            if (Gone) Gone(player);
        });
    }

 private:
    EventLoop& Loop;
    std::function<void(const PlayerReport&)> Changed;
    std::function<void(const std::string& player)> Gone;
};

}  // namespace Corvetape
