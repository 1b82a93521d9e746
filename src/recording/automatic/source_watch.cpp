#include "recording/automatic/source_watch.h"

#include <utility>

#include "core/controls/held.h"
#include "media/provider_wmp.h"

namespace Corvetape {

namespace {

constexpr int64_t NanosecondsPerMs = 1'000'000;

/// A length that was estimated or came late is corrected once or twice. That of a stream grows every second.
constexpr int GrowthsOfStream = 3;

/// Nothing that has an end is longer. Browsers give streams the largest length that there is.
constexpr int64_t LongestTrackMs = 24LL * 60 * 60 * 1000;

/// By then a length that grows has grown often enough.
constexpr int64_t StreamShowsMs = 5000;

/// The tags of a piece are known so long after its begin at the latest.
constexpr int64_t LateTagsMs = 3000;

bool IsLocalFile(const PlayerReport& player) {
    return player.Address.starts_with("file:");
}

/// Host and port of an address; empty for a file.
std::string_view HostOf(std::string_view address) {
    constexpr std::string_view mark = "://";
    const size_t scheme = address.find(mark);
    if (scheme == std::string_view::npos) return {};
    const std::string_view rest = address.substr(scheme + mark.size());
    const std::string_view authority = rest.substr(0, rest.find_first_of("/?#"));
    return authority.substr(authority.rfind('@') + 1);  // a password is nobody's business
}

}  // namespace

std::string NameToLearnBy(const std::string& player, const std::string& stream) {
    const std::string name = PlayerNameInWords(player);
    const std::string_view host = HostOf(stream);
    return host.empty() ? name : name + " " + std::string(host);
}

bool StreamFinder::IsStream(const PlayerReport& player) {
    const PlayerReport before = std::exchange(Before, player);
    // The length of a file is known a little later than its name.
    if (IsLocalFile(player)) return false;
    if (player.LengthMs <= 0 || player.LengthMs > LongestTrackMs) return true;
    const bool same = player.Player == before.Player && player.TrackId == before.TrackId &&
                      player.Address == before.Address;
    if (!same) Growths = 0;
    if (Growths >= GrowthsOfStream) return true;
    const bool sameTitle = player.Artist == before.Artist && player.Title == before.Title;
    if (!sameTitle || player.LengthMs < before.LengthMs) Growths = 0;
    if (same && sameTitle && player.LengthMs > before.LengthMs) ++Growths;
    return Growths >= GrowthsOfStream;
}

std::string TrackNames::Of(const PlayerReport& player, int64_t nowMs) {
    const std::string piece = player.TrackId + "\n" + player.Address;
    if (IsLocalFile(player)) return piece;
    const std::string title = player.Artist + "\n" + player.Title;
    if (player.Player != Player || piece != Piece) {
        Player = player.Player;
        Piece = piece;
        Since = nowMs;
        Title = title;
    } else if (title != Shown && nowMs - Since >= LateTagsMs) {
        Title = title;
    }
    Shown = title;
    return piece + "\n" + Title;
}

bool AddressNames::Count(const PlayerReport& player, bool isStream, int64_t nowMs) {
    if (player.Address != Address) {
        Address = player.Address;
        Since = nowMs;
    }
    if (IsLocalFile(player)) return true;
    return !isStream && nowMs - Since >= StreamShowsMs;
}

SourceWatch::SourceWatch(SourceWatchParts parts) : Parts(parts) {
    Parts.Form.tmrGetMediaData.Timer.Connect([this] { Tick(); });
    // The timer stands still where songs end in another way. The mode is set by an earlier handler.
    for (OptionButton& option : Parts.Form.optEndOfSong) {
        option.Click.Connect([this] { FollowMode(); });
    }
}

void SourceWatch::FollowMode() {
    if (Parts.Bridge != nullptr) Parts.Bridge->FirstCounts(Parts.Recorder.Active());
}

void SourceWatch::Tick() {
    if (!Parts.Recorder.Active() || Busy) return;
    const Held busy(Busy);
    Parts.Media.PreviousMedia = Parts.Media.CurrentMedia;
    Parts.Providers.GetStationData();
    Parts.Providers.LoadImage();
    Parts.Recorder.Look(Look());
}

SourceLook SourceWatch::Look() {
    const MediaState& media = Parts.Media;
    SourceLook look;
    const int64_t now = Parts.Clock.MonotonicNanoseconds() / NanosecondsPerMs;
    look.Slot = Slots.SlotAt(now, Parts.Recorder.Hear());
    look.Deaf = Slots.StandsStill();
    look.Media = media.CurrentMedia;
    const bool byPlayer = Parts.Bridge != nullptr && media.ProviderName == MediaPlayerName;
    if (byPlayer) {
        AddPlayer(look, Parts.Bridge->Present(), now);
    } else if (media.ProviderName != NoStationData) {
        look.Source = media.ProviderName;
        look.LearnsAs = media.ProviderName;
    }
    return look;
}

void SourceWatch::AddPlayer(SourceLook& look, const PlayerReport& player, int64_t nowMs) {
    look.Source = player.Player;
    look.LearnsAs = NameToLearnBy(player.Player, "");
    look.Status = player.Status;
    look.Others = Parts.Bridge->OthersPlay();
    look.OfInput = Parts.Bridge->IsTheInput();
    look.OfFile = IsLocalFile(player);
    const bool isStream = Streams.IsStream(player);
    const bool named = Names.Count(player, isStream, nowMs);
    if (player.Playing) {
        look.Media = named ? WithNameOfFile(look.Media, player.Address)
                           : WithoutNameOfAddress(look.Media, player.Address);
    }
    // Of a stream every title is a piece of its own, whatever its player calls it, and has no position.
    const std::string track = Tracks.Of(player, nowMs);
    if (isStream) {
        look.LearnsAs = NameToLearnBy(player.Player, player.Address);
        return;
    }
    look.TrackId = track;
    if (player.LengthMs > 0) look.Length = player.LengthMs / BufferMilliseconds;
    if (!player.BeganAtMs) return;
    look.Position = (nowMs - *player.BeganAtMs) / BufferMilliseconds;
}

}  // namespace Corvetape
