#pragma once

#include <functional>

#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "core/deferred_messages.h"
#include "core/help_keys.h"
#include "core/media_state.h"
#include "core/settings/settings.h"
#include "forms/frm_main.h"
#include "media/player_bridge.h"
#include "post/lists/watch_pages.h"
#include "recording/disk_check.h"
#include "recording/floating_bars.h"
#include "recording/heard_song.h"
#include "recording/level_display.h"
#include "recording/run_songs.h"
#include "recording/signal_trace.h"
#include "recording/song_actions.h"
#include "ui/cover_pictures.h"
#include "ui/words.h"

namespace Corvetape {

/// What the window shows and what it hands on. All of it outlives the window.
struct UiParts {
    frmMain& Form;
    const RecordingFlags& Flags;
    const SignalState& Signal;
    const MediaState& Media;
    const PlayerBridge* Players;  ///< null in a run without players
    const PauseSettings& Pause;
    const DeferredMessages& Deferred;
    LevelDisplay& Levels;
    SignalTrace& Trace;
    RunSongs& Songs;
    SongActions& Actions;
    WatchPages& Lists;
    FloatingBars& Bars;
    HelpKeys& Keys;
    const Settings& Options;
    CoverPictures& Covers;
    const HeardSong& Heard;
    const DiskCheck& Disk;
    Words Say;
    std::function<bool()> Close;  ///< the user closes the window; false if it has to stay for now
};

}  // namespace Corvetape
