#include "app/nesting_loop.h"

#include <functional>
#include <utility>

#include "platform/event_loop.h"

namespace Corvetape {

namespace {

class NestingTimer : public LoopTimer {
 public:
    NestingTimer(EventLoop& loop, std::function<void()> fired)
        : Called(std::make_shared<Call>(std::move(fired))), Backing(loop.NewTimer([this, &loop] {
              if (std::exchange(Called->Posted, true)) return;
              loop.Post([weak = std::weak_ptr<Call>(Called)] {
                  if (const std::shared_ptr<Call> call = weak.lock()) call->Run();
              });
          })) {}

    void Start(std::chrono::milliseconds interval, TimerPrecision precision) override {
        Called->On = true;
        Backing->Start(interval, precision);
    }
    void Stop() override {
        Called->On = false;
        Backing->Stop();
    }
    bool Active() const override { return Backing->Active(); }

 private:
    /// What posted work holds: the timer may go while its handler runs.
    struct Call {
        explicit Call(std::function<void()> fired) : Fired(std::move(fired)) {}

        void Run() {
            Posted = false;
            if (On) Fired();
        }

        std::function<void()> Fired;
        bool Posted = false;
        bool On = false;
    };

    std::shared_ptr<Call> Called;
    std::unique_ptr<LoopTimer> Backing;
};

class NestingLoop : public EventLoop {
 public:
    explicit NestingLoop(EventLoop& below) : Below(below) {}

    std::unique_ptr<LoopTimer> NewTimer(std::function<void()> fired) override {
        return std::make_unique<NestingTimer>(Below, std::move(fired));
    }
    void Post(std::function<void()> work) override { Below.Post(std::move(work)); }
    void ProcessEvents() override { Below.ProcessEvents(); }
    void Sleep(std::chrono::milliseconds duration) override { Below.Sleep(duration); }
    void Run() override { Below.Run(); }
    void Quit() override { Below.Quit(); }

 private:
    EventLoop& Below;
};

}  // namespace

std::unique_ptr<EventLoop> NestingView(EventLoop& below) {
    return std::make_unique<NestingLoop>(below);
}

}  // namespace Corvetape
