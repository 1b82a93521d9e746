#pragma once

#include <QObject>
#include <QSslSocket>
#include <QUrl>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

#include "platform/http.h"
#include "platform/linux/web/http_reader.h"

namespace Corvetape {

/// One plain request to the web at a time, through redirects to its answer. On a connection of its own: the
/// toolkit's HTTP client reads a head without end on a thread that listens to nobody meanwhile.
class WebRequest {
 public:
    /// `ended` is called once for each request that is not dropped, never from within Begin. It may drop or
    /// begin one.
    explicit WebRequest(std::function<void(const HttpAnswer&)> ended);
    ~WebRequest();
    WebRequest(const WebRequest&) = delete;
    WebRequest& operator=(const WebRequest&) = delete;

    /// True for addresses that can be asked: http and https, with a host.
    static bool Takes(const QUrl& url);

    /// Asks for the first `limit` bytes. `url` is one that Takes allows.
    void Begin(const QUrl& url, size_t limit);

    /// Gives up what is under way, if anything is.
    void Drop();

 private:
    /// Gives a connection up, also within one of its own signals.
    struct Abandon {
        QObject* Listener = nullptr;
        void operator()(QSslSocket* socket) const;
    };

    void Connect(const QUrl& url);
    void Send();
    void Read();
    void Judge();
    void Follow();
    void End(bool failed);
    bool IsRedirect() const;

    const std::function<void(const HttpAnswer&)> Ended;
    QObject Listener;
    std::unique_ptr<QSslSocket, Abandon> Socket{nullptr, Abandon{&Listener}};
    std::optional<HttpReader> Answer;
    QUrl Asked;
    QByteArray Request;
    size_t Limit = 0;
    int Redirects = 0;
};

}  // namespace Corvetape
