#include "platform/virtual/sim_loop.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "platform/virtual/post_box.h"

namespace Corvetape {

namespace {

struct TimerEntry {
    std::function<void()> Fired;
    uint64_t Number = 0;  ///< in the order of creation
    int64_t Due = 0;
    int64_t Interval = 0;  ///< nanoseconds
    bool Active = false;
    bool Firing = false;
};

}  // namespace

/// Shared by a loop and its timers, because a timer may outlive its loop.
struct SimLoopState {
    explicit SimLoopState(SimClock& clock) : Clock(clock) {}

    int64_t Now() const { return Clock.MonotonicNanoseconds(); }

    /// The timer that comes next: the earliest, of equal ones the oldest. None if no timer can fire.
    const std::shared_ptr<TimerEntry>* NextTimer() const {
        const std::shared_ptr<TimerEntry>* next = nullptr;
        for (const auto& timer : Active) {
            if (timer->Firing) continue;
            if (next == nullptr || timer->Due < (*next)->Due ||
                (timer->Due == (*next)->Due && timer->Number < (*next)->Number)) {
                next = &timer;
            }
        }
        return next;
    }

    void Fire(const std::shared_ptr<TimerEntry>& timer) {
        const int64_t missed = (Now() - timer->Due) / timer->Interval;
        timer->Due += (missed + 1) * timer->Interval;
        timer->Firing = true;
        ++Events;
        timer->Fired();
        timer->Firing = false;
    }

    /// Moves time to `target`, unless something was posted while the pace hook waited.
    bool MoveTo(int64_t target) {
        if (Pace) {
            Pace(target);
            if (!Posted.Empty()) return false;
        }
        Clock.Advance(std::chrono::nanoseconds(target - Now()));
        return true;
    }

    /// Handles one event that is due at `limit` at the latest. False if there is none.
    bool Step(int64_t limit) {
        if (!Posted.Empty()) {
            ++Events;
            Posted.Take()();
            return true;
        }
        const std::shared_ptr<TimerEntry>* next = NextTimer();
        if (next == nullptr || (*next)->Due > limit) return false;
        const std::shared_ptr<TimerEntry> timer = *next;  // kept, for it may be destroyed by what it does
        if (timer->Due > Now() && !MoveTo(timer->Due)) return true;
        Fire(timer);
        return true;
    }

    /// Time at its end, whatever is still posted by the pace hook handled first.
    void FinishAt(int64_t end) {
        while (Now() < end && !MoveTo(end)) {
            while (Step(Now())) {
            }
        }
    }

    SimClock& Clock;
    std::vector<std::shared_ptr<TimerEntry>> Active;
    PostBox Posted;
    SimLoop::PaceHook Pace;
    uint64_t TimersMade = 0;
    uint64_t Events = 0;
    bool QuitWanted = false;
};

namespace {

class SimTimer : public LoopTimer {
 public:
    SimTimer(std::shared_ptr<SimLoopState> state, std::function<void()> fired)
        : State(std::move(state)), Entry(std::make_shared<TimerEntry>()) {
        Entry->Fired = std::move(fired);
        Entry->Number = ++State->TimersMade;
    }
    ~SimTimer() override { Halt(); }
    SimTimer(const SimTimer&) = delete;
    SimTimer& operator=(const SimTimer&) = delete;

    void Start(std::chrono::milliseconds interval, TimerPrecision /*precision*/) override {
        Entry->Interval = std::chrono::nanoseconds(std::max(interval, std::chrono::milliseconds(1))).count();
        Entry->Due = State->Now() + Entry->Interval;
        if (Entry->Active) return;
        Entry->Active = true;
        State->Active.push_back(Entry);
    }

    void Stop() override { Halt(); }
    bool Active() const override { return Entry->Active; }

 private:
    void Halt() {
        if (!Entry->Active) return;
        Entry->Active = false;
        std::erase(State->Active, Entry);
    }

    std::shared_ptr<SimLoopState> State;
    std::shared_ptr<TimerEntry> Entry;
};

}  // namespace

SimLoop::SimLoop(SimClock& clock) : State(std::make_shared<SimLoopState>(clock)) {}

SimLoop::~SimLoop() = default;

std::unique_ptr<LoopTimer> SimLoop::NewTimer(std::function<void()> fired) {
    return std::make_unique<SimTimer>(State, std::move(fired));
}

void SimLoop::Post(std::function<void()> work) {
    State->Posted.Put(std::move(work));
}

void SimLoop::ProcessEvents() {
    // What falls due only while a handler sleeps waits for the next call.
    const int64_t now = State->Now();
    while (State->Step(now)) {
    }
}

void SimLoop::Sleep(std::chrono::milliseconds duration) {
    if (duration.count() <= 0) return;
    const int64_t target = State->Now() + std::chrono::nanoseconds(duration).count();
    if (State->Pace) State->Pace(target);
    State->Clock.Advance(std::chrono::nanoseconds(target - State->Now()));
}

void SimLoop::Run() {
    State->QuitWanted = false;
    while (!State->QuitWanted && State->Step(std::numeric_limits<int64_t>::max())) {
    }
}

void SimLoop::Quit() {
    State->QuitWanted = true;
}

void SimLoop::RunFor(std::chrono::nanoseconds duration) {
    RunUntil([] { return false; }, duration);
}

bool SimLoop::RunUntil(const std::function<bool()>& reached, std::chrono::nanoseconds limit) {
    const int64_t end = State->Now() + std::max<int64_t>(limit.count(), 0);
    if (reached()) return true;
    while (State->Now() <= end && State->Step(end)) {
        if (reached()) return true;
    }
    State->FinishAt(end);
    return reached();
}

bool SimLoop::QuitWanted() const {
    return State->QuitWanted;
}

uint64_t SimLoop::EventCount() const {
    return State->Events;
}

void SimLoop::PaceWith(PaceHook hook) {
    State->Pace = std::move(hook);
}

SimLoop::PaceHook PaceAgainst(const Clock& real, const Clock& simulated, double speed,
                              std::function<void(std::chrono::nanoseconds)> wait) {
    const int64_t realStart = real.MonotonicNanoseconds();
    const int64_t virtualStart = simulated.MonotonicNanoseconds();
    return [&real, realStart, virtualStart, speed, wait = std::move(wait)](int64_t virtualNs) {
        const double wanted = static_cast<double>(virtualNs - virtualStart) / speed;
        const int64_t ahead = static_cast<int64_t>(wanted) - (real.MonotonicNanoseconds() - realStart);
        if (ahead > 0) wait(std::chrono::nanoseconds(ahead));
    };
}

}  // namespace Corvetape
