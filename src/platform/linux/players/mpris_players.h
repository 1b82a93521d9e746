#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/players.h"

namespace Corvetape {

/// Where the session bus of this user is; empty if none is running. Never starts one.
std::string SessionBusAddress();

/// Which bus is listened to, and how long a player may take to answer.
struct MprisTerms {
    std::string Bus = SessionBusAddress();
    std::chrono::milliseconds AnswerLimit = std::chrono::seconds(2);  ///< for one question to a player
};

/// The players on the session bus that say what they play, by the names that they have there.
///
/// A thread of its own speaks with the bus: neither a bus nor a player that hangs is waited for, and what
/// changes nothing does not wake the logic. A machine without a session bus has no players. A bus that ends
/// takes its players with it; it is looked for again every 5 s.
class MprisPlayers : public Players {
 public:
    /// `loop` outlives it.
    explicit MprisPlayers(EventLoop& loop);
    MprisPlayers(EventLoop& loop, MprisTerms options);

    /// Nothing is reported any more. Waits for a bus that is just being connected to.
    ~MprisPlayers() override;
    MprisPlayers(const MprisPlayers&) = delete;
    MprisPlayers& operator=(const MprisPlayers&) = delete;

    /// Called a second time it begins anew, for the new listener only.
    void Listen(std::function<void(const PlayerReport&)> changed,
                std::function<void(const std::string& player)> gone) override;

 private:
    class Thread;

    EventLoop& Loop;
    const MprisTerms Choice;
    std::unique_ptr<Thread> Listening;
};

}  // namespace Corvetape
