#include "recording/automatic/source_watch.h"

#include <utility>

#include "core/controls/held.h"
#include "media/provider_wmp.h"

namespace Corvetape {

namespace {

constexpr int64_t NanosecondsPerMs = 1'000'000;

/// A length that was estimated or came late is corrected once or twice. That of a stream grows every second.
constexpr int GrowthsOfStream = 3;

}  // namespace

std::string NameToLearnBy(const std::string& player) {
    constexpr std::string_view prefix = "org.mpris.MediaPlayer2.";
    std::string name = player.starts_with(prefix) ? player.substr(prefix.size()) : player;
    return name.substr(0, name.find(".instance"));
}

bool StreamFinder::IsStream(const PlayerReport& player) {
    const PlayerReport before = std::exchange(Before, player);
    // The length of a file is known a little later than its name.
    if (player.Address.starts_with("file:")) return false;
    if (player.LengthMs <= 0) return true;
    const bool same = player.Player == before.Player && player.TrackId == before.TrackId &&
                      player.Address == before.Address;
    if (!same) Growths = 0;
    if (Growths >= GrowthsOfStream) return true;
    const bool sameTitle = player.Artist == before.Artist && player.Title == before.Title;
    if (!sameTitle || player.LengthMs < before.LengthMs) Growths = 0;
    if (same && sameTitle && player.LengthMs > before.LengthMs) ++Growths;
    return Growths >= GrowthsOfStream;
}

SourceWatch::SourceWatch(SourceWatchParts parts) : Parts(parts) {
    Parts.Form.tmrGetMediaData.Timer.Connect([this] { Tick(); });
}

void SourceWatch::Tick() {
    const bool active = Parts.Recorder.Active();
    if (Parts.Bridge != nullptr) Parts.Bridge->FirstCounts(active);
    if (!active || Busy) return;
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
    look.LearnsAs = NameToLearnBy(player.Player);
    look.Status = player.Status;
    look.Others = Parts.Bridge->OthersPlay();
    look.OfInput = Parts.Bridge->IsTheInput();
    if (player.Playing) look.Media = WithNameOfFile(look.Media, player.Address);
    // Of a stream every title is a piece of its own, whatever its player calls it, and has no position.
    if (Streams.IsStream(player)) return;
    look.TrackId = player.TrackId + "\n" + player.Address;
    if (player.LengthMs > 0) look.Length = player.LengthMs / BufferMilliseconds;
    if (player.BeganAtMs < 0) return;
    look.Position = (nowMs - player.BeganAtMs) / BufferMilliseconds;
}

}  // namespace Corvetape
