#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/event_loop.h"
#include "platform/players.h"
#include "platform/sound_source.h"

namespace Corvetape {

/// An input that knows itself what it plays, as a player among those of the machine: a sound file, a made-up
/// radio, a table of titles. It plays for as long as it is there.
class SourcePlayers : public Players {
 public:
    /// `read` gives what plays at the moment of the call. The loop outlives it.
    SourcePlayers(EventLoop& loop, std::string name, std::function<SourceMedia()> read);

    void Listen(std::function<void(const PlayerReport&)> changed,
                std::function<void(const std::string& player)> gone) override;
    bool AreTheInput() const override { return true; }

 private:
    void Look();

    std::string Name;
    std::function<SourceMedia()> Read;
    std::function<void(const PlayerReport&)> Changed;
    std::optional<SourceMedia> Last;
    std::unique_ptr<LoopTimer> Timer;
};

}  // namespace Corvetape
