#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "recording/supervisor.h"

namespace Corvetape::Test {

/// A clock that stands where the test puts it.
class StandingClock : public Clock {
 public:
    DateTime LocalNow() const override { return Now; }
    int64_t MonotonicNanoseconds() const override { return Nanoseconds; }

    DateTime Now{2026, 3, 1, 12, 0, 0, 0};
    int64_t Nanoseconds = 0;
};

/// A supervisor with everything round it made of notes: what it asks of others stands in `Asked`.
class SupervisorRig {
 public:
    SupervisorRig()
        : Watch({Form, PlainBar, CoverBar, Time, Options, Pause, Lifecycle, Flags, Cut, Signal, Media, Ring,
                 MaxBuffersUsed},
                MakeActions()) {
        Options.RecordingBuffers = 30;
        Options.InfoAfterSilence = 60;
        Options.EncodeDelay = 5000;
        Form.chkNoStartupInfo.Value(1);
        Form.txtQuitAfterSilence.Text("5");
    }

    /// One whole clock second later, the timer fires.
    void Tick() {
        AdvanceSecond();
        Asked.clear();
        Watch.TimerFired();
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

    StandingClock Time;
    frmMain Form;
    frmQuickButtons PlainBar;
    frmCoverButtons CoverBar;
    Settings Options;
    PauseSettings Pause;
    LifecycleFlags Lifecycle;
    RecordingFlags Flags;
    CutState Cut;
    SignalState Signal;
    MediaState Media;
    AudioRing Ring;
    int32_t MaxBuffersUsed = 0;

    std::vector<std::string> Asked;
    std::function<void()> WhileBoxIsOpen;
    bool DevicesThere = true;
    bool NeedsProvider = false;
    bool Launching = false;
    bool Excluded = false;
    bool FileOpen = false;
    bool DrainWorks = true;
    bool DiskWorks = true;

    Supervisor Watch;

 private:
    void Note(std::string what) { Asked.push_back(std::move(what)); }

    SupervisorActions MakeActions() {
        SupervisorActions actions;
        AddFirstRunAndMedia(actions);
        AddRecording(actions);
        AddTelling(actions);
        return actions;
    }

    void AddFirstRunAndMedia(SupervisorActions& actions) {
        actions.FillInputDevices = [this] { return Note("FillInputDevices"), DevicesThere; };
        actions.OpenAssistant = [this](const std::string& page) { Note("OpenAssistant " + page); };
        actions.RunFirstBatch = [this] { Note("RunFirstBatch"); };
        actions.ProviderWanted = [this] { return NeedsProvider; };
        actions.ChooseProvider = [this] { Note("ChooseProvider"); };
        actions.GetStationData = [this] { Note("GetStationData"); };
        actions.RestartRadio = [this] { Note("RestartRadio"); };
        actions.LoadImage = [this](const std::string& cover) { Note("LoadImage " + cover); };
        actions.LaunchInProgress = [this] { return Launching; };
        actions.IsSongExcluded = [this] { return Excluded; };
    }

    void AddRecording(SupervisorActions& actions) {
        actions.ShowFlags = [this] { Note("ShowFlags"); };
        actions.SongFileOpen = [this] { return FileOpen; };
        actions.BreakOff = [this] {
            Form.chkStartStop[1].Value(1);
            if (Pause.EndOfSongDetection == EndOfSong::FixedTime) return;
            Flags.RecordCurrentSong = false;
            Flags.RecordNextSong = true;
        };
        actions.AbortSong = [this] { Note("AbortSong"); };
        actions.DrainAudioRing = [this] { return Note("DrainAudioRing"), DrainWorks; };
        actions.CheckDisk = [this] { return Note("CheckDisk"), DiskWorks; };
        actions.CheckReserve = [this] { Note("CheckReserve"); };
        actions.CheckUpdate = [this] { Note("CheckUpdate"); };
        actions.Unload = [this] { Note("Unload"); };
    }

    void AddTelling(SupervisorActions& actions) {
        actions.FormatMsg = [](const std::string& key, std::span<const std::string> arguments) {
            std::string text = "#" + key;
            for (const std::string& argument : arguments) text += " " + argument;
            return text;
        };
        actions.WriteLog = [this](const std::string& kind, const std::string& text) {
            Note("Log " + kind + " " + text);
        };
        actions.WarningBox = [this](const std::string& text) {
            Note("Box " + text);
            if (WhileBoxIsOpen) WhileBoxIsOpen();
        };
        actions.ShowTrayTip = [this](const std::string& tip) { Note("Tip " + tip); };
        actions.ShowTrayState = [this](int32_t state) { Note("Tray " + std::to_string(state)); };
    }
};

}  // namespace Corvetape::Test
