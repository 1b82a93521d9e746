#include "media/provider_msie.h"

#include <algorithm>
#include <utility>

#include "core/controls/held.h"
#include "core/settings/profile.h"
#include "media/cover_images.h"
#include "media/text_decoding.h"
#include "media/window_search.h"

namespace Corvetape {

clsProviderMSIE::clsProviderMSIE(ProviderHost& host, BrowserPlaces places, BrowserNotices& notices)
    : Host(host), Places(std::move(places)), Notices(notices) {
    ClearMedia(Host.Media.CurrentMedia);
    ClearMedia(Host.Media.SongMedia);
    Host.Media.MixerSectionName = "Mixer";
    ReArmRecording(Host);
    From.Desktop = Places.Windows;
    LoadProfiles();
    const Held busy(Busy);
    if (Places.Documents) Places.Documents->BeginPoll();
    static_cast<void>(ConnectDocument());  // ProviderName shows whether anything was found
}

clsProviderMSIE::~clsProviderMSIE() {
    ClearMedia(Host.Media.CurrentMedia);
}

void clsProviderMSIE::LoadProfiles() {
    const Profile file(Places.Files, Places.ProfilePath);
    Profiles = ReadProfiles(file);
    if (const size_t unread = CountUnreadProfiles(file); unread > 0) {
        Notices.ProfilesUnread(Places.ProfilePath, unread);
    }
}

bool clsProviderMSIE::Find() {
    SearchPlace place(Places.Documents, Places.Windows);
    for (const ProviderProfile& profile : Profiles) {
        if (profile.ReadsWindow()) continue;
        From.Page = place.FindDocumentByPatterns(profile.WindowClass, profile.WindowTitle, profile.DocTitle,
                                                 profile.DocUrl);
        if (From.Page) {
            Current = &profile;
            return true;
        }
    }
    for (const ProviderProfile& profile : Profiles) {
        if (!profile.ReadsWindow()) continue;
        From.Window = place.FindWindowByPatterns(profile.WindowTitle, profile.WindowClass);
        if (From.Window != 0) {
            Current = &profile;
            return true;
        }
    }
    const bool wanted = std::ranges::any_of(Profiles, &ProviderProfile::ReadsWindow);
    if (wanted && Places.Windows != nullptr && !Places.Windows->Available()) Notices.WindowsWanted();
    return false;
}

bool clsProviderMSIE::ConnectDocument() {
    From.Page.reset();
    From.Window = 0;
    STATIONANDSONGDATA& media = Host.Media.CurrentMedia;
    for (std::string* field :
         {&media.StationName, &media.StationDescr, &media.Artist, &media.Song, &media.Album, &media.Cover}) {
        field->clear();
    }
    if (Profiles.empty() || !Find()) return false;
    BecomeProvider();
    static_cast<void>(ReadStationFields());  // a station without a name is still the source
    return true;
}

void clsProviderMSIE::BecomeProvider() {
    const std::string before = Host.Media.ProviderName;
    Host.Media.ProviderName = Current->Name;
    Host.Media.MixerSectionName = "Mixer" + Current->Name;
    ReArmRecording(Host);
    if (before != Current->Name) Host.Adoption.Adopt(Current->Name);
}

bool clsProviderMSIE::ReadField(std::string& field, const MediaFieldRule& rule, FieldKind kind) {
    RuleReading reading = EvaluateRule(From, rule, kind);
    if (reading.Skipped) return !reading.Failed;
    if (kind == FieldKind::Text) {
        field = MediaText(reading.Value);
    } else {
        // A page may name any file of this machine as its picture.
        field = IsWebAddress(reading.Value) ? std::move(reading.Value) : std::string();
    }
    return !reading.Failed;
}

bool clsProviderMSIE::ReadStationFields() {
    STATIONANDSONGDATA& media = Host.Media.CurrentMedia;
    media.StationName.clear();
    media.StationDescr.clear();
    if (!Connected() && !ConnectDocument()) return false;
    return ReadField(media.StationName, Current->Station) &&
           ReadField(media.StationDescr, Current->StationDesc);
}

bool clsProviderMSIE::ReadSongFields() {
    STATIONANDSONGDATA& media = Host.Media.CurrentMedia;
    for (std::string* field : {&media.Artist, &media.Song, &media.Album, &media.Cover}) field->clear();
    if (!Connected() && !ReadStationFields()) return false;
    if (media.StationName.empty() && !ReadStationFields()) return false;
    return ReadField(media.Artist, Current->Artist) && ReadField(media.Song, Current->Title) &&
           ReadField(media.Album, Current->Album) &&
           ReadField(media.Cover, Current->Cover, FieldKind::Address);
}

void clsProviderMSIE::GetStationData() {
    if (Busy) return;
    const Held busy(Busy);
    if (Places.Documents) Places.Documents->BeginPoll();
    if (ConnectDocument()) {
        static_cast<void>(ReadSongFields());  // fields after an error stay empty
    } else {
        Host.Media.ProviderName.clear();
    }
}

void clsProviderMSIE::GetSongData() {
    if (Busy) return;
    const Held busy(Busy);
    if (Places.Documents) Places.Documents->BeginPoll();
    static_cast<void>(ReadSongFields());  // fields after an error stay empty
}

bool clsProviderMSIE::RestartRadio() {
    if (Current == nullptr || Current->Restart.Element.empty()) return true;
    if (Busy || !From.Page) return false;
    if (Places.Documents) Places.Documents->BeginPoll();
    return From.Page->Run(Current->Restart.Element);
}

}  // namespace Corvetape
