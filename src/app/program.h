#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/desk.h"
#include "app/state.h"
#include "audio/closed_song.h"
#include "core/settings/run_overrides.h"
#include "platform/machine.h"
#include "platform/processes.h"
#include "post/transfer/song_passage.h"

namespace Corvetape {

class FormBoxes;
struct ProgramParts;
struct Switches;

struct RunOptions {
    std::string CommandLine;  ///< as it stands, with the switches
    std::vector<SettingOverride> Overrides;
    bool KeepNotes = true;  ///< beside each temporary song, for a run that ends before it does
    /// The folder for temporary songs in that for temporary files; empty: the one of all runs. A run that is
    /// to delete its folder at its end has one of its own.
    std::string SongTempFolderName;

    uint64_t MaxSongBytes = 0;  ///< largest song file, 0 for what the format can hold

    /// Sound files that the inputs of this run play: never written, never deleted.
    std::vector<std::string> InputFiles;

    /// Comes before the date and time that name a song without a title.
    std::string SongNamePrefix;

    /// Stamps the lines of the log. Null: the clock of the machine. A run whose time passes faster than that
    /// of its user has another one for them. Not owned; outlives the program.
    const Clock* LogClock = nullptr;

    /// Asks also those tools what they can do that only formats need which the settings do not choose.
    bool ProbeAllTools = true;

    /// Shows questions as boxes. Not owned; outlives the program. Missing where nobody can be asked.
    FormBoxes* Boxes = nullptr;
};

/// What others may want to know.
struct ProgramEvents {
    std::function<void()> TextsReady;  ///< frmMain has its texts: a window can show it from now on
    std::function<void(const ClosedSong&)> SongClosed;
    std::function<void(const TransferredSong&)> SongTransferred;
    /// An encoder has made this music file, whose name may have a number after it; comes before JobEnded.
    std::function<void(const std::string& job, const std::string& musicFile)> MusicMade;
    std::function<void(const JobResult&)> JobEnded;  ///< an encoder has ended, well or not
    std::function<void(const std::string& kind, const std::string& text)> Logged;
    std::function<void(const std::string& text)>
        StatusShown;  ///< lblStatus(1) has another text; may be empty
    std::function<void(const std::string& page)> AssistantWanted;  ///< the assistant is to open this page
    std::function<void()>
        UpdateWanted;  ///< the web is to be asked for a newer version, whenever that was done last
    std::function<void()> InputEnded;  ///< a finite input has given its last buffer
    std::function<void()> Ended;       ///< the stop is complete
};

/// The whole program but its pixels, on any machine: made, loaded, running by its timers, unloaded.
class Program {
 public:
    /// `machine` outlives the program.
    Program(Machine machine, RunOptions options, ProgramEvents events = {});
    ~Program();

    /// The start, step by step. False if the process is to end at once: another instance runs, or a switch
    /// asked for nothing more, or the end was asked for meanwhile. Nothing needs to be unloaded then.
    bool Load();

    /// A request to close. It is refused once if a recording runs and the user wants its song to finish.
    /// True if it passed; the program is then unloaded. One during the start is put off to its end.
    bool Close();

    /// The stop, step by step. Does nothing the second time.
    void Unload();

    /// For an update that has to write where only an administrator may: asks whether the program is to be
    /// started again with these parameters and more rights, and ends it for that. True if more rights were
    /// needed, whatever the answer; false on systems that ask nobody for them, and where they are there.
    bool RestartElevated(const std::string& parameters);

    /// Takes the results of encoders that have ended, and reports them. Called once a second while the
    /// program runs; whoever waits for encoders after the stop calls it again.
    void CollectJobs();

    /// Nothing more is kept, neither the song that plays nor the next ones.
    void StopKeeping();

    /// After the stop and the encoders: removes the temporary folder if it is to go and nothing is left in it
    /// that is needed.
    void RemoveTempFolder();

    /// Seconds for which the song that plays is heard.
    uint64_t SongAgeSeconds() const;

    bool Running() const { return Stage == LifeStage::Running; }

    /// What the shell round the program shows and hands on.
    Desk Shown();

    /// A line in the log with this text.
    void Report(const std::string& key);

    /// An error in the log and in the status line.
    void ReportError(const std::string& key, std::initializer_list<std::string> arguments);

    State& Values() { return *Memory; }
    const State& Values() const { return *Memory; }

    /// Seconds of the input that have been received, from frame counts.
    double InputSeconds() const;

    /// An input is open. One that is gone for a while stays open.
    bool InputOpen() const;

 private:
    enum class LifeStage { Made, Loading, Running, Unloading, Ended };
    enum class Next { Continue, EndProcess };

    using LoadStep = Next (Program::*)();
    using UnloadStep = void (Program::*)();
    static const LoadStep LoadSteps[];
    static const UnloadStep UnloadSteps[];

    // Load, in the order of the steps.
    Next TakeBusyPointer();
    Next BlankBrowser();
    Next ReadUpdateSwitch();
    Next ClaimSingleInstance();
    Next ShowVersion();
    Next ExtendSearchPath();
    Next LoadSettings();
    Next ReadSongCounter();
    Next DetectEncoders();
    Next ChooseLanguage();
    Next MakeFolders();
    Next LogStart();
    Next SnapshotMixer();
    Next SeedRandom();
    Next PlaceWindow();
    Next ApplySwitches();
    Next LaunchStartApp();
    Next AddTrayIcon();
    Next ApplyStationData();
    Next EnableRecording();
    Next StartTimers();
    Next ShowWindow();
    Next LoadBars();
    Next ReleaseBusyPointer();
    Next LoadWatchLists();
    Next RecoverSongs();
    Next CheckUpdate();

    // Unload.
    void FinishAudio();
    void TakeOverMedia();
    void CloseSong();
    void DisableRecording();
    void CloseCapture();
    void TransferPendingSong();
    void DeleteTempFolder();
    void RestoreMixer();
    void RestoreSoundScheme();
    void ReportError();
    void ReportInfo();
    void ReleaseProvider();
    void LaunchStopApp();
    void SaveWindowPlace();
    void RemoveTrayIcon();
    void SaveBars();
    void LogEnd();

    void ApplySwitchesTo(const Switches& switches);
    void RequestUnload();
    void DetachTimers();

    Machine Host;
    RunOptions Options;
    ProgramEvents Events;
    LifeStage Stage = LifeStage::Made;
    bool UnloadPosted = false;
    bool UnloadWanted = false;  ///< during the start, which comes to its end first
    bool CloseWanted = false;   ///< the same, by a request that may be refused
    std::unique_ptr<State> Memory;
    std::unique_ptr<ProgramParts> Parts;
    std::shared_ptr<bool> Alive;  ///< guards work that is posted and may come after the end
};

}  // namespace Corvetape
