#include "platform/linux/browser/devtools_thread.h"

#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QWebSocket>
#include <map>
#include <utility>
#include <vector>

namespace Corvetape {

namespace {

constexpr qint64 LargestList = 4LL * 1024 * 1024;
constexpr quint64 LargestAnswer = 4ULL * 1024 * 1024;
constexpr int ForgetAfterMs = 10'000;  // a browser that stands still is asked again after this time

using AnswerPointer = std::shared_ptr<DevToolsAnswer>;

std::optional<QJsonDocument> Parse(const QByteArray& text) {
    QJsonParseError error;
    QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) return std::nullopt;
    return document;
}

/// The connection to one page.
class PageSocket {
 public:
    PageSocket(uint16_t port, const QString& target) {
        Socket.setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
        Socket.setMaxAllowedIncomingMessageSize(LargestAnswer);
        Socket.setMaxAllowedIncomingFrameSize(LargestAnswer);
        QObject::connect(&Socket, &QWebSocket::connected, &Socket, [this] { SendWaiting(); });
        QObject::connect(&Socket, &QWebSocket::stateChanged, &Socket, [this](auto state) {
            if (state == QAbstractSocket::UnconnectedState) Fail();
        });
        QObject::connect(&Socket, &QWebSocket::textMessageReceived, &Socket,
                         [this](const QString& text) { Take(text); });
        Socket.open(QUrl(QString("ws://127.0.0.1:%1/devtools/page/%2").arg(port).arg(target)));
    }
    ~PageSocket() {
        Socket.disconnect();
        Fail();
    }
    PageSocket(const PageSocket&) = delete;
    PageSocket& operator=(const PageSocket&) = delete;

    bool Failed() const { return Broken; }

    void Ask(const QString& method, const QJsonObject& parameters, const AnswerPointer& answer) {
        const int number = ++Asked;
        Owed[number] = answer;
        const QJsonObject message{{"id", number}, {"method", method}, {"params", parameters}};
        Waiting.push_back(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
        if (Socket.state() == QAbstractSocket::ConnectedState) SendWaiting();
    }

 private:
    void SendWaiting() {
        for (const QString& message : std::exchange(Waiting, {})) Socket.sendTextMessage(message);
    }

    void Take(const QString& text) {
        const auto message = Parse(text.toUtf8());
        if (!message) return;
        const auto owed = Owed.find(message->object().value("id").toInt());
        if (owed == Owed.end()) return;  // an event, which nobody has asked for
        owed->second->Settle(message);
        Owed.erase(owed);
    }

    void Fail() {
        Broken = true;
        for (auto& [number, answer] : std::exchange(Owed, {})) answer->Settle(std::nullopt);
    }

    QWebSocket Socket;
    bool Broken = false;
    int Asked = 0;
    std::vector<QString> Waiting;
    std::map<int, AnswerPointer> Owed;
};

}  // namespace

bool DevToolsAnswer::Settled() const {
    const std::lock_guard lock(Guard);
    return Known;
}

std::optional<QJsonDocument> DevToolsAnswer::Wait(std::chrono::nanoseconds limit) {
    std::unique_lock lock(Guard);
    Changed.wait_for(lock, limit, [this] { return Known; });
    return Content;
}

void DevToolsAnswer::Settle(std::optional<QJsonDocument> answer) {
    {
        const std::lock_guard lock(Guard);
        if (Known) return;
        Known = true;
        Content = std::move(answer);
    }
    Changed.notify_all();
}

/// What lives on the thread.
class DevToolsWorker : public QObject {
 public:
    /// Gives up everything that belongs to the thread.
    void Close() {
        for (const auto& [reply, answer] : std::exchange(Replies, {})) {
            reply->disconnect();
            answer->Settle(std::nullopt);
        }
        Sockets.clear();
        Web.reset();
    }

    void Get(uint16_t port, const QString& path, const AnswerPointer& answer) {
        if (!Web) {
            Web = std::make_unique<QNetworkAccessManager>();
            Web->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
            Web->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
        }
        QNetworkRequest request(QUrl(QString("http://127.0.0.1:%1%2").arg(port).arg(path)));
        request.setTransferTimeout(ForgetAfterMs);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        QNetworkReply* const reply = Web->get(request);
        Replies[reply] = answer;
        QObject::connect(reply, &QNetworkReply::readyRead, this, [reply] {
            if (reply->bytesAvailable() > LargestList) reply->abort();
        });
        QObject::connect(reply, &QNetworkReply::finished, this, [this, reply] { Finish(reply); });
    }

    void Ask(uint16_t port, const QString& target, const QString& method, const QJsonObject& parameters,
             const AnswerPointer& answer) {
        std::unique_ptr<PageSocket>& socket = Sockets[{port, target}];
        if (!socket || socket->Failed()) socket = std::make_unique<PageSocket>(port, target);
        socket->Ask(method, parameters, answer);
    }

    void KeepOnly(uint16_t port, const std::set<QString>& targets) {
        std::erase_if(Sockets, [&](const auto& each) {
            return each.first.first == port && !targets.contains(each.first.second);
        });
    }

 private:
    void Finish(QNetworkReply* reply) {
        const AnswerPointer answer = Replies.at(reply);
        Replies.erase(reply);
        const bool good = reply->error() == QNetworkReply::NoError &&
                          reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == 200;
        answer->Settle(good ? Parse(reply->readAll()) : std::nullopt);
        reply->deleteLater();
    }

    std::unique_ptr<QNetworkAccessManager> Web;
    std::map<QNetworkReply*, AnswerPointer> Replies;
    std::map<std::pair<uint16_t, QString>, std::unique_ptr<PageSocket>> Sockets;
};

DevToolsThread::DevToolsThread() : Worker(std::make_unique<DevToolsWorker>()) {
    Worker->moveToThread(&Thread);
    Thread.start();
}

DevToolsThread::~DevToolsThread() {
    QMetaObject::invokeMethod(
        Worker.get(), [this] { Worker->Close(); }, Qt::BlockingQueuedConnection);
    Thread.quit();
    Thread.wait();
}

std::shared_ptr<DevToolsAnswer> DevToolsThread::Get(uint16_t port, const QString& path) {
    auto answer = std::make_shared<DevToolsAnswer>();
    QMetaObject::invokeMethod(
        Worker.get(), [worker = Worker.get(), port, path, answer] { worker->Get(port, path, answer); });
    return answer;
}

std::shared_ptr<DevToolsAnswer> DevToolsThread::Ask(uint16_t port, const QString& target,
                                                    const QString& method, const QJsonObject& parameters) {
    auto answer = std::make_shared<DevToolsAnswer>();
    QMetaObject::invokeMethod(Worker.get(),
                              [worker = Worker.get(), port, target, method, parameters, answer] {
                                  worker->Ask(port, target, method, parameters, answer);
                              });
    return answer;
}

void DevToolsThread::KeepOnly(uint16_t port, const std::set<QString>& targets) {
    QMetaObject::invokeMethod(Worker.get(),
                              [worker = Worker.get(), port, targets] { worker->KeepOnly(port, targets); });
}

}  // namespace Corvetape
