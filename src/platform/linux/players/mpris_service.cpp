#include "platform/linux/players/mpris_service.h"

#include <QThread>
#include <utility>

#include "platform/linux/players/mpris_adaptors.h"

namespace Corvetape {

struct MprisService::Core {
    explicit Core(EventLoop& loop) : Loop(loop) {}

    EventLoop& Loop;
    MediaButtons* Buttons = nullptr;
};

/// Speaks with the bus. Everything of the presence happens on it.
class MprisService::Thread : public QThread {
 public:
    Thread(const std::string& bus, const std::weak_ptr<Core>& core, EventLoop& loop)
        : Presence(std::make_unique<MprisPresence>(QString::fromStdString(bus))) {
        // They belong to the presence and go with it.
        static_cast<void>(std::make_unique<MprisRoot>(*Presence).release());
        static_cast<void>(std::make_unique<MprisPlayer>(*Presence).release());
        QObject::connect(Presence.get(), &MprisPresence::Pressed, Presence.get(),
                         [core, &loop](MediaButton button) {
                             loop.Post([core, button] {
                                 const auto present = core.lock();
                                 if (present && present->Buttons) present->Buttons->Pressed(button);
                             });
                         });
        Presence->moveToThread(this);
        start();
        Do([](MprisPresence& presence) { presence.Begin(); });
    }
    ~Thread() override {
        QMetaObject::invokeMethod(
            Presence.get(), [this] { Presence.reset(); }, Qt::BlockingQueuedConnection);
        quit();
        wait();
    }
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    template <typename Work>
    void Do(Work work) {
        QMetaObject::invokeMethod(Presence.get(), [presence = Presence.get(), work] { work(*presence); });
    }

 private:
    std::unique_ptr<MprisPresence> Presence;
};

MprisService::MprisService(EventLoop& loop, std::string bus)
    : Bus(std::move(bus)), Inner(std::make_shared<Core>(loop)) {}

MprisService::~MprisService() = default;

void MprisService::Follow(MediaButtons* buttons) {
    Inner->Buttons = buttons;
    if (buttons == nullptr || Speaking || Bus.empty()) return;
    Speaking = std::make_unique<Thread>(Bus, Inner, Inner->Loop);
}

void MprisService::Show(const PlayerDisplay& display) {
    if (display == Shown) return;
    Shown = display;
    if (Speaking) Speaking->Do([display](MprisPresence& presence) { presence.Show(display); });
}

void MprisService::Notify(const Notice& notice) {
    if (Speaking) Speaking->Do([notice](MprisPresence& presence) { presence.Notify(notice); });
}

}  // namespace Corvetape
