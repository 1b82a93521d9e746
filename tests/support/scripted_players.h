#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/players.h"

namespace Corvetape {

/// Players that say what the test says.
class ScriptedPlayers : public Players {
 public:
    void Listen(std::function<void(const PlayerReport&)> changed,
                std::function<void(const std::string&)> gone) override {
        ++Asked;
        Changed = std::move(changed);
        Gone = std::move(gone);
    }

    std::function<void(const PlayerReport&)> Changed;
    std::function<void(const std::string&)> Gone;
    int Asked = 0;  ///< how often somebody began to listen
};

}  // namespace Corvetape
