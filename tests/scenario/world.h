#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/program.h"
#include "core/settings/profile.h"
#include "forms/dlg_provider.h"
#include "forms/form_boxes.h"
#include "media/provider_wmp.h"
#include "platform/virtual/source_players.h"
#include "sim/radio_script.h"
#include "sim/sim_documents.h"
#include "sim/sim_http.h"
#include "sim/sim_machine.h"
#include "sim/sim_players.h"
#include "support/data_file.h"

namespace Corvetape::Test {

/// Places of the made-up user and of the program.
inline constexpr const char* RadioName = "Radio";
inline constexpr const char* ProviderOfRadio = MediaPlayerName;
inline constexpr const char* IniFile = "/home/user/.config/Corvet/Corvet.ini";
inline constexpr const char* SongTempFolder = "/home/user/.cache/Corvet";
inline constexpr const char* MusicFolder = "/home/user/Music";
inline constexpr const char* LogFolder = "/home/user/.config/Corvet";

/// A line of the user's settings file.
struct IniLine {
    std::string Section;
    std::string Key;
    std::string Value;
};

class World;

/// Forms that the program asks its user with. Without an answer there is no user.
class AnsweredForms : public FormBoxes {
 public:
    void Ask(dlgProvider& dialog) override { Answer(dialog); }

    std::string AskLanguage(const std::string& fitting) override {
        return Language ? Language(fitting) : fitting;
    }

    std::function<void(dlgProvider&)> Answer;
    std::function<std::string(const std::string& fitting)> Language;
};

/// A song as it was closed, with the place in the radio that it claims to come from.
struct HeardSong {
    ClosedSong Song;
    uint64_t RadioBegin = 0;  ///< first frame in the radio
    uint64_t RadioEnd = 0;    ///< one after its last
};

/// What a world begins with.
struct WorldOptions {
    RadioScript Radio = RadioScript().SilenceForever();
    std::string CommandLine;
    std::vector<IniLine> Settings;  ///< beyond those that keep boxes of a first start away
    bool FirstStart = false;        ///< no settings file at all
    SimMachineOptions Machine;
    uint64_t MaxSongBytes = 0;

    /// Whether the radio tells its titles, and how many seconds late for the radio's song of this number.
    bool TellsTitles = true;
    std::function<double(size_t song)> TitleDelay;

    /// How many seconds after its title the radio tells a song's album and its cover.
    double AlbumDelay = 0;
    double CoverDelay = 0;

    /// What the radio does when it is asked to play again. With it, the radio plays from a web page, as no
    /// player can be asked.
    std::function<void()> RestartRadio;

    /// Gives the run further sources of media data, and whatever else it may have.
    std::function<void(World&, Corvetape::Machine&, RunOptions&)> Connect;

    /// Takes the temporary song when its encoder has run; empty: it becomes the music file as it is.
    std::function<void(World&, const TransferredSong&)> Encode;
    std::chrono::milliseconds EncodingTime{1500};

    /// What stands between the machine and the program, to watch it; empty: nothing.
    std::function<Corvetape::Machine(Corvetape::Machine)> Through;

    /// Told of a song after the world's own notes.
    std::function<void(const HeardSong&)> OnClosed;
    std::function<void(const TransferredSong&)> OnTransferred;
};

struct LogLine {
    std::string Kind;
    std::string Text;

    bool operator==(const LogLine&) const = default;
};

/// A simulated machine with a radio, and the whole program on it. What the program tells is written down.
class World {
 public:
    explicit World(WorldOptions options = {}) : Computer(options.Machine), Setup(std::move(options)) {
        Computer.Files.Put(Computer.Folders.Program + "/english.lang", DataFile("english.lang"));
        Computer.Files.Put(Computer.Folders.Program + "/CorvetFix.ini", DataFile("CorvetFix.ini"));
        Computer.Files.MakeFolders(MusicFolder);
        if (!Setup.FirstStart) WriteIni();
        Computer.WaveIn.AddRadio(RadioName, Setup.Radio);
        Computer.Processes.DurationOf = [this](const HiddenJob&) { return Setup.EncodingTime; };
        Computer.Processes.OnJob = [this](const HiddenJob& job) { return RunJob(job); };
        Made();
    }
    ~World() { Recorder.reset(); }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// Replaces the program by a new one on the same machine, as a next start of it.
    void Made() {
        Recorder.reset();
        RunOptions run;
        run.CommandLine = Setup.CommandLine;
        run.MaxSongBytes = Setup.MaxSongBytes;
        run.Boxes = Question.Answer || Question.Language ? &Question : nullptr;
        Machine machine = Computer.Get();
        if (Setup.RestartRadio) {
            ShowPage(machine);
        } else if (Setup.TellsTitles) {
            machine.Players = &OnAirPlayers;
        }
        if (Setup.Connect) Setup.Connect(*this, machine, run);
        Recorder.emplace(Setup.Through ? Setup.Through(machine) : machine, std::move(run), MakeEvents());
    }

    bool Load() { return Recorder->Load(); }

    void RunFor(double seconds) {
        Computer.Loop.RunFor(std::chrono::nanoseconds(static_cast<int64_t>(seconds * 1e9)));
    }

    /// False if it does not come to pass within so many seconds.
    bool RunUntil(const std::function<bool()>& reached, double seconds) {
        return Computer.Loop.RunUntil(reached, std::chrono::nanoseconds(static_cast<int64_t>(seconds * 1e9)));
    }

    /// Starts, and runs until the input is open and something can be pressed.
    bool Start() {
        return Load() && RunUntil([this] { return Form().chkStartStop[0].Enabled(); }, 5);
    }

    /// Starts, and keeps everything from the song that plays on.
    bool StartRecording() {
        if (!Start()) return false;
        Form().chkStartStop[0].Value(1);
        return true;
    }

    /// Ends the program and lets the encoders finish.
    void Finish() {
        Recorder->Unload();
        Computer.Processes.WaitForAll(std::chrono::hours(1));
        Recorder->CollectJobs();
        Recorder->RemoveTempFolder();
    }

    State& Values() { return Recorder->Values(); }
    frmMain& Form() { return Recorder->Values().Form; }
    SimFiles& Disk() { return Computer.Files; }

    /// Seconds since the machine was made.
    double Now() const { return static_cast<double>(Computer.Clock.MonotonicNanoseconds()) / 1e9; }

    /// A key as it stands in the user's settings file now; "-" without one.
    std::string Stored(const std::string& section, const std::string& key) {
        return Profile(Computer.Files, IniFile).ReadText(section, key, "-");
    }

    /// Texts of the log lines of one kind, in their order.
    std::vector<std::string> Logged(const std::string& kind) const {
        std::vector<std::string> texts;
        for (const LogLine& line : Log) {
            if (line.Kind == kind) texts.push_back(line.Text);
        }
        return texts;
    }

    /// Texts of the boxes shown so far.
    std::vector<std::string> Boxes() const {
        std::vector<std::string> texts;
        for (const ShownBox& box : Computer.Dialogs.Boxes) texts.push_back(box.Text);
        return texts;
    }

    /// The song as it was closed that a transferred one has been; null if there is none.
    const HeardSong* HeardAs(const TransferredSong& song) const {
        const std::string path = SongTempFolder + ("/" + song.Media.TempFileName) + ".wav";
        const auto same = [&](const HeardSong& heard) { return heard.Song.TempPath == path; };
        const auto found = std::find_if(Closed.rbegin(), Closed.rend(), same);  // stamps can come again
        return found == Closed.rend() ? nullptr : &*found;
    }

    /// The radio as it is: what it plays, frame by frame.
    std::shared_ptr<const RadioTimeline> Truth() {
        return Computer.WaveIn.Timeline(RadioName, Values().Options.SPDIF48kHz ? 48000 : 44100);
    }

    SimMachine Computer;
    SourcePlayers OnAirPlayers{Computer.Loop, RadioName, [this] { return OnAir(); }};
    SimDocuments Browser;
    SimPlayers Players{Computer.Loop};
    SimHttp Web{Computer.Loop};
    AnsweredForms Question;                              ///< for the next program that is made
    std::function<void(const std::string& what)> Asked;  ///< told what is asked of the shell
    std::optional<Program> Recorder;

    std::vector<HeardSong> Closed;
    std::vector<TransferredSong> Transferred;
    std::vector<JobResult> EndedJobs;
    std::vector<LogLine> Log;
    size_t Ends = 0;  ///< how often the end of the program was told

    WorldOptions Setup;

 private:
    void Tell(const std::string& what) {
        if (Asked) Asked(what);
    }

    void WriteIni() {
        std::vector<IniLine> lines = {{"General", "Language", "english"},
                                      {"Mixer", "InputDevice", "0"},
                                      {"Mixer", "InputDeviceNames", std::string(RadioName) + ";"},
                                      {"Options", "NoStartupInfo", "1"}};
        lines.insert(lines.end(), Setup.Settings.begin(), Setup.Settings.end());
        std::map<std::string, std::map<std::string, std::string>> sections;  // the last of equal keys counts
        for (const IniLine& line : lines) sections[line.Section][line.Key] = line.Value;
        std::string text;
        for (const auto& [section, keys] : sections) {
            text += "[" + section + "]\r\n";
            for (const auto& [key, value] : keys) text += key + "=" + value + "\r\n";
        }
        Computer.Files.Put(IniFile, text);
    }

    /// Plays the radio from a web page, which tells its titles.
    void ShowPage(Machine& machine) {
        machine.Documents = &Browser;
        if (!Browser.All.empty()) return;
        Computer.Files.Put(Computer.Folders.Program + "/MSIE.ini",
                           std::string("[- Radio]\nName=") + ProviderOfRadio +
                               "\nWindow&Doc=;;*;http://radio/\nTitle=-4;0\nRestart=0;play();\n");
        SimDocument& page = *Browser.Add("http://radio/", "Radio").Top;
        page.All.push_back({"title", {}});
        page.Asked = [this, &page] { page.All[0].Text.InnerText = OnAir().Song; };
        page.WhenRun = [this](const std::string&) { Setup.RestartRadio(); };
    }

    /// What the radio tells at this moment.
    SourceMedia OnAir() {
        SourceMedia media = TitledAt(Now());
        if (TitledAt(Now() - Setup.AlbumDelay) != media) media.Album.clear();
        if (TitledAt(Now() - Setup.CoverDelay) != media) media.Cover.clear();
        return media;
    }

    /// The song whose title the radio tells at a second of the machine.
    SourceMedia TitledAt(double now) {
        // It is asked already while the program is made.
        const auto timeline = Recorder ? Truth() : Computer.WaveIn.Timeline(RadioName, 44100);
        const auto frameAt = [&](double second) {
            return static_cast<uint64_t>(std::max(second, 0.0) * timeline->FramesPerSecond());
        };
        if (!Setup.TitleDelay) return timeline->MediaAt(frameAt(now));
        SourceMedia media;
        for (size_t song = 0; song < timeline->Songs().size(); ++song) {
            if (frameAt(now - Setup.TitleDelay(song)) < timeline->Songs()[song].Begin) break;
            media = timeline->Songs()[song].Media;
        }
        return media;
    }

    /// The frame of the radio that the program got as this one of all frames; the number itself if that was
    /// before the present opening.
    uint64_t RadioFrameOf(uint64_t frame) {
        const uint64_t before = Values().Signal.FramesOfEarlierInputs;
        return frame < before ? frame : Computer.WaveIn.RadioFrameOf(frame - before).value_or(frame);
    }

    ProgramEvents MakeEvents() {
        ProgramEvents events;
        events.SongClosed = [this](const ClosedSong& song) {
            HeardSong heard{song, RadioFrameOf(song.BeginFrame), RadioFrameOf(song.EndFrame)};
            Closed.push_back(heard);
            if (Setup.OnClosed) Setup.OnClosed(heard);
        };
        events.SongTransferred = [this](const TransferredSong& song) {
            Transferred.push_back(song);
            if (Setup.OnTransferred) Setup.OnTransferred(song);
        };
        events.JobEnded = [this](const JobResult& result) { EndedJobs.push_back(result); };
        events.Logged = [this](const std::string& kind, const std::string& text) {
            Log.push_back({kind, text});
        };
        events.Ended = [this] { ++Ends; };
        events.TextsReady = [this] { Tell("TextsReady"); };
        events.AssistantWanted = [this](const std::string& page) { Tell("OpenAssistant " + page); };
        events.UpdateWanted = [this] { Tell("CheckUpdate"); };
        return events;
    }

    /// What an encoder does: it makes the music file of its song out of the temporary one.
    int32_t RunJob(const HiddenJob& job) {
        const auto song = std::ranges::find(Transferred, job.Name, &TransferredSong::JobName);
        if (song == Transferred.end()) return 0;
        const std::string base = song->TempFile.substr(0, song->TempFile.rfind('.'));
        if (!Computer.Files.Exists(song->TempFile)) return 1;
        if (!Mentions(job, base)) return 1;  // it looks for another file
        if (Setup.Encode) {
            Setup.Encode(*this, *song);
        } else {
            Computer.Files.Put(song->MusicFile, *Computer.Files.Content(song->TempFile));
        }
        return 0;
    }
};

}  // namespace Corvetape::Test
