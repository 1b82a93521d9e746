#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace Corvetape {

enum class PlayerStatus {
    Unknown,  ///< of somebody who does not say
    Playing,
    Paused,
    Stopped,
};

/// What a media player on this machine says of itself.
struct PlayerReport {
    std::string Player;  ///< name of the player, unlike that of any other that runs
    bool Playing = false;
    std::string Genre;
    std::string Artist;
    std::string Title;
    std::string Album;
    std::string Cover;  ///< address of a picture
    PlayerStatus Status = PlayerStatus::Unknown;
    std::string TrackId = {};  ///< what the player calls the piece
    std::string Address = {};  ///< of the file or stream
    int64_t LengthMs = 0;      ///< of the piece; 0 if it has no end or the player does not say
    /// On the monotonic clock, where a piece that plays would have begun: negative if that is further back
    /// than the machine runs. Nothing if it is not known.
    std::optional<int64_t> BeganAtMs = {};

    bool operator==(const PlayerReport&) const = default;
};

/// The media players of this machine. They come and go as they like.
class Players {
 public:
    virtual ~Players() = default;

    /// From now on, and for those that run already: `changed` with everything that a player says, each time
    /// when something of it has changed, and `gone` when a player has ended. Both on the logic thread, from
    /// within Listen only by players that know at once what they play.
    virtual void Listen(std::function<void(const PlayerReport&)> changed,
                        std::function<void(const std::string& player)> gone) = 0;

    /// They are the recorded input itself: what they say is complete, and its first title was there before
    /// its first sound and so is no change of title.
    virtual bool AreTheInput() const { return false; }
};

}  // namespace Corvetape
