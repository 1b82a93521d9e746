#include "scenario/soak/hand.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <string_view>

namespace Corvetape::Test {

namespace {

/// Controls that a person cannot press, or that lead out of the simulated world: timers, what only shows, and
/// the folders, whose change moves the files that the book checks.
bool LeadsOut(const Control& control) {
    constexpr std::array<std::string_view, 11> names = {
        "txtPath",    "cmdGetDir",     "txtStation",          "txtArtist",
        "txtSong",    "txtAlbum",      "txtTimeRemaining",    "txtStartApp",
        "txtStopApp", "lstBufferFlag", "txtMusicFileTemplate"};
    return dynamic_cast<const TimerControl*>(&control) != nullptr ||
           dynamic_cast<const Label*>(&control) != nullptr ||
           std::ranges::find(names, control.Name()) != names.end();
}

}  // namespace

bool PlaysAutomatic(uint64_t seed) {
    static const bool always = std::getenv("CORVETAPE_AUTOMATIC") != nullptr;
    constexpr double share = 0.4;
    return always || SimRandom(MixSeed(seed, 5)).Chance(share);
}

bool Hand::IsOutOfReach(const Control& control) const {
    const bool automatic = control.Name() == "optEndOfSong" && control.Index() == 3;
    return LeadsOut(control) || (automatic && !Automatic);
}

void Hand::Say(const std::string& what) {
    Done += std::to_string(Radio.Now()) + ": " + what;
    if (Radio.Recorder) Done += "  [" + StateText() + "]";
    Done += "\n";
}

/// The flags and the ring as they are.
std::string Hand::StateText() {
    const State& values = Radio.Values();
    const RecordingFlags& flags = values.Flags;
    std::string text = "mode " + std::to_string(static_cast<int>(values.Pause.EndOfSongDetection));
    if (!flags.RecordingEnabled) text += ", off";
    if (flags.RecordCurrentSong) text += ", this song";
    if (flags.RecordNextSong) text += ", next song";
    if (flags.StopAtEndOfSong) text += ", then stop";
    if (flags.QuitAtEndOfSong) text += ", then quit";
    if (flags.DisableAtEndOfSong) text += ", then off";
    if (values.Signal.InPause) text += ", pause";
    text += ", ring " + std::to_string(values.Ring.AudioReadIndex) + " to " +
            std::to_string(values.Ring.AudioWriteIndex);
    if (values.Cut.CutPending) text += ", cut at " + std::to_string(values.Cut.CutIndex);
    return text;
}

void Hand::NoteSong(const HeardSong& song) {
    constexpr std::array<const char*, 4> fates = {"kept", "short", "not wanted", "broken off"};
    const ClosedSong& closed = song.Song;
    Say("- song of " + std::to_string(closed.Frames) + " frames, " + std::to_string(closed.BeginFrame) +
        " to " + std::to_string(closed.EndFrame) + " of the input, " +
        fates[static_cast<size_t>(closed.Fate)] + ", " + closed.TempPath);
}

void Hand::Act() {
    const double what = Chance.Unit();
    Notes.BeforePress();
    if (what < 0.45) {
        PressRecording();
    } else if (what < 0.55) {
        ChangeMode();
    } else if (what < 0.75) {
        PressAny();
    } else if (what < 0.87) {
        DisturbDevice();
    } else if (what < 0.95) {
        DisturbDisk();
    } else {
        DisturbClock();
    }
    Notes.AfterPress();
}

void Hand::PressRecording() {
    frmMain& form = Radio.Form();
    const std::array<Control*, 9> controls = {
        &form.cmdQuickRecord,      &form.cmdStartStop,        &form.cmdSkipThisRecording,
        &form.chkStartStop[0],     &form.chkStartStop[0],     &form.chkStartStop[1],
        &form.chkStopRecording[0], &form.chkStopRecording[1], &form.txtRecordingPeriod};
    Control& control = *Chance.Pick(controls);
    if (!control.Enabled()) return;
    Say(control.Name() + "(" + std::to_string(control.Index()) + ")");
    if (&control == &form.txtRecordingPeriod) {
        control.SetValueText(std::to_string(Chance.Between(int64_t{0}, int64_t{3})));
    } else {
        control.Press();
    }
}

void Hand::ChangeMode() {
    const auto mode = static_cast<size_t>(Chance.Below(Automatic ? 4 : 3));
    Say("optEndOfSong(" + std::to_string(mode) + ")");
    Radio.Form().optEndOfSong[mode].Press();
}

void Hand::PressAny() {
    Control& control = *Chance.Pick(Radio.Form().Controls());
    if (!control.Enabled() || IsOutOfReach(control)) return;
    const auto number = [this](int64_t low, int64_t high) {
        return std::to_string(Chance.Between(low, high));
    };
    std::string value;
    if (control.Name() == "vscMultiplier") {
        value = number(50, 150);  // more makes one buffer like the next
    } else if (auto* slider = dynamic_cast<Slider*>(&control)) {
        value = number(slider->Minimum(), slider->Maximum());
    } else if (auto* list = dynamic_cast<ListBox*>(&control)) {
        value = number(-1, static_cast<int64_t>(list->Items().size()));
    } else if (auto* tabs = dynamic_cast<TabStrip*>(&control)) {
        if (!tabs->Tabs().empty()) value = Chance.Pick(tabs->Tabs()).Key;
    } else if (dynamic_cast<TextBox*>(&control) != nullptr) {
        constexpr std::array<int64_t, 5> sizes = {3, 30, 300, 3000, 30000};
        value = number(0, Chance.Pick(sizes));
    }
    Say(control.Name() + "(" + std::to_string(control.Index()) + ") " + value);
    if (value.empty()) {
        control.Press();
    } else {
        control.SetValueText(value);
    }
}

void Hand::DisturbDevice() {
    const int64_t which = Chance.Between(int64_t{0}, int64_t{9});
    Say("device " + std::to_string(which));
    DisturbDeviceBy(which);
}

void Hand::DisturbDeviceBy(int64_t which) {
    SimWaveIn& inputs = Radio.Computer.WaveIn;
    switch (which) {
        case 0:
            return inputs.Vanish(RadioName);
        case 1:
            return inputs.Return(RadioName);
        case 2:
            return inputs.KillServer();
        case 3:
            return inputs.RestartServer();
        case 4:
            return inputs.Stop(RadioName);
        case 5:
            return inputs.Restart(RadioName);
        case 6:
            return inputs.Hold(RadioName);
        case 7:
            return inputs.Release(RadioName);
        case 8:
            return inputs.Lose(RadioName, Chance.Below(20000));
        default:
            Radio.Form().cmbInputDevices.Select(0);
    }
}

void Hand::DisturbDisk() {
    SimFiles& disk = Radio.Disk();
    const double what = Chance.Unit();
    if (what < 0.4) {
        disk.ClearFaults();
        disk.SetCapacity("/", uint64_t{1} << 40U);
        Say("a good disk");
    } else if (what < 0.6) {
        const uint64_t bytes = Chance.Below(uint64_t{8} << 20U);
        disk.SetFreeSpace("/", bytes);
        Say("room for " + std::to_string(bytes));
    } else {
        FileFault fault;
        constexpr std::array<const char*, 3> patterns = {"*.wav", "*.note", "*"};
        fault.Pattern = Chance.Pick(patterns);
        fault.Operation = static_cast<FileOperation>(Chance.Below(15));
        fault.AfterCalls = Chance.Below(20);
        fault.Times = 1 + Chance.Below(3);
        if (Chance.Chance(0.3)) {
            fault.Error = 0;
            fault.Delay = std::chrono::milliseconds(Chance.Below(4000));
        }
        Say("fault " + std::string(NameOf(*fault.Operation)) + " of " + fault.Pattern + " after " +
            std::to_string(fault.AfterCalls) + ", " + std::to_string(fault.Times) + " times, error " +
            std::to_string(fault.Error) + ", " + std::to_string(fault.Delay.count()) + " ms");
        disk.AddFault(fault);
    }
}

void Hand::DisturbClock() {
    constexpr std::array<int64_t, 8> shifts = {-3600, -61, -2, -1, 1, 2, 61, 3600};
    const int64_t shift = Chance.Pick(shifts);
    Say("clock " + std::to_string(shift));
    Radio.Computer.Clock.ShiftWall(std::chrono::seconds(shift));
}

/// What was held up arrives before anything else happens.
void Hand::ReleaseDevice() {
    Radio.Computer.WaveIn.Release(RadioName);
    Radio.RunUntil(
        [this] {
            Notes.AfterEvent();
            return false;
        },
        0.3);
}

void Hand::Restore() {
    SimWaveIn& inputs = Radio.Computer.WaveIn;
    ReleaseDevice();
    inputs.Return(RadioName);
    inputs.RestartServer();
    inputs.Restart(RadioName);
    Radio.Disk().ClearFaults();
    Radio.Disk().SetCapacity("/", uint64_t{1} << 40U);
    Say("all is well");
    Notes.AfterEvent();
}

}  // namespace Corvetape::Test
