#pragma once

#include <memory>
#include <optional>

#include "app/program.h"
#include "app/recording_parts.h"
#include "audio/capture.h"
#include "audio/drain.h"
#include "audio/input_device.h"
#include "audio/route.h"
#include "audio/song_writer.h"
#include "core/controls/messages.h"
#include "core/log.h"
#include "core/mouse_pointer.h"
#include "core/program_requests.h"
#include "core/reporter.h"
#include "core/settings/registry.h"
#include "core/settings/run_overrides.h"
#include "core/settings/settings_store.h"
#include "core/text/placeholders.h"
#include "core/write_watch.h"
#include "media/built_in_browser.h"
#include "media/cover_images.h"
#include "media/player_bridge.h"
#include "media/provider_adoption.h"
#include "media/provider_choice.h"
#include "media/source_makers.h"
#include "media/source_switch.h"
#include "media/station_launch.h"
#include "media/station_query.h"
#include "mixer/auto_gain.h"
#include "mixer/gain_dialogue.h"
#include "mixer/input_dialogue.h"
#include "mixer/input_list.h"
#include "mixer/input_search.h"
#include "mixer/mixer_of_source.h"
#include "mixer/mixer_page.h"
#include "mixer/mixer_rescue.h"
#include "mixer/mixer_wait.h"
#include "mixer/mod_mixer.h"
#include "mixer/search_guard.h"
#include "mixer/sound_settings.h"
#include "post/encoders/encoder_choice.h"
#include "post/encoders/encoder_tools.h"
#include "post/lists/watch_pages.h"
#include "post/options/about_links.h"
#include "post/options/folder_selection.h"
#include "post/options/language_option.h"
#include "post/options/log_viewer.h"
#include "post/options/program_options.h"
#include "post/transfer/encoder_results.h"
#include "post/transfer/hand_over.h"
#include "post/transfer/song_counter.h"
#include "post/transfer/song_notes.h"
#include "post/transfer/transfer_job.h"
#include "recording/automatic/automatic_recorder.h"
#include "recording/automatic/automatic_targets.h"
#include "recording/automatic/learned_cuts.h"
#include "recording/automatic/source_watch.h"
#include "recording/floating_bars.h"
#include "recording/left_songs.h"
#include "recording/level_display.h"
#include "recording/margins/margin_recorder.h"
#include "recording/margins/margin_store.h"
#include "recording/note_keeper.h"
#include "recording/pause_calibration.h"
#include "recording/pause_control.h"
#include "recording/search_break.h"
#include "recording/song_actions.h"
#include "recording/song_end_mode.h"
#include "recording/song_reports.h"

namespace Corvetape {

/// The parts of a program in the order in which they are made, from the bottom up. Each is handed what it
/// uses, here and nowhere else.
struct ProgramParts {
    /// All of it outlives the parts.
    ProgramParts(const Machine& machine, State& state, const RunOptions& run, const ProgramEvents& events);
    ProgramParts(const ProgramParts&) = delete;
    ProgramParts& operator=(const ProgramParts&) = delete;

    Machine Host;
    State& Memory;
    const RunOptions& Run;
    const ProgramEvents& Events;

    uint64_t RandomSeed = 0;
    std::optional<clsMousePointer> Busy;  ///< during the start

    ProgramRequests Requests;
    RegistryBranches Registry;
    Placeholders Expansion;
    SettingsStore Store;
    RunOverrides Overrides;
    Log Journal;
    clsLocalizeControls Messages;
    Reporter Say;
    WriteWatch Unwritable;

    SongWriter Writer;
    AudioDrain Drain;
    LearnedCuts Learned;
    MarginStore MarginFiles;
    MarginRecorder Margins;
    AutomaticRecorder Automatic;
    AutomaticTargets Targets;
    SignalPath Path;
    Capture Input;
    InputDevice Device;

    SongEndMode Mode;
    PauseControl Pauses;
    PauseCalibration Calibration;
    modMixer Mixers;
    MixerOfSource SavedMixer;
    MixerRescue Rescue;
    LevelDisplay Levels;

    std::unique_ptr<PlayerBridge> Bridge;  ///< null in a run without players
    CoverImages Covers;
    ProviderAdoption Adoption;
    ProviderHost MediaHost;
    BrowserSources Browsers;
    PlayerSources Players;
    ProviderChoice Providers;
    SourceSwitch MediaSwitch;
    StationQuery Query;
    BuiltInBrowser Browser;
    StationLaunch Launcher;

    EncoderChoice Encoders;
    ProgramOptions OptionPages;
    LogViewer LogPage;
    WatchLists Watched;
    WatchPages WatchTabs;
    FolderSelection FolderPage;
    SongNotes Notes;
    SongCounter Counter;
    TransferJob Transfer;
    SongActions Songs;
    HandOver Waiting;
    EncoderResults Results;
    std::optional<NoteKeeper> Keeper;  ///< in a run that leaves notes
    LeftSongs Left;
    SongReports Reports;

    AboutLinks Links;
    LanguageOption LanguageList;
    FloatingBars Bars;
    InputList Inputs;
    RecordingParts Recording;
    SourceWatch Sources;

    MixerWait SearchWait;
    InputSearch Search;
    AutoGain Gain;
    SearchGuard Searching;
    GainDialogue GainQuestions;
    InputDialogue InputQuestions;
    SoundSettings DesktopSound;
    MixerPage MixerButtons;
    SearchBreak Break;

 private:
    void ConnectEvents();
    void ConnectTick();
};

}  // namespace Corvetape
