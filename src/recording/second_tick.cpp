#include "recording/second_tick.h"

#include <iterator>

namespace Corvetape {

namespace {

/// False if the program has to end, so that the steps after this one do not run.
using Step = bool (*)(TickParts&);

/// Wraps a step after which the others always run.
template <auto Work>
constexpr Step Always = [](TickParts& parts) {
    Work(parts);
    return true;
};

/// The steps, in their order.
constexpr Step Steps[] = {
    [](TickParts& parts) { return parts.First.Tick(); },
    Always<[](TickParts& parts) { parts.Source.FindProvider(); }>,
    Always<[](TickParts& parts) { parts.Source.PollOutsideMediaMode(parts.Age.Seconds()); }>,
    Always<[](TickParts& parts) { parts.Age.Tick(); }>,
    Always<[](TickParts& parts) { parts.Heard.Tick(); }>,
    Always<[](TickParts& parts) { parts.Age.TakeSongData(); }>,
    Always<[](TickParts& parts) { parts.Display.ShowProvider(); }>,
    Always<[](TickParts& parts) { parts.Display.ShowMedia(); }>,
    Always<[](TickParts& parts) { parts.Recording.ShowFlags(); }>,
    Always<[](TickParts& parts) { parts.Display.ShowState(); }>,
    Always<[](TickParts& parts) { parts.Period.Tick(); }>,
    [](TickParts& parts) { return parts.Silence.Tick(); },
    Always<[](TickParts& parts) { parts.Buffers.Tick(); }>,
    Always<[](TickParts& parts) { parts.Pieces.Tick(); }>,
    [](TickParts& parts) { return parts.Songs.DrainRing(); },
    [](TickParts& parts) { return parts.Disk.Tick(); },
};

}  // namespace

SecondTick::SecondTick(TimerControl& tmr1Second, const Clock& clock, LifecycleFlags& lifecycle,
                       TickParts parts, ProgramRequests& requests)
    : Timer(tmr1Second), Time(clock), Lifecycle(lifecycle), Parts(parts), Requests(requests) {
    Timer.Timer.Connect([this] { TimerFired(); });
}

void SecondTick::TimerFired() {
    const DateTime now = Time.LocalNow();
    const int32_t second = (now.Hour * 60 + now.Minute) * 60 + now.Second;
    if (second == LastSecond) return;
    LastSecond = second;
    ++Lifecycle.Ticks;
    const bool running = Timer.Running();
    for (size_t place = 0; place < std::size(Steps); ++place) {
        if (UnderWay[place]) continue;
        UnderWay.set(place);
        const bool goesOn = Steps[place](Parts);
        UnderWay.reset(place);
        if (!goesOn) {
            Requests.End.Raise();
            return;
        }
        // A box of that step may have been open when the program ended.
        if (running && !Timer.Running()) return;
    }
}

}  // namespace Corvetape
