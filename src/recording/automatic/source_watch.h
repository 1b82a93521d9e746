#pragma once

#include <cstdint>
#include <string>

#include "core/media_state.h"
#include "forms/frm_main.h"
#include "media/player_bridge.h"
#include "media/provider_choice.h"
#include "media/title_parts.h"
#include "platform/clock.h"
#include "platform/players.h"
#include "recording/automatic/automatic_recorder.h"
#include "recording/automatic/slot_clock.h"

namespace Corvetape {

/// What the watch reads and asks. All of it outlives it.
struct SourceWatchParts {
    frmMain& Form;
    MediaState& Media;
    const Corvetape::Clock& Clock;
    ProviderChoice& Providers;
    PlayerBridge* Bridge = nullptr;  ///< null in a run without players
    AutomaticRecorder& Recorder;
};

/// Tells streams from tracks. Players count what has arrived of a stream as its length.
class StreamFinder {
 public:
    /// Whether what the player plays is a stream, whatever it says of a track. Asked at each look.
    bool IsStream(const PlayerReport& player);

 private:
    PlayerReport Before;
    int Growths = 0;  ///< looks at which the length had grown, of one title
};

/// Tells the pieces of a player from one another.
///
/// A page may call all that it ever plays by one name. So the title belongs to a piece, unless it is a file
/// of this machine, which stays the same piece when its tags are corrected. Tags may come a little later than
/// their piece.
class TrackNames {
 public:
    /// A text that stays the same for as long as one piece is meant. Asked at each look.
    std::string Of(const PlayerReport& player, int64_t nowMs);

 private:
    std::string Player;
    std::string Piece;  ///< as the player calls it
    int64_t Since = 0;  ///< when it was first called so
    std::string Title;  ///< by which it is told from others
    std::string Shown;  ///< at the look before
};

/// Whether what plays may be named by its address: an untagged file, but no stream. Whether something at
/// another machine is a stream shows after some seconds only.
class AddressNames {
 public:
    /// Asked at each look. `isStream` is what StreamFinder says.
    bool Count(const PlayerReport& player, bool isStream, int64_t nowMs);

 private:
    std::string Address;
    int64_t Since = 0;  ///< when it was first seen
};

/// Looks at the source of the media data twice a second with the end of song "Automatic": asks the provider,
/// and adds what a player says beyond its titles.
class SourceWatch {
 public:
    explicit SourceWatch(SourceWatchParts parts);

 private:
    void Tick();
    void FollowMode();
    SourceLook Look();
    void AddPlayer(SourceLook& look, const PlayerReport& player, int64_t nowMs);

    SourceWatchParts Parts;
    SlotClock Slots;
    StreamFinder Streams;
    TrackNames Tracks;
    AddressNames Names;
    bool Busy = false;  ///< a tick waits for an answer of the user
};

/// The name that a source's cuts are learned by: that of a player without what distinguishes its copies, and
/// the host of the stream that it plays, as each station has titles of its own. `stream` is the address of
/// it; empty for what is none.
std::string NameToLearnBy(const std::string& player, const std::string& stream);

}  // namespace Corvetape
