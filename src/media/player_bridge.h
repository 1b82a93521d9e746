#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/settings/registry.h"
#include "platform/event_loop.h"
#include "platform/players.h"

namespace Corvetape {

/// Where the values of the media player lie, under the user's root. They live in memory only.
inline constexpr const char* PlayerKeyPath =
    "Software\\Microsoft\\MediaPlayer\\UIPlugins\\{4DB2DDEA-226A-4791-9F22-D293B7105258}";

/// How long the fields of a piece may take to arrive one after the other.
inline constexpr int32_t PlayerSettleMs = 200;

/// A title "Artist - Song" without an artist, split at the first " - "; everything else as it is.
PlayerReport WithSplitTitle(PlayerReport report);

/// The name of a player as a person would say it: without the part of its address on the bus that all players
/// share, and without the number of one of several that run.
std::string PlayerNameInWords(std::string_view player);

/// Keeps five values current out of what all players of the machine say: "Genre", "Artist", "Title", "Album"
/// and, last, "Status", which is "Playing" or "Stopped"; and, beside them, "Cover". Of several players the
/// one that plays counts, of several that play the one that began last.
class PlayerBridge {
 public:
    /// All of them outlive it. Begins to listen.
    PlayerBridge(Players& players, RegistryBranches& registry, EventLoop& loop);
    ~PlayerBridge();
    PlayerBridge(const PlayerBridge&) = delete;
    PlayerBridge& operator=(const PlayerBridge&) = delete;

    /// Asks all players anew. What they said last stands until their answers have had PlayerSettleMs to
    /// arrive.
    void ListenAnew();

    /// Of several that play, the one that began first is to count from now on, for as long as it plays.
    void FirstCounts(bool first) { KeepsFirst = first; }

    /// All that the player says that counts, or that counted last while nobody plays; nothing of it once it
    /// is gone.
    const PlayerReport& Present() const { return Current; }

    /// Players beside it play.
    bool OthersPlay() const { return Others; }

    /// True while a player runs, whether or not it plays.
    bool PlayerPresent() const { return !Reports.empty(); }

    /// See Players::AreTheInput.
    bool IsTheInput() const { return Source.AreTheInput(); }

 private:
    struct Entry {
        PlayerReport Report;
        uint64_t BeganAt = 0;  ///< number of its last begin among all begins
        bool Heard = true;     ///< since all were asked
    };

    void Listen();
    void Changed(const PlayerReport& report);
    void Gone(const std::string& player);
    const PlayerReport* Counting() const;
    void Settle();
    void Publish();
    void FollowPresent(const PlayerReport& counting);
    void Write(const char* name, const std::string& value);

    Players& Source;
    RegistryBranches& Registry;
    std::shared_ptr<bool> Alive;  ///< guards events that come after the end
    std::unique_ptr<LoopTimer> Timer;
    std::map<std::string, Entry> Reports;
    uint64_t Begins = 0;
    PlayerReport Published;
    PlayerReport Current;
    bool KeepsFirst = false;
    bool Others = false;
};

}  // namespace Corvetape
