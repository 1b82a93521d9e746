#include "platform/linux/loop/timer_queue.h"

#include <algorithm>

namespace Corvetape {

std::shared_ptr<TimerQueue::Entry> TimerQueue::Add(std::function<void()> fired) {
    auto entry = std::make_shared<Entry>();
    entry->Number = ++Made;
    entry->Fired = std::move(fired);
    Entries.push_back(entry);
    return entry;
}

void TimerQueue::Remove(const std::shared_ptr<Entry>& entry) {
    entry->Active = false;
    std::erase(Entries, entry);
}

void TimerQueue::Start(Entry& entry, int64_t now, std::chrono::milliseconds interval,
                       TimerPrecision precision) {
    entry.Interval = std::max<int64_t>(interval.count(), 1) * 1'000'000;
    entry.Due = now + entry.Interval;
    entry.Slack = precision == TimerPrecision::Coarse ? entry.Interval / 20 : 0;
    entry.Active = true;
}

std::optional<int64_t> TimerQueue::NextWake() const {
    std::optional<int64_t> wake;
    for (const auto& entry : Entries) {
        if (!entry->Active || entry->Running) continue;
        const int64_t latest = entry->Due + entry->Slack;
        if (!wake || latest < *wake) wake = latest;
    }
    return wake;
}

std::shared_ptr<TimerQueue::Entry> TimerQueue::TakeDue(int64_t now) {
    std::shared_ptr<Entry> first;
    for (const auto& entry : Entries) {  // in the order of making, so that only an earlier date wins
        if (!entry->Active || entry->Running || entry->Due > now) continue;
        if (!first || entry->Due < first->Due) first = entry;
    }
    if (first) {
        // Missed dates are not made up for; the beat stays.
        const int64_t missed = (now - first->Due) / first->Interval;
        first->Due += (missed + 1) * first->Interval;
    }
    return first;
}

}  // namespace Corvetape
