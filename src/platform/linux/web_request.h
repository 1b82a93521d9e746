#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QUrl>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "platform/http.h"

namespace Corvetape {

/// One plain request to the web at a time, through redirects to its answer.
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
    /// Gives a reply up, also within one of its own signals. Only our own connections go: the reply needs its
    /// inner ones to close its transfer.
    struct Abandon {
        QObject* Listener = nullptr;
        void operator()(QNetworkReply* reply) const;
    };

    void Send(const QUrl& url);
    void Follow();
    void Take();
    void End(bool failed);
    bool IsRedirect() const;
    int Status() const;

    const std::function<void(const HttpAnswer&)> Ended;
    QNetworkAccessManager Manager;
    QObject Listener;
    std::unique_ptr<QNetworkReply, Abandon> Reply{nullptr, Abandon{&Listener}};
    size_t Limit = 0;
    int Redirects = 0;
    std::string Body;
};

}  // namespace Corvetape
