#include "app/program_parts.h"

#include <algorithm>
#include <utility>

#include "app/wiring.h"
#include "core/lifecycle.h"
#include "core/text/text.h"
#include "media/provider_wmp.h"
#include "platform/folders.h"
#include "platform/system_info.h"

namespace Corvetape {

namespace {

/// Where the volumes of the inputs stand while a search changes them.
std::string RescueFile(const SettingsStore& store) {
    const std::string& path = store.Ini().Path();
    return path.substr(0, path.rfind('/')) + "/mixer-before-search.ini";
}

std::unique_ptr<PlayerBridge> BridgeTo(Players* players, RegistryBranches& registry, EventLoop& loop) {
    return players == nullptr ? nullptr : std::make_unique<PlayerBridge>(*players, registry, loop);
}

std::unique_ptr<CoverImages> CoversFrom(Http* web, Files& files, const PauseSettings& pause) {
    return web == nullptr ? nullptr : std::make_unique<CoverImages>(*web, files, pause);
}

}  // namespace

ProgramParts::ProgramParts(Machine machine, State& state, ProgramLinks links)
    : Host(machine),
      Memory(state),
      Owner(std::move(links)),
      RunName(machine.System.RunName()),
      Registry(machine.Files, UserRegistryFile(machine), MachineRegistryFile(machine)),
      Expansion(machine.Clock, machine.Folders, Registry),
      Store(machine.Files, machine.Folders, Registry, Expansion, machine.System.Version()),
      Journal(machine.Files, machine.Clock, state.Options, state.Folders),
      Messages(machine.Files, machine.Folders.ProgramFolder(), machine.Dialogs),
      Input({machine.WaveIn, machine.Loop, machine.Clock, state.Options, state.Signal, state.Ring},
            CaptureEventsOf(*this)),
      Writer({machine.Files, state.Flags, state.Signal, state.Pause, state.Media, state.Messages, state.Cut},
             SongPlaceOf(*this), SongEventsOf(*this)),
      Drain({state.Ring, state.Cut, state.Pause, state.Flags, Writer}),
      Learned(machine.Files, LearnedCutsFolder(machine), state.Options),
      Automatic({state.Ring, state.Cut, state.Pause, state.Options, Input.Format(), state.Flags, state.Signal,
                 state.Media, Writer, Learned}),
      Targets(Writer, Drain, Automatic),
      Path({state.Signal, state.Pause, state.Ring, machine.Clock},
           {state.Signal, state.Cut, state.Pause, state.Flags, state.Ring}, Targets),
      Pauses({state.Form, state.Pause, state.Signal, state.Media, Store, machine.Dialogs, Messages}),
      Mixers(machine.Mixer, Store, state.Media),
      SavedMixer(Mixers, state.Options, state.Media),
      Rescue(machine.Mixer, machine.Files, RescueFile(Store)),
      Levels(state.Form, state.Signal, state.Pause),
      Bridge(BridgeTo(Owner.Options.Players, Registry, machine.Loop)),
      Covers(CoversFrom(Owner.Options.Web, machine.Files, state.Pause)),
      Adoption(state.Media, AdoptionActionsOf(*this)),
      MediaHost(ProviderHostOf(*this)),
      Providers(MediaHost, FactoriesOf(*this)),
      Browser({state.Form, Store, Journal, Messages, machine.Processes, Owner.Options.Browser}),
      Launcher({state.Form, state.Options, Store, Expansion, machine.Processes, machine.Loop}),
      Encoders(state.Form, state.Options, Store, state.Lifecycle),
      OptionPages(state.Form, state.Options, Store, state.Flags, machine.Dialogs, Messages),
      FolderPage(state.Form, {state.Options, state.Folders}, Store, machine.Files, machine.Dialogs, Messages),
      LogPage(
          {state.Form, state.Folders, machine.Files, machine.Clock, machine.Loop, machine.Dialogs, Messages}),
      Watched(machine.Files, state.Folders),
      WatchTabs(state.Form, Watched, machine.Processes),
      Notes(machine.Files, state.Folders),
      Transfer({state.Media, state.Options, state.Folders, state.Pause, state.Flags, state.SongCounter,
                RunName, Owner.Options.InputFiles, Owner.Options.KeepNotes},
               machine.Files, machine.Processes, Journal, Notes, TransferCallbacksOf(*this)),
      Songs({machine.Files, machine.Clock, state.Options, state.Folders, WatchTabs, Transfer}),
      Links(state.Form, machine.Processes, Messages),
      Bars({state.Form, state.PlainBar, state.CoverBar, state.Media, state.Options, Store, machine.Loop,
            Covers.get()}),
      Disk({state.Form, machine.Files, state.Options, state.Folders, state.Flags, state.Messages},
           DiskCheckActionsOf(*this)),
      Look(state.Form, state.PlainBar, state.CoverBar, Messages),
      Recording(
          {state.Form, state.Flags, state.Cut, state.Media, state.Pause, state.Signal, state.Ring, Writer},
          SessionActionsOf(*this)),
      Poll({state.Form, state.Media, state.Cut, state.Flags, state.Signal, state.Ring, state.Pause, Drain,
            Recording},
           MediaPollActionsOf(*this)),
      Sources({state.Form, state.Media, machine.Clock, Providers, Bridge.get(), Covers.get(), Automatic}),
      Inputs({state.Form, machine.WaveIn, state.Options, Store, state.Media},
             {Journal, machine.Dialogs, Messages, state.Lifecycle}, InputListActionsOf(*this)),
      SearchWait(machine.Clock, machine.Loop),
      Search({Mixers, Inputs, state.Pause, state.Signal, state.Media, state.Options, SearchWait},
             machine.Dialogs, Messages),
      Gain({Mixers, Inputs, state.Pause, state.Signal, SearchWait}, machine.System.Version()),
      MixerButtons({state.Form, state.Pause, state.Lifecycle, state.Opened, machine.Dialogs,
                    machine.Processes, Messages},
                   {Mixers, Inputs, Search, Gain, Rescue, SearchWait}, machine.System.Version()),
      Break(*this),
      Watch({state.Form, state.PlainBar, state.CoverBar, machine.Clock, state.Options, state.Pause,
             state.Lifecycle, state.Flags, state.Cut, state.Signal, state.Media, state.Ring,
             Input.MaxBuffersUsed()},
            SupervisorActionsOf(*this)) {
    AttachHandlers(*this);
}

std::string ProgramParts::NameOfMusicFile() const {
    return NameSong(Memory.Media, Memory.Options, Memory.Folders, Memory.Pause.EndOfSongDetection).FinalName;
}

void ProgramParts::NoteSong() {
    if (!Owner.Options.KeepNotes || !Writer.HasSongFile()) return;
    if (Automatic.Active()) {
        NoteSong(Writer.SongBaseName(), Automatic.Media(), Automatic.Wanted());
        return;
    }
    // While a cut is pending the file still holds the song that has ended.
    const MediaState& media = Memory.Media;
    const std::optional<EndedSong>& ended = Memory.Cut.Ended;
    const bool wanted = ended ? ended->Wanted : Memory.Flags.RecordCurrentSong;
    const bool current = !Memory.Cut.CutPending && !media.CurrentMedia.Song.empty();
    const bool told = ended && !ended->Media.Song.empty();
    NoteSong(Writer.SongBaseName(),
             told      ? ended->Media
             : current ? media.CurrentMedia
                       : media.SongMedia,
             wanted);
}

void ProgramParts::NoteSong(const std::string& baseName, const STATIONANDSONGDATA& media, bool wanted) {
    if (!Owner.Options.KeepNotes) return;
    SongNote note;
    note.Run = RunName;
    note.Wanted = wanted;
    note.LeastSeconds = Memory.Pause.IgnoreShortSongs;
    const bool named =
        Memory.Media.StationDataEnabled && Memory.Pause.EndOfSongDetection != EndOfSong::FixedTime;
    if (named) note.Media = media;
    note.Media.FilePart = media.FilePart;
    Notes.Write(baseName, note);
}

void ProgramParts::LoadProviderSettings(const std::string& name) {
    const auto& overrides = Owner.Options.Overrides;
    const bool first = OverriddenSources.insert(name).second;
    for (const SettingOverride& each : overrides) {
        if (!first || !EqualIgnoringCase(each.Section, AnySourceSection)) continue;
        const bool gain = EqualIgnoringCase(each.Key, "LevelMultiplier");
        const std::string& section = gain ? Memory.Media.MixerSectionName : name;
        const auto own = [&](const SettingOverride& other) {
            return EqualIgnoringCase(other.Section, section) && EqualIgnoringCase(other.Key, each.Key);
        };
        if (std::ranges::none_of(overrides, own)) Store.Ini().Override(section, each.Key, each.Value);
    }
    Store.Ini().Reload();  // somebody may have edited the section by hand
    Pauses.LoadProviderSettings(name);
}

void ProgramParts::LoadImage(const std::string& address) {
    if (Covers) Covers->LoadImage(address);
}

std::string ProgramParts::WmaEncoderVersion(const std::string& ffmpeg) {
    constexpr const char* section = "Tools";
    constexpr const char* name = "WmaEncoder";
    const std::string file = ffmpeg + "|" + std::to_string(Host.Files.FileSize(ffmpeg).value_or(0)) + "|";
    const std::string known = TextOf(Registry.ReadUserValue(section, name));
    if (known.starts_with(file) && known.size() > file.size()) return known.substr(file.size());
    std::string version = ProbeWmaEncoder(Host.Processes, ffmpeg);
    // No answer may come of a busy machine alone: it is not kept, and asked for again at the next start, as
    // is one that cannot be written.
    if (!version.empty()) static_cast<void>(Registry.WriteUserValue(section, name, file + version));
    return version;
}

void ProgramParts::ResumeRecording() {
    RecordingFlags& flags = Memory.Flags;
    Label& status = Memory.Form.lblStatus[1];
    if (!Memory.Media.StationDataEnabled) {
        status.Caption(Messages.FormatMsg("871"));
        return;
    }
    if (!Disk.HasRoom(Input.Format().nAvgBytesPerSec)) {
        status.Caption(Messages.FormatMsg("872"));
        return;
    }
    // A disk that was nearly full was to end the recording; a switch of the command line still is.
    const int32_t info = Memory.Messages.PendingInfo;
    const bool byDisk = (info >= 833 && info <= 835) || Writer.SongFileError() != 0;
    if (byDisk) flags.DisableAtEndOfSong = false;
    // A silence that ended the recording is over when there is sound again.
    if (Watch.WaitsForSound()) return Watch.ShowSilence();
    flags.RecordingEnabled = true;
    status.Caption("");
}

void ProgramParts::StationDataClicked() {
    frmMain& form = Memory.Form;
    const bool enabled = form.chkStationDataEnable.Value() != 0;
    Memory.Media.StationDataEnabled = enabled;
    Store.WriteSetting("Providers", "Enable", enabled ? 1 : 0);
    form.cmdGetStationID.Enabled(enabled);
    for (Label& label : form.lblMedia) label.Enabled(enabled);
    // Without media data nothing says when the next song begins.
    form.cmdSkipThisRecording.Enabled(enabled && Memory.Flags.RecordCurrentSong);
    Memory.Flags.RecordingEnabled = enabled;
    // A song that waits for its hand-over keeps its record: there is only this one.
    if (!form.tmrEncodeFile.Running()) ClearMedia(Memory.Media.SongMedia);
    if (enabled) {
        Providers.Drop();
        Memory.Signal.PauseRecognition = -1;
    } else {
        Providers.SwitchOff();
    }
    for (Label& label : form.lblProvider) label.Caption(" \xE2\x80\xA2 ");
}

void ProgramParts::StationIDClicked() {
    constexpr float answerMs = 500;
    CommandButton& button = Memory.Form.cmdGetStationID;
    button.Enabled(false);
    if (Bridge && Memory.Media.ProviderName == MediaPlayerName && Memory.Media.StationDataEnabled) {
        Bridge->ListenAnew();
        PauseWithEvents(Host.Clock, Host.Loop, answerMs);
    }
    Providers.GetStationData();
    LoadImage(Memory.Media.CurrentMedia.Cover);
    button.Enabled(true);
}

}  // namespace Corvetape
