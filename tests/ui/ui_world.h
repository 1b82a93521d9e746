#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "app/program.h"
#include "platform/virtual/demo_radio.h"
#include "platform/virtual/source_players.h"
#include "recording/run_songs.h"
#include "recording/signal_trace.h"
#include "recording/song_age.h"
#include "sim/sim_http.h"
#include "sim/sim_machine.h"
#include "support/data_file.h"
#include "ui/main_window.h"

namespace Corvetape::Test {

/// The whole program with its window, on a simulated machine whose only input is the demo radio.
class UiWorld {
 public:
    /// `texts` is the content of the file of the language if it is none of the program's own, `settings` that
    /// of the user's settings file, if there is one. The radio has played for `playedSeconds` when its input
    /// is opened; it begins with a pause.
    explicit UiWorld(const std::string& language = "english", const std::string& texts = {},
                     const std::string& settings = {}, uint32_t playedSeconds = 0) {
        if (!settings.empty()) Computer.Files.Put("/home/user/.config/Corvet/Corvet.ini", settings);
        if (!texts.empty()) Computer.Files.Put(Computer.Folders.Program + "/" + language + ".lang", texts);
        for (const char* name : {"english.lang", "german.lang", "CorvetFix.ini"}) {
            Computer.Files.Put(Computer.Folders.Program + "/" + name, DataFile(name));
        }
        for (const char* tool : {"lame", "oggenc", "sox"}) {
            Computer.Files.Put(Computer.Folders.Program + "/" + tool, "");
        }
        Computer.Files.MakeFolders("/home/user/Music");
        Computer.WaveIn.AddDevice({"Demo radio", "demo", WaveInKind::Demo}, [playedSeconds](uint32_t rate) {
            auto radio = std::make_unique<DemoRadio>(1, rate);
            std::vector<Frame> second(rate);
            for (uint32_t i = 0; i < playedSeconds; ++i) radio->Read(second);
            return radio;
        });
        Computer.Processes.DurationOf = [](const HiddenJob&) { return std::chrono::seconds(30); };
        RunOptions options;
        options.Overrides = {{"Mixer", "InputDevice", "0"},
                             {"Mixer", "InputDeviceNames", "Demo radio;"},
                             {"General", "Language", language},
                             {"Options", "NoStartupInfo", "1"},
                             {"Options", "Encoder", "1"}};
        Recorder = std::make_unique<Program>(Host(), std::move(options), Events());
        State& state = Recorder->Values();
        Keys = std::make_unique<HelpKeys>(state.Lifecycle, Pages);
        Trace = std::make_unique<SignalTrace>(state.Signal, state.Pause, Computer.Clock);
        state.Form.tmr1Second.Timer.Connect([this] { Trace->Follow(); });
        Loaded = Recorder->Load();
    }
    ~UiWorld() {
        Window.reset();
        Covers.reset();
        Trace.reset();
        Recorder.reset();
    }
    UiWorld(const UiWorld&) = delete;
    UiWorld& operator=(const UiWorld&) = delete;

    void RunFor(int seconds) { Computer.Loop.RunFor(std::chrono::seconds(seconds)); }
    frmMain& Form() { return Recorder->Values().Form; }

    /// Keys of all tabs, in their order.
    std::vector<std::string> TabKeys() {
        std::vector<std::string> keys;
        for (const Tab& tab : Form().tbsMain.Tabs()) keys.push_back(tab.Key);
        return keys;
    }

    /// The widget of a control by the name of both.
    template <typename Widget>
    Widget* Find(const char* name) {
        return Window->findChild<Widget*>(name);
    }

    /// The last page that a key has asked for.
    struct AskedPages : HelpPages {
        void SetUrl(const std::string& page, bool online) override {
            Page = page;
            Online = online;
        }
        std::string Page;
        bool Online = false;
    };

    SimMachine Computer;
    AskedPages Pages;
    SourcePlayers Titles{Computer.Loop, "Demo radio", [this] { return Computer.WaveIn.NowPlaying(); }};
    SimHttp Web{Computer.Loop};
    RunSongs Songs;
    std::unique_ptr<Program> Recorder;
    std::unique_ptr<HelpKeys> Keys;
    std::unique_ptr<SignalTrace> Trace;
    std::unique_ptr<CoverPictures> Covers;
    std::unique_ptr<UiParts> Ui;
    std::unique_ptr<MainWindow> Window;
    bool Loaded = false;

 private:
    ProgramEvents Events() {
        ProgramEvents events;
        events.TextsReady = [this] { MakeWindow(); };
        events.SongClosed = [this](const ClosedSong& song) {
            Trace->SongClosed(song);
            Songs.SongClosed(song);
        };
        events.SongTransferred = [this](const TransferredSong& song) { Songs.SongTransferred(song); };
        events.JobEnded = [this](const JobResult& result) { Songs.JobEnded(result); };
        return events;
    }

    Machine Host() {
        Machine machine = Computer.Get();
        machine.Players = &Titles;
        machine.Web = &Web;
        return machine;
    }

    void MakeWindow() {
        const Desk desk = Recorder->Shown();
        State& state = desk.Values;
        Covers = std::make_unique<CoverPictures>(&desk.Covers);
        desk.Age.Excluded.Connect([this](const STATIONANDSONGDATA& song) { Songs.SongExcluded(song); });
        Ui = std::make_unique<UiParts>(
            UiParts{state.Form,   state.Flags, state.Signal,      state.Media,
                    desk.Players, state.Pause, state.Messages,    desk.Levels,
                    *Trace,       Songs,       desk.Songs,        desk.Lists,
                    desk.Bars,    *Keys,       state.Options,     *Covers,
                    desk.Heard,   desk.Disk,   Words(desk.Texts), [this] { return Recorder->Close(); }});
        Window = std::make_unique<MainWindow>(*Ui);
        Computer.Desktop.WhileAsked = [this](const std::string& what) {
            if (what == "ShowWindow") Window->show();
        };
    }
};

}  // namespace Corvetape::Test
