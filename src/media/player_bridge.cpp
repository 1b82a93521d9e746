#include "media/player_bridge.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "core/text/text.h"

namespace Corvetape {

namespace {

/// Longer than any title; what a player says may have any length.
constexpr size_t MostFieldBytes = 4096;

std::string Field(const std::string& text) {
    return std::string(CutText(text, MostFieldBytes));
}

}  // namespace

PlayerReport WithSplitTitle(PlayerReport report) {
    constexpr std::string_view separator = " - ";
    if (!report.Artist.empty()) return report;
    const size_t place = report.Title.find(separator);
    if (place == std::string::npos || place == 0) return report;
    report.Artist = report.Title.substr(0, place);
    report.Title.erase(0, place + separator.size());
    return report;
}

std::string PlayerNameInWords(std::string_view player) {
    constexpr std::string_view prefix = "org.mpris.MediaPlayer2.";
    if (player.starts_with(prefix)) player.remove_prefix(prefix.size());
    return std::string(player.substr(0, player.find(".instance")));
}

PlayerBridge::PlayerBridge(Players& players, RegistryBranches& registry, EventLoop& loop)
    : Source(players),
      Registry(registry),
      Alive(std::make_shared<bool>(true)),
      Timer(loop.NewTimer([this] { Publish(); })) {
    Registry.MakeVolatile(PlayerKeyPath);
    Listen();
}

PlayerBridge::~PlayerBridge() = default;

void PlayerBridge::Listen() {
    const std::weak_ptr<bool> alive = Alive;
    Source.Listen(
        [this, alive](const PlayerReport& report) {
            if (!alive.expired()) Changed(report);
        },
        [this, alive](const std::string& player) {
            if (!alive.expired()) Gone(player);
        });
}

void PlayerBridge::ListenAnew() {
    for (auto& [name, entry] : Reports) entry.Heard = false;
    Listen();
    Timer->Stop();  // the answers have their whole time
    Settle();
}

void PlayerBridge::Changed(const PlayerReport& report) {
    Entry& entry = Reports[report.Player];
    if (report.Playing && !entry.Report.Playing) entry.BeganAt = ++Begins;
    const bool news = entry.Report != report;
    entry.Report = report;
    entry.Heard = true;
    if (news) Settle();
}

void PlayerBridge::Gone(const std::string& player) {
    if (Reports.erase(player) > 0) Settle();
}

const PlayerReport* PlayerBridge::Counting() const {
    const auto present = Reports.find(Current.Player);
    if (KeepsFirst && present != Reports.end() && present->second.Report.Playing) {
        return &present->second.Report;
    }
    const Entry* best = nullptr;
    for (const auto& [name, entry] : Reports) {
        if (!entry.Report.Playing) continue;
        if (best == nullptr || entry.BeganAt > best->BeganAt) best = &entry;
    }
    return best == nullptr ? nullptr : &best->Report;
}

void PlayerBridge::Settle() {
    if (Source.AreTheInput()) {
        Publish();
        return;
    }
    // A player that reports its position many times a second must not put the values off for ever: the wait
    // begins with the first change and is not begun anew.
    if (!Timer->Active()) Timer->Start(std::chrono::milliseconds(PlayerSettleMs), TimerPrecision::Coarse);
}

void PlayerBridge::Publish() {
    Timer->Stop();
    std::erase_if(Reports, [](const auto& each) { return !each.second.Heard; });
    const PlayerReport* counting = Counting();
    const PlayerReport report = counting == nullptr ? PlayerReport{} : WithSplitTitle(*counting);
    FollowPresent(report);
    if (report == Published) return;
    Published = report;
    // The status comes last: whoever reads "Playing" finds the others in place.
    Write("Genre", Field(report.Genre));
    Write("Artist", Field(report.Artist));
    Write("Title", Field(report.Title));
    Write("Album", Field(report.Album));
    Write("Cover", Field(report.Cover));
    Write("Status", report.Playing ? "Playing" : "Stopped");
}

void PlayerBridge::FollowPresent(const PlayerReport& counting) {
    const auto present = Reports.find(Current.Player);
    if (counting.Playing) {
        Current = counting;
    } else {
        Current = present == Reports.end() ? PlayerReport{} : WithSplitTitle(present->second.Report);
    }
    Others = std::ranges::any_of(Reports, [&](const auto& each) {
        return each.second.Report.Playing && each.first != Current.Player;
    });
}

void PlayerBridge::Write(const char* name, const std::string& value) {
    // The values are in memory, where nothing fails.
    static_cast<void>(Registry.WriteRegistryValue(RegistryRoot::CurrentUser, PlayerKeyPath, name, value));
}

}  // namespace Corvetape
