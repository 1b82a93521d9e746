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
        Wake.setSingleShot(true);
        Wake.setTimerType(Qt::PreciseTimer);
        connect(&Wake, &QTimer::timeout, this, [this] { FireTimers(); });
        Again.setSingleShot(true);
        connect(&Again, &QTimer::timeout, this, [this] { RunPosted(); });
    }

    void Post(std::function<void()> item) {
        {
            const std::lock_guard guard(Lock);
            Posted.push_back(std::move(item));
        }
        if (QThread::currentThread() == thread()) {
            if (!Again.isActive()) Again.start(0);
        } else if (!Signalled.exchange(true)) {
            QMetaObject::invokeMethod(
                this, [this] { RunPosted(); }, Qt::QueuedConnection);
        }
    }

    void RunPosted() {
        Signalled = false;
        size_t count = 0;
        {
            const std::lock_guard guard(Lock);
            count = Posted.size();
        }
        for (; count > 0; --count) {
            std::function<void()> item;
            {
                const std::lock_guard guard(Lock);
                if (Posted.empty()) return;  // a nested round took the rest
                item = std::move(Posted.front());
                Posted.pop_front();
                // Should the item open a loop of its own, that loop handles the rest.
                if (!Posted.empty()) Again.start(0);
            }
            item();
        }
    }

    void FireTimers() {
        const int64_t now = Now();
        while (const std::shared_ptr<TimerQueue::Entry> entry = Timers.TakeDue(now)) {
            entry->Running = true;
            Arm();  // for a loop that the handler may open
            entry->Fired();
            entry->Running = false;
        }
        Arm();
    }

    /// Timers that outlive the loop are silent from now on.
    void Close() {
        Closed = true;
        Wake.stop();
        Again.stop();
    }

    void Arm() {
        if (Closed) return;
        const std::optional<int64_t> latest = Timers.NextWake();
        if (!latest) {
            Wake.stop();
            return;
        }
        const int64_t milliseconds = std::max<int64_t>((*latest - Now() + 999'999) / 1'000'000, 0);
        Wake.start(static_cast<int>(std::min<int64_t>(milliseconds, std::numeric_limits<int>::max())));
    }

    TimerQueue Timers;
    std::vector<QEventLoop*> Nested;  // innermost last

 private:
    QTimer Wake;
    QTimer Again;
    bool Closed = false;
    std::mutex Lock;
    std::deque<std::function<void()>> Posted;
    std::atomic<bool> Signalled = false;
};

namespace {

template <class LoopCore>
class Timer : public LoopTimer {
 public:
    Timer(std::shared_ptr<LoopCore> loopCore, std::function<void()> fired)
        : Owner(std::move(loopCore)), Planned(Owner->Timers.Add(std::move(fired))) {}
    ~Timer() override {
        Owner->Timers.Remove(Planned);
        Owner->Arm();
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    void Start(std::chrono::milliseconds interval, TimerPrecision precision) override {
        TimerQueue::Start(*Planned, Now(), interval, precision);
        Owner->Arm();
    }
    void Stop() override {
        Planned->Active = false;
        Owner->Arm();
    }
    bool Active() const override { return Planned->Active; }

 private:
    std::shared_ptr<LoopCore> Owner;
    std::shared_ptr<TimerQueue::Entry> Planned;
};

}  // namespace

QtLoop::QtLoop() : Inner(std::make_shared<Core>()) {}
QtLoop::~QtLoop() {
    Inner->Close();
}

std::unique_ptr<LoopTimer> QtLoop::NewTimer(std::function<void()> fired) {
    return std::make_unique<Timer<Core>>(Inner, std::move(fired));
}

void QtLoop::Post(std::function<void()> work) {
    Inner->Post(std::move(work));
}

void QtLoop::ProcessEvents() {
    Inner->RunPosted();
    Inner->FireTimers();
    QCoreApplication::processEvents();
}

void QtLoop::Sleep(std::chrono::milliseconds duration) {
    timespec rest{duration.count() / 1000, (duration.count() % 1000) * 1'000'000};
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, &rest) == EINTR) {
    }
}

void QtLoop::Run() {
    QEventLoop loop;
    Inner->Nested.push_back(&loop);
    loop.exec();
    std::erase(Inner->Nested, &loop);
}

void QtLoop::Quit() {
    if (!Inner->Nested.empty()) Inner->Nested.back()->quit();
}

}  // namespace Corvetape
