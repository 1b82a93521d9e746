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
    Told.reset();
    Timer->Start(LookEvery, TimerPrecision::Coarse);
    Look();
}

void SourcePlayers::Look() {
    SourceMedia now = Read();
    if (Told == now) return;
    Told = std::move(now);
    Changed({Name, true, Told->StationName, Told->Artist, Told->Song, Told->Album, Told->Cover});
}

}  // namespace Corvetape
