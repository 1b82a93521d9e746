#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "app/program.h"
#include "app/search_break.h"
#include "audio/capture.h"
#include "audio/drain.h"
#include "audio/route.h"
#include "audio/song_writer.h"
#include "core/controls/messages.h"
#include "core/log.h"
#include "core/settings/registry.h"
#include "core/settings/settings_store.h"
#include "core/text/placeholders.h"
#include "media/built_in_browser.h"
#include "media/cover_images.h"
#include "media/player_bridge.h"
#include "media/provider_adoption.h"
#include "media/provider_choice.h"
#include "media/station_launch.h"
#include "mixer/auto_gain.h"
#include "mixer/input_list.h"
#include "mixer/input_search.h"
#include "mixer/mixer_of_source.h"
#include "mixer/mixer_page.h"
#include "mixer/mixer_rescue.h"
#include "mixer/mixer_wait.h"
#include "mixer/mod_mixer.h"
#include "post/encoders/encoder_choice.h"
#include "post/encoders/encoder_tools.h"
#include "post/lists/watch_pages.h"
#include "post/options/about_links.h"
#include "post/options/folder_selection.h"
#include "post/options/log_viewer.h"
#include "post/options/program_options.h"
#include "post/transfer/song_notes.h"
#include "post/transfer/transfer_job.h"
#include "recording/automatic/automatic_recorder.h"
#include "recording/automatic/automatic_targets.h"
#include "recording/automatic/learned_cuts.h"
#include "recording/automatic/source_watch.h"
#include "recording/disk_check.h"
#include "recording/floating_bars.h"
#include "recording/level_display.h"
#include "recording/media_poll.h"
#include "recording/pause_control.h"
#include "recording/recording_look.h"
#include "recording/session.h"
#include "recording/song_actions.h"
#include "recording/supervisor.h"

namespace Corvetape {

/// Name of the value that counts the songs of all runs.
inline constexpr const char* SongTotal = "TotalCountOfSongs";

/// What the parts need of the program that they belong to. The references outlive the parts.
struct ProgramLinks {
    const RunOptions& Options;
    const ProgramEvents& Events;
    const DesktopSteps& Desktop;
    std::function<void()> RequestUnload;
    std::function<void()> TransferNow;
    std::function<void()> CollectJobs;
    std::function<void()> Close;
};

/// The parts of a program in the order in which they are made, from the bottom up. Each is handed what it
/// needs of the others here and nowhere else.
struct ProgramParts {
    ProgramParts(Machine machine, State& state, ProgramLinks links);
    ProgramParts(const ProgramParts&) = delete;
    ProgramParts& operator=(const ProgramParts&) = delete;

    /// An encoder has ended: takes what it tells of its music file, and lets go of a song that has one.
    void EndJob(const JobResult& result);

    /// Looks after a few of the songs that earlier runs have left, beside the recording.
    void RecoverSongs();

    /// Asks an ffmpeg for its WMA encoder, or remembers that this very file had it the last time: starting
    /// it takes longer than the rest of the start.
    std::string WmaEncoderVersion(const std::string& ffmpeg);

    /// What the song in SongMedia is called as a music file, by which people know it.
    std::string NameOfMusicFile() const;

    /// Brings the note beside the song that is being written up to date.
    void NoteSong();

    /// Notes what is known of a song, open or closed.
    void NoteSong(const std::string& baseName, const STATIONANDSONGDATA& media, bool wanted);

    /// Reads the settings of a source, those of this run for any source among them.
    void LoadProviderSettings(const std::string& name);

    /// Asks for the picture at an address, if this run asks the web.
    void LoadImage(const std::string& address);

    /// Somebody wants to record while nothing is written. Writes again where a full disk was the reason and
    /// there is room now; otherwise the status line says why nothing is recorded.
    void ResumeRecording();

    /// A click on chkStationDataEnable.
    void StationDataClicked();

    /// A click on cmdGetStationID: asks the present provider at once, and its player anew.
    void StationIDClicked();

    Machine Host;
    State& Memory;
    ProgramLinks Owner;
    std::map<std::string, TransferredSong> UnfinishedJobs;  ///< by the name of the job
    std::vector<std::string> FinishedSongs;  ///< temporary songs of this run that have their music files
    std::vector<std::string> LeftSongs;      ///< names of songs that may be of earlier runs, the first last
    uint64_t RandomSeed = 0;
    std::string RunName;  ///< of this process
    std::set<std::string> OverriddenSources;
    bool SettingsProblemReported = false;
    bool LogProblemReported = false;

    RegistryBranches Registry;
    Placeholders Expansion;
    SettingsStore Store;
    Log Journal;
    clsLocalizeControls Messages;
    Capture Input;
    SongWriter Writer;
    AudioDrain Drain;
    LearnedCuts Learned;
    AutomaticRecorder Automatic;
    AutomaticTargets Targets;
    SignalPath Path;
    PauseControl Pauses;
    modMixer Mixers;
    MixerOfSource SavedMixer;
    MixerRescue Rescue;
    LevelDisplay Levels;
    std::unique_ptr<PlayerBridge> Bridge;  ///< null in a run without players
    std::unique_ptr<CoverImages> Covers;   ///< null in a run without the web
    ProviderAdoption Adoption;
    ProviderHost MediaHost;
    ProviderChoice Providers;
    BuiltInBrowser Browser;
    StationLaunch Launcher;
    EncoderChoice Encoders;
    ProgramOptions OptionPages;
    FolderSelection FolderPage;
    LogViewer LogPage;
    WatchLists Watched;
    WatchPages WatchTabs;
    SongNotes Notes;
    TransferJob Transfer;
    SongActions Songs;
    AboutLinks Links;
    FloatingBars Bars;
    DiskCheck Disk;
    RecordingLook Look;
    Session Recording;
    MediaPoll Poll;
    SourceWatch Sources;
    InputList Inputs;
    MixerWait SearchWait;
    InputSearch Search;
    AutoGain Gain;
    MixerPage MixerButtons;
    SearchBreak Break;
    Supervisor Watch;
};

}  // namespace Corvetape
