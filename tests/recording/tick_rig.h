#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "media/provider_choice.h"
#include "media/source_settings.h"
#include "post/lists/watch_list.h"
#include "recording/second_tick.h"
#include "recording/session_rig.h"
#include "support/signal_chain.h"

namespace Corvetape::Test {

/// A clock that stands where the test puts it.
class StandingClock : public Clock {
 public:
    DateTime LocalNow() const override { return Now; }
    int64_t MonotonicNanoseconds() const override { return Nanoseconds; }

    DateTime Now{2026, 3, 1, 12, 0, 0, 0};
    int64_t Nanoseconds = 0;
};

/// A session that a whole tick looks after every second. What the tick brings about outside stands in
/// `Asked`.
class TickRig : public SessionRig, private SourceSettings, private SourceMixer, private WaveIn, private Http {
 public:
    explicit TickRig(Clock* clock = nullptr)
        : Host{clock != nullptr ? *clock : Time,
               Machine.Loop,
               *this,
               Machine.Mixer,
               Machine.Files,
               Machine.Processes,
               Machine.Folders,
               Machine.Dialogs,
               Machine.System,
               Machine.Desktop} {
        Options.RecordingBuffers = 30;
        Options.InfoAfterSilence = 60;
        Options.EncodeDelay = 5000;
        Options.InputDevice = 0;
        Options.InputDeviceNames = "Radio;";
        Options.StationUrls = {"http://radio/"};
        Options.CurrentUrlIndex = 0;
        Options.MusicFileTemplate[1] = "%Title%";
        Folders.Paths = {"/home/user/temp", "/home/user/music", "/home/user"};
        Machine.Files.MakeFolders("/home/user/music");
        Form.chkNoStartupInfo.Value(1);
        Form.txtQuitAfterSilence.Text("5");
        Providers.Choose();
        Listen();
        Asked.clear();
    }

    /// One whole clock second later, the timer fires.
    void Tick() {
        AdvanceSecond();
        Asked.clear();
        const bool enabled = Flags.RecordingEnabled;
        Watch.TimerFired();
        if (enabled && !Flags.RecordingEnabled) Note("recording ends");
    }

    void Ticks(int count) {
        for (int i = 0; i < count; ++i) Tick();
    }

    void AdvanceSecond() {
        Time.Nanoseconds += 1'000'000'000;
        if (++Time.Now.Second < 60) return;
        Time.Now.Second = 0;
        if (++Time.Now.Minute < 60) return;
        Time.Now.Minute = 0;
        Time.Now.Hour = (Time.Now.Hour + 1) % 24;
    }

    bool WasAsked(const std::string& what) const {
        for (const std::string& each : Asked) {
            if (each == what) return true;
        }
        return false;
    }

    /// Songs of this title are to be dropped.
    void Exclude(const std::string& title) { Lists.Add(WatchListKind::Exclude, title); }

    /// A page is launched, or has come.
    void Launch() { Form.cmdLaunchURL.Press(); }
    void PageHasCome() { Form.objWebBrowser.DownloadComplete.Raise(); }

    StandingClock Time;
    std::vector<std::string> Asked;
    std::function<void()> WhileBoxIsOpen;
    bool DevicesThere = true;
    bool SourceThere = true;

 private:
    class Provider : public clsProvider {
     public:
        explicit Provider(TickRig& rig) : Rig(rig) {
            if (Rig.SourceThere) Rig.Media.ProviderName = "Radio";
        }
        void GetStationData() override { Rig.Note("GetStationData"); }
        void GetSongData() override {}
        bool RestartRadio() override {
            Rig.Note("RestartRadio");
            return true;
        }

     private:
        TickRig& Rig;
    };

    class Maker : public ProviderMaker {
     public:
        explicit Maker(TickRig& rig) : Rig(rig) {}
        std::unique_ptr<clsProvider> Make() override {
            Rig.Note("ChooseProvider");
            return std::make_unique<Provider>(Rig);
        }

     private:
        TickRig& Rig;
    };

    void Note(std::string what) { Asked.push_back(std::move(what)); }

    void Listen() {
        Reports.Journal.Listener = [this](const std::string& kind, const std::string& text) {
            Note("Log " + kind + " " + text);
        };
        Requests.End.Connect([this] { Note("Unload"); });
        Requests.Assistant.Connect([this](const std::string& page) { Note("OpenAssistant " + page); });
        Machine.Processes.OnShellOpen = [this](const ShellCall& call) {
            Note("Open " + call.Path.substr(call.Path.rfind('/') + 1));
            return 42;
        };
        Machine.Dialogs.WhileOpen = [this](const ShownBox& box) {
            Note("Box " + box.Text);
            if (WhileBoxIsOpen) WhileBoxIsOpen();
        };
        Machine.Desktop.WhileAsked = [this](const std::string& what) { Note(what); };
    }

    // The settings and the mixer of sources, of which none is kept.
    void LoadProviderSettings(const std::string&) override {}
    void StoreProviderSettings() override {}
    void UpdateMixer() override {}
    void ApplyMixer() override {}
    void StoreMixer() override {}

    // An input that is there and cannot be opened, or is not there.
    WaveInList Devices() override {
        Note("FillInputDevices");
        return DevicesThere ? std::vector<WaveInDevice>{{"Radio", "radio"}} : std::vector<WaveInDevice>{};
    }
    OpenedWaveIn Open(size_t, const WaveFormat&, BufferReturn, WaveInEvents) override { return nullptr; }

    // The web.
    void Get(const std::string& address, size_t, std::function<void(const HttpAnswer&)>) override {
        Note("LoadImage " + address);
    }
    void Cancel() override {}

    Corvetape::Machine Host;
    SignalChain Chain{Machine, *this, Signal, Pause, Media};
    InputList Inputs{{Form, *this, Options, Store, Lifecycle}, Chain.Device, Reports.Say};
    ProviderAdoption Adoption{Media, *this, *this, Reports.Texts, nullptr};
    ProviderHost Sources{Media, Signal, Flags, Adoption};
    CoverImages Covers{this, Machine.Files, Pause};
    Maker Makes{*this};
    ProviderChoice Providers{Sources, Covers, {&Makes}};
    StationLaunch Launcher{
        {Form, Options, Store, Expansion, Machine.Processes, Machine.Desktop, Machine.Loop, Reports.Say}};
    WatchLists Lists{Machine.Files, Folders};
    FirstRun First{{Form, Lifecycle, Signal, Options, Folders, Inputs}, Host, Requests};
    SourceTick Source{Media, Pause, Providers};
    MediaDisplay Display{{Form, PlainBar, CoverBar, Media, Flags, Machine.Desktop}, Reports.Say};
    RadioRestart Radio{{Options, Lifecycle, Media, Flags, Launcher, Providers}};
    SilenceWatch Silence{{Host.Clock, Options, Pause, Lifecycle, Signal},
                         {Form, Flags, Radio, Recording, Songs},
                         Notice,
                         Reports.Say};

 public:
    int32_t MaxBuffersUsed = 0;
    BufferWatch Buffers{Form, Options, Signal, MaxBuffersUsed, Reports.Say};
    SongAge Age{{Form, Options, Flags, Cut, Media, Lists}, Reports.Say};
    HeardSong Heard{{Signal, Pause, Cut, Media, nullptr, Host.Clock}};
    SecondTick Watch{
        Form.tmr1Second,
        Host.Clock,
        Lifecycle,
        {First, Source, Age, Heard, Display, Recording, Period, Silence, Buffers, Pieces, Songs, Disk},
        Requests};
};

}  // namespace Corvetape::Test
