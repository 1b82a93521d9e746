#pragma once

#include "recording/supervisor.h"
#include "session_rig.h"

namespace Corvetape::Test {

/// A session that a real supervisor watches. Nothing is told to anybody.
class WatchedRig : public SessionRig {
 public:
    WatchedRig() : Watch(MakeParts(), MakeActions()) {
        Options.EncodeDelay = 0;
        Options.InfoAfterSilence = 60;
        Pause.QuitAfterSilence = 300;
        Form.chkNoStartupInfo.Value(1);
    }

    /// Whole clock seconds go by.
    void Seconds(int count) {
        for (int i = 0; i < count; ++i) {
            Machine.Clock.Advance(std::chrono::seconds(1));
            Watch.TimerFired();
        }
    }

    frmQuickButtons PlainBar;
    frmCoverButtons CoverBar;
    LifecycleFlags Lifecycle;
    int32_t MaxBuffersUsed = 0;
    bool Excluded = false;

    Supervisor Watch;

 private:
    SupervisorParts MakeParts() {
        return {Form,  PlainBar, CoverBar, Machine.Clock, Options, Pause,         Lifecycle,
                Flags, Cut,      Signal,   Media,         Ring,    MaxBuffersUsed};
    }

    SupervisorActions MakeActions() {
        SupervisorActions actions;
        const auto ignored = [](auto&&...) {};
        actions.FillInputDevices = [] { return true; };
        actions.OpenAssistant = ignored;
        actions.RunFirstBatch = ignored;
        actions.ProviderWanted = [] { return false; };
        actions.ChooseProvider = ignored;
        actions.GetStationData = ignored;
        actions.RestartRadio = ignored;
        actions.LoadImage = ignored;
        actions.LaunchInProgress = [] { return false; };
        actions.IsSongExcluded = [this] { return Excluded; };
        actions.ShowFlags = [this] { Recording.ShowFlags(); };
        actions.SongFileOpen = [this] { return Writer.SongFileOpen(); };
        actions.BreakOff = [this] { Recording.BreakOff(); };
        actions.AbortSong = [this] { Writer.AbortSong(); };
        actions.DrainAudioRing = [this] { return Drain.DrainAudioRing(false); };
        actions.CheckDisk = [] { return true; };
        actions.CheckReserve = ignored;
        actions.CheckUpdate = ignored;
        actions.Unload = ignored;
        actions.FormatMsg = [](const std::string& key, std::span<const std::string>) { return key; };
        actions.WriteLog = ignored;
        actions.WarningBox = ignored;
        actions.ShowTrayTip = ignored;
        actions.ShowTrayState = ignored;
        return actions;
    }
};

}  // namespace Corvetape::Test
