#include "platform/linux/players/mpris_players.h"

#include <sys/stat.h>

#include <QThread>
#include <cstdlib>
#include <utility>

#include "platform/linux/players/mpris_listener.h"

namespace Corvetape {
namespace {

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

struct Callbacks {
    std::function<void(const PlayerReport&)> Changed;
    std::function<void(const std::string& player)> Gone;
};

/// Carries news over to the loop. What is still on its way when the callbacks are gone is dropped there.
MprisNews NewsFor(EventLoop& loop, const std::weak_ptr<Callbacks>& callbacks) {
    MprisNews news;
    news.Changed = [&loop, callbacks](const PlayerReport& report) {
        loop.Post([callbacks, report] {
            if (const auto present = callbacks.lock()) present->Changed(report);
        });
    };
    news.Gone = [&loop, callbacks](const std::string& player) {
        loop.Post([callbacks, player] {
            if (const auto present = callbacks.lock()) present->Gone(player);
        });
    };
    return news;
}

}  // namespace

std::string SessionBusAddress() {
    // The library itself would start a bus where it finds none, or where it is asked to.
    std::string address = Variable("DBUS_SESSION_BUS_ADDRESS");
    if (address.starts_with("autolaunch:") || address.starts_with("disabled:")) return {};
    if (!address.empty()) return address;
    const std::string runtime = Variable("XDG_RUNTIME_DIR");
    const std::string socket = runtime + "/bus";
    struct stat status {};
    if (runtime.empty() || stat(socket.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode)) return {};
    return "unix:path=" + socket;
}

class MprisPlayers::Thread : public QThread {
 public:
    Thread(EventLoop& loop, MprisTerms options, std::shared_ptr<Callbacks> listener)
        : Choice(std::move(options)), Listener(std::move(listener)), News(NewsFor(loop, Listener)) {
        start();
    }
    ~Thread() override {
        quit();
        wait();
    }
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

 protected:
    void run() override {
        MprisListener listener(QString::fromStdString(Choice.Bus), Choice.AnswerLimit, News);
        listener.Begin();
        exec();
    }

 private:
    const MprisTerms Choice;
    const std::shared_ptr<Callbacks> Listener;
    const MprisNews News;
};

MprisPlayers::MprisPlayers(EventLoop& loop) : MprisPlayers(loop, MprisTerms()) {}

MprisPlayers::MprisPlayers(EventLoop& loop, MprisTerms options) : Loop(loop), Choice(std::move(options)) {}

MprisPlayers::~MprisPlayers() = default;

void MprisPlayers::Listen(std::function<void(const PlayerReport&)> changed,
                          std::function<void(const std::string& player)> gone) {
    Listening.reset();
    if (Choice.Bus.empty()) return;
    Listening = std::make_unique<Thread>(
        Loop, Choice, std::make_shared<Callbacks>(Callbacks{std::move(changed), std::move(gone)}));
}

}  // namespace Corvetape
