#include "platform/linux/loop/qt_loop.h"

#include <time.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <deque>
#include <limits>
#include <mutex>
#include <vector>

#include "platform/linux/loop/timer_queue.h"

namespace Corvetape {
namespace {

int64_t Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

}  // namespace

class QtLoop::Core : public QObject {
 public:
    Core() {
        wake.setSingleShot(true);
        wake.setTimerType(Qt::PreciseTimer);
        connect(&wake, &QTimer::timeout, this, [this] { FireTimers(); });
        again.setSingleShot(true);
        connect(&again, &QTimer::timeout, this, [this] { RunPosted(); });
    }

    void Post(std::function<void()> item) {
        {
            const std::lock_guard guard(lock);
            posted.push_back(std::move(item));
        }
        if (QThread::currentThread() == thread()) {
            if (!again.isActive()) again.start(0);
        } else if (!signalled.exchange(true)) {
            QMetaObject::invokeMethod(
                this, [this] { RunPosted(); }, Qt::QueuedConnection);
        }
    }

    void RunPosted() {
        signalled = false;
        size_t count = 0;
        {
            const std::lock_guard guard(lock);
            count = posted.size();
        }
        for (; count > 0; --count) {
            std::function<void()> item;
            {
                const std::lock_guard guard(lock);
                if (posted.empty()) return;  // a nested round took the rest
                item = std::move(posted.front());
                posted.pop_front();
                // Should the item open a loop of its own, that loop handles the rest.
                if (!posted.empty()) again.start(0);
            }
            item();
        }
    }

    void FireTimers() {
        const int64_t now = Now();
        while (const std::shared_ptr<TimerQueue::Entry> entry = timers.TakeDue(now)) {
            entry->Running = true;
            Arm();  // for a loop that the handler may open
            entry->Fired();
            entry->Running = false;
        }
        Arm();
    }

    /// Timers that outlive the loop are silent from now on.
    void Close() {
        closed = true;
        wake.stop();
        again.stop();
    }

    void Arm() {
        if (closed) return;
        const std::optional<int64_t> latest = timers.NextWake();
        if (!latest) {
            wake.stop();
            return;
        }
        const int64_t milliseconds = std::max<int64_t>((*latest - Now() + 999'999) / 1'000'000, 0);
        wake.start(static_cast<int>(std::min<int64_t>(milliseconds, std::numeric_limits<int>::max())));
    }

    TimerQueue timers;
    std::vector<QEventLoop*> running;  // innermost last

 private:
    QTimer wake;
    QTimer again;
    bool closed = false;
    std::mutex lock;
    std::deque<std::function<void()>> posted;
    std::atomic<bool> signalled = false;
};

namespace {

template <class LoopCore>
class Timer : public LoopTimer {
 public:
    Timer(std::shared_ptr<LoopCore> loopCore, std::function<void()> fired)
        : core(std::move(loopCore)), entry(core->timers.Add(std::move(fired))) {}
    ~Timer() override {
        core->timers.Remove(entry);
        core->Arm();
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    void Start(std::chrono::milliseconds interval, TimerPrecision precision) override {
        TimerQueue::Start(*entry, Now(), interval, precision);
        core->Arm();
    }
    void Stop() override {
        entry->Active = false;
        core->Arm();
    }
    bool Active() const override { return entry->Active; }

 private:
    std::shared_ptr<LoopCore> core;
    std::shared_ptr<TimerQueue::Entry> entry;
};

}  // namespace

QtLoop::QtLoop() : core(std::make_shared<Core>()) {}
QtLoop::~QtLoop() {
    core->Close();
}

std::unique_ptr<LoopTimer> QtLoop::NewTimer(std::function<void()> fired) {
    return std::make_unique<Timer<Core>>(core, std::move(fired));
}

void QtLoop::Post(std::function<void()> work) {
    core->Post(std::move(work));
}

void QtLoop::ProcessEvents() {
    core->RunPosted();
    core->FireTimers();
    QCoreApplication::processEvents();
}

void QtLoop::Sleep(std::chrono::milliseconds duration) {
    timespec rest{duration.count() / 1000, (duration.count() % 1000) * 1'000'000};
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, &rest) == EINTR) {
    }
}

void QtLoop::Run() {
    QEventLoop loop;
    core->running.push_back(&loop);
    loop.exec();
    std::erase(core->running, &loop);
}

void QtLoop::Quit() {
    if (!core->running.empty()) core->running.back()->quit();
}

}  // namespace Corvetape
