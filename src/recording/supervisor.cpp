#include "recording/supervisor.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <utility>

#include "core/text/artist_and_title.h"
#include "core/text/text.h"

namespace Corvetape {

namespace {

/// Highest age of a song in seconds, nine hours.
constexpr int16_t OldestAge = std::numeric_limits<int16_t>::max();

/// Shown in place of a provider's name while there is none.
constexpr const char* NoProviderText = " \xE2\x80\xA2 ";

}  // namespace

const Supervisor::NamedStep Supervisor::Steps[] = {
    {"FirstRun", &Supervisor::FirstRun},
    {"FindProvider", &Supervisor::FindProvider},
    {"PollOutsideMediaMode", &Supervisor::PollOutsideMediaMode},
    {"AgeSong", &Supervisor::AgeSong},
    {"TakeSongData", &Supervisor::TakeSongData},
    {"ShowProvider", &Supervisor::ShowProvider},
    {"ShowMedia", &Supervisor::ShowMedia},
    {"ShowFlags", &Supervisor::ShowFlags},
    {"ShowState", &Supervisor::ShowState},
    {"CountDown", &Supervisor::CountDown},
    {"WatchSilence", &Supervisor::WatchSilence},
    {"WatchBuffers", &Supervisor::WatchBuffers},
    {"CutByTime", &Supervisor::CutByTime},
    {"Drain", &Supervisor::Drain},
    {"WatchDisk", &Supervisor::WatchDisk},
};

std::span<const char* const> Supervisor::StepNames() {
    static const std::array<const char*, std::size(Steps)> names = [] {
        std::array<const char*, std::size(Steps)> result{};
        std::ranges::transform(Steps, result.begin(), [](const NamedStep& step) { return step.Name; });
        return result;
    }();
    return names;
}

Supervisor::Supervisor(SupervisorParts parts, SupervisorActions actions)
    : Parts(parts), Actions(std::move(actions)) {
    Parts.Form.tmr1Second.Timer.Connect([this] { TimerFired(); });
}

void Supervisor::TimerFired() {
    const DateTime now = Parts.Clock.LocalNow();
    const int32_t second = (now.Hour * 60 + now.Minute) * 60 + now.Second;
    if (second == LastSecond) return;
    LastSecond = second;
    ++TickCount;
    const bool running = Parts.Form.tmr1Second.Running();
    for (const NamedStep& step : Steps) {
        if ((this->*step.Run)() == Next::Stop) return;
        // A box of that step may have been open when the program ended.
        if (running && !Parts.Form.tmr1Second.Running()) return;
    }
}

Supervisor::Next Supervisor::FirstRun() {
    if (TickCount != 2) return Next::Continue;
    // The input is open while its box waits for an answer.
    Parts.Signal.SilenceStartSecond = Parts.Clock.TimeGetTime() / 1000;
    if (!Actions.FillInputDevices()) {
        Actions.Unload();
        return Next::Stop;
    }
    TabStrip& tabs = Parts.Form.tbsMain;
    if (Parts.Lifecycle.WizardRequested) {
        Actions.OpenAssistant("wizard.htm");
    } else if (tabs.SelectedKey() == "TAB_ABOUT") {
        tabs.Select("TAB_RECORDING");
    }
    if (Parts.Form.chkNoStartupInfo.Value() == 0) {
        Actions.RunFirstBatch();
        Parts.Lifecycle.WizardRequested = true;
        Actions.OpenAssistant("1st.htm");
    }
    // The time since the start of the program does not count as silence.
    Parts.Signal.SilenceStartSecond = Parts.Clock.TimeGetTime() / 1000;
    return Next::Continue;
}

Supervisor::Next Supervisor::FindProvider() {
    if (Parts.Media.StationDataEnabled && Actions.ProviderWanted()) Actions.ChooseProvider();
    return Next::Continue;
}

Supervisor::Next Supervisor::PollOutsideMediaMode() {
    const EndOfSong mode = Parts.Pause.EndOfSongDetection;
    const bool byTimer = mode == EndOfSong::MediaData || mode == EndOfSong::Automatic;
    if (!Parts.Media.StationDataEnabled || byTimer) return Next::Continue;
    if (SongAge < 10 || SongAge % 10 == 0) {
        Actions.GetStationData();
        Actions.LoadImage(Parts.Media.CurrentMedia.Cover);
    }
    return Next::Continue;
}

Supervisor::Next Supervisor::AgeSong() {
    if (!Parts.Media.StationDataEnabled) return Next::Continue;
    if (Parts.Cut.SongBoundary) {
        Parts.Cut.SongBoundary = false;
        SongAge = 0;
        SongDataTaken = false;
    } else if (SongAge < OldestAge) {
        ++SongAge;
    } else {
        // A running number must not wrap to a young song, and every tenth of its values must still come.
        SongAge = OldestAge - 9;
    }
    return Next::Continue;
}

Supervisor::Next Supervisor::TakeSongData() {
    MediaState& media = Parts.Media;
    if (!media.StationDataEnabled || SongDataTaken) return Next::Continue;
    if (SongAge <= Parts.Settings.EncodeDelay / 1000 + 1) return Next::Continue;
    // Up to its cut the file holds the song before, which needs its record and its flags.
    if (Parts.Cut.CutPending) return Next::Continue;
    if (Parts.Form.tmrEncodeFile.Running() || media.CurrentMedia.Song.empty()) return Next::Continue;
    const bool same = media.CurrentMedia.Artist == media.SongMedia.Artist &&
                      media.CurrentMedia.Song == media.SongMedia.Song;
    if (same) return Next::Continue;
    media.SongMedia = media.CurrentMedia;
    SongDataTaken = true;
    if (Parts.Flags.RecordCurrentSong && Actions.IsSongExcluded()) {
        Parts.Flags.RecordCurrentSong = false;
        Parts.Flags.RecordNextSong = true;
        ReportDecision(Text("860", {ArtistAndTitle(media.SongMedia)}));
    }
    return Next::Continue;
}

Supervisor::Next Supervisor::ShowProvider() {
    const std::string& name = Parts.Media.ProviderName;
    const std::string shown = name.empty() || name == NoStationData ? NoProviderText : " " + name + " ";
    for (Label& label : Parts.Form.lblProvider) label.Caption(shown);
    return Next::Continue;
}

Supervisor::Next Supervisor::ShowMedia() {
    frmMain& form = Parts.Form;
    const STATIONANDSONGDATA& media = Parts.Media.CurrentMedia;
    if (form.txtStation.Text() == media.StationName && form.txtArtist.Text() == media.Artist &&
        form.txtSong.Text() == media.Song && form.txtAlbum.Text() == media.Album) {
        return Next::Continue;
    }
    form.txtStation.Text(media.StationName);
    form.txtArtist.Text(media.Artist);
    form.txtSong.Text(media.Song);
    form.txtAlbum.Text(media.Album);
    if (media.Song.empty()) {
        ShowNoMedia();
    } else {
        ShowMediaTexts();
    }
    return Next::Continue;
}

void Supervisor::ShowNoMedia() {
    Parts.Form.txtTimeRemaining.Text("");
    Parts.Form.lblStatus[3].Caption("");
    Parts.CoverBar.lblArtist.Caption(frmCoverButtons::NoTitleText);
    Parts.CoverBar.lblSong.Caption(frmCoverButtons::NoTitleText);
    const std::string text = Text("100");
    Parts.Form.Caption(text);
    Parts.PlainBar.Caption(text);
    Actions.ShowTrayTip(text);
}

void Supervisor::ShowMediaTexts() {
    const STATIONANDSONGDATA& media = Parts.Media.CurrentMedia;
    Parts.Form.Caption("Corvetape \xC2\xB7 " + media.Artist + " \xC2\xB7 " + media.Song);
    Parts.PlainBar.Caption(media.Artist + " \xC2\xB7 " + media.Song);
    Parts.CoverBar.lblArtist.Caption(media.Artist);
    Parts.CoverBar.lblSong.Caption(media.Song);
    // A tray tip takes an ampersand for a mark of the next letter; three of them show one.
    const auto shown = [](const std::string& field) { return ReplaceAll(field, "&", "&&&"); };
    Actions.ShowTrayTip(shown(media.Artist) + ":\n" + shown(media.Song) + "\n" + shown(media.Album));
}

Supervisor::Next Supervisor::ShowFlags() {
    Actions.ShowFlags();
    return Next::Continue;
}

Supervisor::Next Supervisor::ShowState() {
    int16_t state = 0;
    if (Parts.Flags.RecordCurrentSong) {
        state = 1;
    } else if (Parts.Flags.RecordNextSong) {
        state = 2;
    }
    if (state != TrayState) {
        TrayState = state;
        Actions.ShowTrayState(state);
    }
    return Next::Continue;
}

Supervisor::Next Supervisor::CountDown() {
    frmMain& form = Parts.Form;
    if (form.chkStopRecording[1].Value() == 0 || !Parts.Flags.RecordCurrentSong) return Next::Continue;
    int32_t& left = Parts.Flags.RecordingSecondsLeft;
    --left;
    if (left % 60 == 0) form.txtRecordingPeriod.Text(std::to_string(left / 60));
    if (left != 0) return Next::Continue;
    if (Parts.Settings.QuitAfterRecording) Parts.Flags.QuitAtEndOfSong = true;
    form.chkStopRecording[0].Value(1);
    return Next::Continue;
}

Supervisor::Next Supervisor::WatchBuffers() {
    Parts.Form.lblMaxBuffers.Caption(std::to_string(Parts.MaxBuffersUsed));
    if (int64_t{Parts.MaxBuffersUsed} + 1 < Parts.Settings.RecordingBuffers) return Next::Continue;
    // Late is not lost: the sound server keeps what nobody has fetched yet.
    const bool lost = std::exchange(FramesLostWhenTold, Parts.Signal.FramesLost) != Parts.Signal.FramesLost;
    const std::string text = Text(lost ? "870" : "814", {std::to_string(Parts.MaxBuffersUsed)});
    Actions.WriteLog("ERROR", text);
    Parts.Form.lblStatus[1].Caption(text);
    Parts.MaxBuffersUsed = 0;
    return Next::Continue;
}

Supervisor::Next Supervisor::CutByTime() {
    if (Parts.Pause.EndOfSongDetection != EndOfSong::FixedTime) return Next::Continue;
    CutState& cut = Parts.Cut;
    ++cut.FixedTimeSeconds;
    // The time may have been shortened since the last cut. Without a time nothing is cut.
    const int32_t due = Parts.Pause.EndOfSongTimer;
    if (due <= 0 || cut.FixedTimeSeconds < due) return Next::Continue;
    cut.FixedTimeSeconds = 0;
    cut.SongBoundary = true;
    cut.CutIndex = Parts.Ring.AudioWriteIndex;
    cut.CutPending = true;
    return Next::Continue;
}

Supervisor::Next Supervisor::Drain() {
    if (Actions.DrainAudioRing()) return Next::Continue;
    Actions.Unload();
    return Next::Stop;
}

Supervisor::Next Supervisor::WatchDisk() {
    MinuteCounter = static_cast<int16_t>((MinuteCounter + 1) % 60);
    if (MinuteCounter != 0) {
        Actions.CheckReserve();
        return Next::Continue;
    }
    if (!Actions.CheckDisk()) {
        Actions.Unload();
        return Next::Stop;
    }
    Actions.CheckUpdate();
    return Next::Continue;
}

void Supervisor::ReportDecision(const std::string& text) {
    Actions.WriteLog("INFO", text);
    Parts.Form.lblStatus[1].Caption(text);
}

std::string Supervisor::Text(const std::string& key, std::initializer_list<std::string> arguments) const {
    return Actions.FormatMsg(key, std::span(arguments.begin(), arguments.size()));
}

}  // namespace Corvetape
