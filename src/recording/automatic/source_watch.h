#pragma once

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

/// Looks at the source of the media data twice a second with the end of song "Automatic": asks the provider,
/// and adds what a player says beyond its titles.
class SourceWatch {
 public:
    explicit SourceWatch(SourceWatchParts parts);

 private:
    void Tick();
    SourceLook Look();
    void AddPlayer(SourceLook& look, const PlayerReport& player, int64_t nowMs);

    SourceWatchParts Parts;
    SlotClock Slots;
    StreamFinder Streams;
    bool Busy = false;  ///< a tick waits for an answer of the user
};

/// The name that a source's cuts are learned by: that of a player without what distinguishes its copies.
std::string NameToLearnBy(const std::string& player);

}  // namespace Corvetape
