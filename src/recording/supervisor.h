#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "audio/audio_ring.h"
#include "audio/cut_state.h"
#include "audio/pause_settings.h"
#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "core/lifecycle_flags.h"
#include "core/media_state.h"
#include "core/settings/settings.h"
#include "forms/frm_cover_buttons.h"
#include "forms/frm_main.h"
#include "forms/frm_quick_buttons.h"
#include "platform/clock.h"

namespace Corvetape {

/// The state that the supervisor watches and changes. All of it outlives the supervisor.
struct SupervisorParts {
    frmMain& Form;
    frmQuickButtons& PlainBar;
    frmCoverButtons& CoverBar;
    const Corvetape::Clock& Clock;
    const Corvetape::Settings& Settings;
    const PauseSettings& Pause;
    LifecycleFlags& Lifecycle;
    RecordingFlags& Flags;
    CutState& Cut;
    SignalState& Signal;
    MediaState& Media;
    const AudioRing& Ring;
    int32_t& MaxBuffersUsed;
};

/// What the supervisor asks of others, by subject. Every one is set.
struct SupervisorActions {
    // First run.
    std::function<bool()> FillInputDevices;
    std::function<void(const std::string& page)> OpenAssistant;
    std::function<void()> RunFirstBatch;  ///< opens the batch file of the first start
    // Media data.
    std::function<bool()> ProviderWanted;
    std::function<void()> ChooseProvider;
    std::function<void()> GetStationData;
    std::function<void()> RestartRadio;
    std::function<void(const std::string& cover)> LoadImage;
    std::function<bool()> LaunchInProgress;
    std::function<bool()> IsSongExcluded;
    // Recording.
    std::function<void()> ShowFlags;  ///< check boxes follow the flags
    std::function<bool()> SongFileOpen;
    std::function<void()> BreakOff;  ///< the song that plays is not kept; the next one is
    std::function<void()> AbortSong;
    std::function<bool()> DrainAudioRing;  ///< false if a song file could not be made: the program ends
    std::function<bool()> CheckDisk;       ///< once a minute; false if the program has to end
    std::function<void()> CheckReserve;    ///< in all other seconds: is there space for ten more minutes?
    std::function<void()> CheckUpdate;
    std::function<void()> Unload;
    // Telling.
    std::function<std::string(const std::string& key, std::span<const std::string> arguments)> FormatMsg;
    std::function<void(const std::string& kind, const std::string& text)> WriteLog;
    std::function<void(const std::string& text)> WarningBox;
    std::function<void(const std::string& tip)> ShowTrayTip;
    std::function<void(int32_t state)> ShowTrayState;  ///< 0 idle, 1 recording, 2 waiting
};

/// The once-a-second look at everything that no buffer drives. It runs from the end of the start to the
/// end of the program; the order of its steps matters.
class Supervisor {
 public:
    Supervisor(SupervisorParts parts, SupervisorActions actions);

    /// Runs since the start of the program.
    int32_t Ticks() const { return TickCount; }

    /// Runs since a song boundary was last seen.
    int32_t SongAgeSeconds() const { return SongAge; }

    /// True from the notice of a silence on up to the return of the sound, which switches recording on.
    bool WaitsForSound() const { return SilenceNoticeShown; }

    /// Shows in the status line how long the silence lasts, and that a recording which is off waits for its
    /// end.
    void ShowSilence();

    /// One event of the timer: acts if the whole clock second has changed.
    void TimerFired();

    /// The names of the steps of a run, in their order.
    static std::span<const char* const> StepNames();

 private:
    enum class Next { Continue, Stop };
    using Step = Next (Supervisor::*)();
    struct NamedStep {
        const char* Name;
        Step Run;
    };

    Next FirstRun();
    Next FindProvider();
    Next PollOutsideMediaMode();
    Next AgeSong();
    Next TakeSongData();
    Next ShowProvider();
    Next ShowMedia();
    Next ShowFlags();
    Next ShowState();
    Next CountDown();
    Next WatchSilence();
    Next WatchBuffers();
    Next CutByTime();
    Next Drain();
    Next WatchDisk();

    Next ReactToSilence();
    Next EndAfterSilence();
    void SoundReturned();
    /// What the recorder decides by itself is in the log and in the window.
    void ReportDecision(const std::string& text);

    void ShowNoMedia();
    void ShowMediaTexts();
    std::string Text(const std::string& key, std::initializer_list<std::string> arguments = {}) const;

    static const NamedStep Steps[];

    SupervisorParts Parts;
    SupervisorActions Actions;
    int32_t LastSecond = -1;
    int32_t TickCount = 0;
    int16_t SongAge = 0;
    bool SongDataTaken = false;
    int16_t TrayState = 0;
    bool SilenceNoticeShown = false;
    bool EndAfterSilenceDone = false;
    int16_t MinuteCounter = 0;
    uint64_t FramesLostWhenTold = 0;  ///< when this computer was last reported too busy
};

}  // namespace Corvetape
