#include "platform/linux/browser/radio_link.h"

#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QJsonDocument>
#include <QLocalSocket>
#include <csignal>
#include <map>
#include <thread>
#include <utility>

#include "platform/browser_protocol.h"
#include "platform/linux/files/descriptor.h"

namespace Corvetape {

namespace {

constexpr int EndLimitMs = 5000;  // a browser has so long to end by itself

QByteArray LineOf(const QJsonObject& message) {
    return QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
}

/// Waits for the end of a child whose connection is closed, on a thread that needs nothing of ours: the next
/// browser may be wanted before this one has gone.
void Collect(pid_t child) {
    std::thread([child] {
        const Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
        pollfd ended{process.Number(), POLLIN, 0};
        if (Uninterrupted([&] { return poll(&ended, 1, EndLimitMs); }) == 0) kill(child, SIGKILL);
        Uninterrupted([&] { return waitpid(child, nullptr, 0); });
    }).detach();
}

}  // namespace

/// What lives on the thread.
class RadioLinkWorker : public QObject {
 public:
    RadioLinkWorker(int socket, pid_t child, std::shared_ptr<RadioLinkNews> news)
        : Number(socket), Child(child), News(std::move(news)) {}

    void Begin() {
        Socket = std::make_unique<QLocalSocket>();
        QObject::connect(Socket.get(), &QLocalSocket::readyRead, this, [this] { Read(); });
        QObject::connect(Socket.get(), &QLocalSocket::disconnected, this, [this] { End(); });
        if (!Socket->setSocketDescriptor(Number)) End();
    }

    void Send(const QJsonObject& message) {
        if (Socket && !Over) Socket->write(LineOf(message));
    }

    void Evaluate(const QString& script, const std::shared_ptr<DevToolsAnswer>& answer) {
        if (!Socket || Over) return answer->Settle(std::nullopt);
        Owed[++Asked] = answer;
        Send({{BrowserProtocol::Kind, BrowserProtocol::Evaluate},
              {BrowserProtocol::Id, Asked},
              {BrowserProtocol::Script, script}});
    }

    /// Gives up everything that belongs to the thread.
    void Close() {
        Settle();
        if (Socket) Socket->disconnect();
        Socket.reset();
        if (!std::exchange(Over, true)) Collect(Child);
    }

 private:
    void Read() {
        while (!Over && Socket->canReadLine()) Take(Socket->readLine());
        if (!Over && Socket->bytesAvailable() > static_cast<qint64>(BrowserProtocol::LongestLine)) End();
    }

    void Take(const QByteArray& line) {
        const QJsonObject message = QJsonDocument::fromJson(line).object();
        const QString kind = message[BrowserProtocol::Kind].toString();
        if (kind == BrowserProtocol::Answer) return TakeAnswer(message);
        if (kind == BrowserProtocol::Crashed) Settle();  // nobody is there to answer
        News->Said(message);
    }

    void TakeAnswer(const QJsonObject& message) {
        const auto owed = Owed.find(message[BrowserProtocol::Id].toInt());
        if (owed == Owed.end()) return;
        if (message.contains(BrowserProtocol::Value)) {
            owed->second->Settle(QJsonDocument(message));
        } else {
            owed->second->Settle(std::nullopt);
        }
        Owed.erase(owed);
    }

    void Settle() {
        for (auto& [number, answer] : std::exchange(Owed, {})) answer->Settle(std::nullopt);
    }

    void End() {
        if (std::exchange(Over, true)) return;
        Settle();
        Socket->abort();
        News->Ended();
        Collect(Child);
    }

    const int Number;
    const pid_t Child;
    const std::shared_ptr<RadioLinkNews> News;
    std::unique_ptr<QLocalSocket> Socket;
    bool Over = false;
    int Asked = 0;
    std::map<int, std::shared_ptr<DevToolsAnswer>> Owed;
};

RadioLink::RadioLink(int socket, pid_t child, std::shared_ptr<RadioLinkNews> news)
    : Worker(std::make_unique<RadioLinkWorker>(socket, child, std::move(news))) {
    Worker->moveToThread(&Thread);
    Thread.start();
    QMetaObject::invokeMethod(Worker.get(), [worker = Worker.get()] { worker->Begin(); });
}

RadioLink::~RadioLink() {
    QMetaObject::invokeMethod(
        Worker.get(), [this] { Worker->Close(); }, Qt::BlockingQueuedConnection);
    Thread.quit();
    Thread.wait();
}

void RadioLink::Send(const QJsonObject& message) {
    QMetaObject::invokeMethod(Worker.get(), [worker = Worker.get(), message] { worker->Send(message); });
}

std::shared_ptr<DevToolsAnswer> RadioLink::Evaluate(const QString& script) {
    auto answer = std::make_shared<DevToolsAnswer>();
    QMetaObject::invokeMethod(Worker.get(),
                              [worker = Worker.get(), script, answer] { worker->Evaluate(script, answer); });
    return answer;
}

}  // namespace Corvetape
