#include "platform/virtual/source_players.h"

#include <chrono>
#include <utility>

namespace Corvetape {

namespace {

/// A part of the half second after which the last report is read, so that a reading finds what is new.
constexpr std::chrono::milliseconds LookEvery{100};

}  // namespace

SourcePlayers::SourcePlayers(EventLoop& loop, std::string name, std::function<SourceMedia()> read)
    : Name(std::move(name)), Read(std::move(read)), Timer(loop.NewTimer([this] { Look(); })) {}

void SourcePlayers::Listen(std::function<void(const PlayerReport&)> changed,
                           std::function<void(const std::string& player)> /*gone*/) {
    Changed = std::move(changed);
    Last.reset();
    Timer->Start(LookEvery, TimerPrecision::Coarse);
    Look();
}

void SourcePlayers::Look() {
    SourceMedia now = Read();
    if (Last == now) return;
    Last = std::move(now);
    Changed({Name, true, Last->StationName, Last->Artist, Last->Song, Last->Album, Last->Cover});
}

}  // namespace Corvetape
