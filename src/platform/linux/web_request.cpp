#include "platform/linux/web_request.h"

#include <QNetworkRequest>
#include <utility>

namespace Corvetape {
namespace {

constexpr int MostRedirects = 5;

/// What may wait to be read, beside the body that is kept.
constexpr qint64 ReadBufferBytes = 256LL * 1024;

QNetworkRequest PlainRequest(const QUrl& url) {
    QNetworkRequest request(url);
    const auto set = [&request](QNetworkRequest::Attribute attribute, const QVariant& value) {
        request.setAttribute(attribute, value);
    };
    // Each redirect is looked at here: it may lead from http to https and back, but out of the web never.
    set(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    set(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    set(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    set(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    set(QNetworkRequest::CacheSaveControlAttribute, false);
    set(QNetworkRequest::Http2AllowedAttribute, false);
    // The limit is one of the bytes that are sent; nothing is to grow behind it.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

}  // namespace

void WebRequest::Abandon::operator()(QNetworkReply* reply) const {
    reply->disconnect(Listener);
    if (reply->isRunning()) reply->abort();
    reply->deleteLater();
}

WebRequest::WebRequest(std::function<void(const HttpAnswer&)> ended) : Ended(std::move(ended)) {}

WebRequest::~WebRequest() = default;

bool WebRequest::Takes(const QUrl& url) {
    const QString scheme = url.scheme();
    return url.isValid() && !url.host().isEmpty() &&
           (scheme == QStringLiteral("http") || scheme == QStringLiteral("https"));
}

void WebRequest::Begin(const QUrl& url, size_t limit) {
    Limit = limit;
    Redirects = 0;
    Send(url);
}

void WebRequest::Drop() {
    Reply.reset();
    Body.clear();
}

void WebRequest::Send(const QUrl& url) {
    Drop();
    QUrl plain = url;
    plain.setUserInfo(QString());
    Reply.reset(Manager.get(PlainRequest(plain)));
    Reply->setReadBufferSize(ReadBufferBytes);
    QObject::connect(Reply.get(), &QNetworkReply::readyRead, &Listener, [this] { Take(); });
    QObject::connect(Reply.get(), &QNetworkReply::finished, &Listener, [this] {
        if (IsRedirect()) {
            Follow();
        } else {
            const int status = Status();
            End(Reply->error() != QNetworkReply::NoError || status < 200 || status > 299);
        }
    });
}

int WebRequest::Status() const {
    return Reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool WebRequest::IsRedirect() const {
    const int status = Status();
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

void WebRequest::Follow() {
    const QUrl target = Reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    const QUrl next = Reply->url().resolved(target);
    if (target.isEmpty() || !Takes(next) || ++Redirects > MostRedirects) {
        End(true);
    } else {
        Send(next);
    }
}

void WebRequest::Take() {
    if (IsRedirect()) {
        Follow();
        return;
    }
    // What an error says of itself stays unread; `finished` comes for it, or the time limit.
    const int status = Status();
    if (status < 200 || status > 299) return;
    Body += Reply->read(static_cast<qint64>(Limit - Body.size())).toStdString();
    if (Body.size() >= Limit) End(false);
}

void WebRequest::End(bool failed) {
    const HttpAnswer answer{failed, failed ? std::string() : std::move(Body)};
    Drop();
    Ended(answer);
}

}  // namespace Corvetape
