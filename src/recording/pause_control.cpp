#include "recording/pause_control.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>

#include "audio/wave_buffer.h"
#include "core/controls/validate_number.h"
#include "core/text/numbers.h"

namespace Corvetape {

namespace {

constexpr int32_t ThresholdStepMs = 500;  // one step of a slider of the cut
constexpr int32_t SecondsPerMinute = 60;

constexpr double EndOfSilenceFactor = 1.2;

template <typename Narrow>
Narrow Narrowed(int64_t value) {
    return static_cast<Narrow>(
        std::clamp<int64_t>(value, std::numeric_limits<Narrow>::min(), std::numeric_limits<Narrow>::max()));
}

int16_t EndOfSilenceFor(int16_t silenceAmplitude) {
    return Narrowed<int16_t>(RoundToInt32(silenceAmplitude * EndOfSilenceFactor));
}

/// The slider's value as seconds: a number of halves.
std::string HalfSecondsText(int32_t halves) {
    return std::to_string(halves / 2) + (halves % 2 == 0 ? "" : ".5");
}

constexpr const char* ThresholdKeys[] = {"EndOfSongThreshold0", "EndOfSongThreshold1"};

/// The label beside a slider; those before it stand for the texts round the sliders.
constexpr size_t FirstThresholdLabel = 3;

}  // namespace

PauseControl::PauseControl(PauseControlParts parts, SongEndMode& mode) : Parts(parts), Mode(mode) {
    AttachNumbers();
    AttachChoices();
    AttachSliders();
}

void PauseControl::AttachNumbers() {
    frmMain& form = Parts.Form;
    form.txtLengthOfPause.Validate = [this] {
        const auto value = Accepted(Parts.Form.txtLengthOfPause, 50, 10000, BufferMilliseconds);
        if (!value) return true;
        Parts.Pause.PauseBuffers = Narrowed<int16_t>(*value / BufferMilliseconds);
        Write("LengthOfPause", *value);
        return false;
    };
    form.txtSilenceAmplitude.Validate = [this] { return SilenceAmplitudeRefused(); };
    form.txtEndOfSilenceAmplitude.Validate = [this] { return EndOfSilenceAmplitudeRefused(); };
    form.txtEndOfSongTimer.Validate = [this] {
        const auto minutes = Accepted(Parts.Form.txtEndOfSongTimer, 1, 600);
        if (!minutes) return true;
        Parts.Pause.EndOfSongTimer = *minutes * SecondsPerMinute;
        Write("EndOfSongTimer", Parts.Pause.EndOfSongTimer);
        return false;
    };
    form.txtQuitAfterSilence.Validate = [this] {
        const auto minutes = Accepted(Parts.Form.txtQuitAfterSilence, 3, 60);
        if (!minutes) return true;
        Parts.Pause.QuitAfterSilence = *minutes * SecondsPerMinute;
        Write("QuitAfterSilence", *minutes);
        return false;
    };
    form.txtIgnoreShortSongs.Validate = [this] {
        const auto seconds = Accepted(Parts.Form.txtIgnoreShortSongs, 0, 120);
        if (!seconds) return true;
        Parts.Pause.IgnoreShortSongs = *seconds;
        Write("IgnoreShortSongs", *seconds);
        return false;
    };
}

void PauseControl::AttachChoices() {
    frmMain& form = Parts.Form;
    form.chkDetectSilenceByPeak.Click.Connect([this] {
        Parts.Pause.DetectSilenceByPeak = Parts.Form.chkDetectSilenceByPeak.Value() != 0;
        Write("DetectSilenceByPeak", Parts.Form.chkDetectSilenceByPeak.Value());
    });
    form.chkIgnoreSilence.Click.Connect([this] {
        frmMain& page = Parts.Form;
        Parts.Pause.IgnoreSilence = page.chkIgnoreSilence.Value() != 0;
        Write("IgnoreSilence", page.chkIgnoreSilence.Value());
        // Without silence there is nothing to time.
        page.txtQuitAfterSilence.Enabled(!Parts.Pause.IgnoreSilence);
        for (Label& label : page.lblQuitAfterSilence) label.Enabled(!Parts.Pause.IgnoreSilence);
    });
    for (const size_t mode : {size_t{0}, size_t{1}, size_t{2}, size_t{3}}) {
        form.optEndOfSong[mode].Click.Connect([this, mode] {
            Mode.Choose(static_cast<EndOfSong>(mode));
            Write("EndOfSongDetection", static_cast<int32_t>(mode));
        });
    }
    for (const size_t choice : {size_t{0}, size_t{1}}) {
        form.optDuplicatePartOfSong[choice].Click.Connect([this, choice] {
            Parts.Pause.DuplicatepartOfSong = choice == 1;
            Write("DuplicatepartOfSong", choice == 1 ? 1 : 0);
        });
    }
}

void PauseControl::AttachSliders() {
    for (const size_t side : {size_t{0}, size_t{1}}) {
        Slider& slider = Parts.Form.sldEndOfSongThreshold(side);
        slider.Scroll.Connect([this, side] { ShowThreshold(side); });
        slider.Change.Connect([this, side] {
            int32_t& held = Parts.Pause.EndOfSongThreshold[side];
            held = std::abs(Parts.Form.sldEndOfSongThreshold(side).Value()) * ThresholdStepMs;
            Write(ThresholdKeys[side], held);
        });
        ShowThreshold(side);
    }
    Parts.Form.vscMultiplier.Scroll.Connect([this] { TakeMultiplier(); });
    Parts.Form.vscMultiplier.Change.Connect([this] {
        TakeMultiplier();
        if (Loading) return;
        Parts.Store.WriteSetting(Parts.Media.MixerSectionName, "LevelMultiplier",
                                 Parts.Pause.LevelMultiplier);
    });
    TakeMultiplier();
}

void PauseControl::LoadProviderSettings(const std::string& section) {
    Parts.Overrides.ApplyTo(section, Parts.Media.MixerSectionName);
    Parts.Store.Ini().Reload();  // somebody may have edited the section by hand
    if (Loaded == section) return;
    Loaded = section;
    const bool before = std::exchange(Loading, true);
    LoadLevels(section);
    LoadFlags(section);
    LoadEndOfSong(section);
    LoadTimes(section);
    LoadMultiplier();
    Loading = before;
}

void PauseControl::StoreProviderSettings() {
    frmMain& form = Parts.Form;
    const PauseSettings& pause = Parts.Pause;
    form.txtLengthOfPause.RunValidate();
    form.txtSilenceAmplitude.RunValidate();
    form.txtEndOfSilenceAmplitude.RunValidate();
    form.chkDetectSilenceByPeak.Click.Raise();
    form.txtQuitAfterSilence.RunValidate();
    form.txtIgnoreShortSongs.RunValidate();
    form.vscMultiplier.Change.Raise();
    // Loading has run the handlers of these without writing. Run again, those of the choices would make
    // further choices.
    Write("IgnorePauseFor", pause.IgnorePauseBuffers * BufferMilliseconds);
    Write("IgnoreSilence", pause.IgnoreSilence ? 1 : 0);
    Write("EndOfSongDetection", static_cast<int32_t>(pause.EndOfSongDetection));
    Write("DuplicatepartOfSong", pause.DuplicatepartOfSong ? 1 : 0);
    for (const size_t side : {size_t{0}, size_t{1}}) {
        Write(ThresholdKeys[side], pause.EndOfSongThreshold[side]);
    }
    Write("EndOfSongTimer", pause.EndOfSongTimer);
}

void PauseControl::LoadLevels(const std::string& section) {
    frmMain& form = Parts.Form;
    PauseSettings& pause = Parts.Pause;
    const int32_t lengthMs = Read(section, "LengthOfPause");
    pause.PauseBuffers = Narrowed<int16_t>(lengthMs / BufferMilliseconds);
    form.txtLengthOfPause.Text(std::to_string(lengthMs));
    pause.IgnorePauseBuffers = Read(section, "IgnorePauseFor") / BufferMilliseconds;

    pause.SilenceAmplitude = Narrowed<int16_t>(Read(section, "SilenceAmplitude"));
    Parts.Signal.ActiveThreshold = pause.SilenceAmplitude;
    form.txtSilenceAmplitude.Text(std::to_string(pause.SilenceAmplitude));

    pause.EndOfSilenceAmplitude = Narrowed<int16_t>(Parts.Store.ReadProviderInt(
        section, "EndOfSilenceAmplitude", EndOfSilenceFor(pause.SilenceAmplitude)));
    form.txtEndOfSilenceAmplitude.Text(std::to_string(pause.EndOfSilenceAmplitude));
}

void PauseControl::LoadFlags(const std::string& section) {
    frmMain& form = Parts.Form;
    PauseSettings& pause = Parts.Pause;
    form.chkDetectSilenceByPeak.Value(Read(section, "DetectSilenceByPeak"));
    pause.DetectSilenceByPeak = form.chkDetectSilenceByPeak.Value() != 0;  // the search overrides it
    pause.PauseDetectionTolerance = Read(section, "PauseDetectionTolerance");
    pause.PauseDetectionToleranceAds = Read(section, "PauseDetectionToleranceAds");
    pause.AllowedPauseAfterEndOfSong = Read(section, "AllowedPauseAfterEndOfSong");
    form.chkIgnoreSilence.Value(Read(section, "IgnoreSilence"));
}

void PauseControl::LoadEndOfSong(const std::string& section) {
    frmMain& form = Parts.Form;
    PauseSettings& pause = Parts.Pause;
    // A source without a mode of its own has that of all sources. The first start has written it there.
    const int32_t common = Read(AnySourceSection, "EndOfSongDetection");
    const int32_t stored = Parts.Store.ReadProviderInt(section, "EndOfSongDetection", common);
    const bool known = stored >= 0 && stored <= static_cast<int32_t>(EndOfSong::Automatic);
    form.optEndOfSong[known ? static_cast<size_t>(stored) : 0].Value(true);

    // After the mode, which has made a choice of its own here.
    const bool duplicate = Read(section, "DuplicatepartOfSong") != 0;
    form.optDuplicatePartOfSong[duplicate ? 1 : 0].Value(true);

    for (const size_t side : {size_t{0}, size_t{1}}) {
        Slider& slider = form.sldEndOfSongThreshold(side);
        const double steps = static_cast<double>(Read(section, ThresholdKeys[side])) / ThresholdStepMs;
        slider.Value(RoundToInt32(side == 0 ? -steps : steps));
        pause.EndOfSongThreshold[side] = std::abs(slider.Value()) * ThresholdStepMs;
    }
}

void PauseControl::LoadTimes(const std::string& section) {
    frmMain& form = Parts.Form;
    PauseSettings& pause = Parts.Pause;
    pause.EndOfSongTimer = Read(section, "EndOfSongTimer");
    form.txtEndOfSongTimer.Text(std::to_string(pause.EndOfSongTimer / SecondsPerMinute));
    const int32_t quitMinutes = Read(section, "QuitAfterSilence");
    pause.QuitAfterSilence = Narrowed<int32_t>(int64_t{quitMinutes} * SecondsPerMinute);
    form.txtQuitAfterSilence.Text(std::to_string(quitMinutes));
    pause.IgnoreShortSongs = Read(section, "IgnoreShortSongs");
    form.txtIgnoreShortSongs.Text(std::to_string(pause.IgnoreShortSongs));
}

void PauseControl::LoadMultiplier() {
    Parts.Form.vscMultiplier.Value(Read(Parts.Media.MixerSectionName, "LevelMultiplier"));
    TakeMultiplier();  // others change the gain without the scroll bar
}

int32_t PauseControl::Read(const std::string& section, const char* key) const {
    const auto rows = ProviderSettingsTable();
    const auto row = std::ranges::find(rows, std::string_view(key), &ProviderSettingRow::Key);
    return Parts.Store.ReadProviderInt(section, key, row->Default);
}

bool PauseControl::SilenceAmplitudeRefused() {
    frmMain& form = Parts.Form;
    PauseSettings& pause = Parts.Pause;
    const auto level = Accepted(form.txtSilenceAmplitude, -1, 5000);
    if (level) {
        pause.SilenceAmplitude = Narrowed<int16_t>(*level);
        Write("SilenceAmplitude", *level);
    }
    // The lower threshold drags the upper one along, also when what was typed is refused.
    if (pause.EndOfSilenceAmplitude < pause.SilenceAmplitude) {
        pause.EndOfSilenceAmplitude = EndOfSilenceFor(pause.SilenceAmplitude);
        form.txtEndOfSilenceAmplitude.Text(std::to_string(pause.EndOfSilenceAmplitude));
        form.txtEndOfSilenceAmplitude.RunValidate();  // what it refuses is reported there
    }
    return !level;
}

bool PauseControl::EndOfSilenceAmplitudeRefused() {
    const int32_t lowest = std::max<int32_t>(1, Parts.Pause.SilenceAmplitude);
    const auto level = Accepted(Parts.Form.txtEndOfSilenceAmplitude, lowest, 12000);
    if (!level) return true;
    Parts.Pause.EndOfSilenceAmplitude = Narrowed<int16_t>(*level);
    Write("EndOfSilenceAmplitude", *level);
    return false;
}

/// The number in a box if it is good; nothing if the reason has been reported.
std::optional<int32_t> PauseControl::Accepted(TextBox& box, int32_t minimum, int32_t maximum, int32_t step) {
    if (ValidateNumber(box, minimum, maximum, step, Parts.Dialogs, Parts.Messages)) return std::nullopt;
    return WholeNumberFromText(box.Text());
}

void PauseControl::ShowThreshold(size_t side) {
    const int32_t halves = std::abs(Parts.Form.sldEndOfSongThreshold(side).Value());
    Parts.Form.lblEndOfSongThreshold[FirstThresholdLabel + side].Caption(HalfSecondsText(halves));
}

void PauseControl::TakeMultiplier() {
    const int32_t percent = Parts.Form.vscMultiplier.Value();
    Parts.Form.lblMultiplier.Caption(std::to_string(percent) + "%");
    Parts.Pause.LevelMultiplier = percent;
}

std::string PauseControl::Section() const {
    if (!Parts.Media.ProviderName.empty()) return Parts.Media.ProviderName;
    // Between two providers what is shown belongs to the last one.
    return Loaded.value_or(NoStationData);
}

void PauseControl::Write(const char* key, int32_t value) {
    if (Loading) return;
    const std::string section = Section();
    // What is shown is no longer what the section holds that was loaded last.
    if (Loaded != section) Loaded.reset();
    Parts.Store.WriteSetting(section, key, value);
}

}  // namespace Corvetape
