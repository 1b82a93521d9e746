#pragma once

#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/linux/players/mpris_players.h"
#include "platform/media_controls.h"

namespace Corvetape {

/// This program on the session bus: a player whose buttons keys and panels of the desktop press, and a sender
/// of notices.
///
/// A thread of its own speaks with the bus, so that a bus that hangs holds up nothing. A bus that ends is
/// looked for again every 5 s.
class MprisService : public MediaControls, public Notices {
 public:
    /// `loop` outlives it. Without an address it is on no bus. Needs a QCoreApplication.
    explicit MprisService(EventLoop& loop, std::string bus = SessionBusAddress());
    ~MprisService() override;
    MprisService(const MprisService&) = delete;
    MprisService& operator=(const MprisService&) = delete;

    /// The program appears on the bus with its first follower.
    void Follow(MediaButtons* buttons) override;
    void Show(const PlayerDisplay& display) override;
    void Notify(const Notice& notice) override;

 private:
    class Thread;
    struct Core;

    const std::string Bus;
    std::shared_ptr<Core> Inner;  ///< a button that is still on its way finds it gone
    PlayerDisplay Shown;
    std::unique_ptr<Thread> Speaking;
};

}  // namespace Corvetape
