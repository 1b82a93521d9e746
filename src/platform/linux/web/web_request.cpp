#include "platform/linux/web/web_request.h"

#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <utility>

namespace Corvetape {
namespace {

constexpr int MostRedirects = 5;

/// What may wait to be read, beside the body that is kept.
constexpr qint64 ReadBufferBytes = 256LL * 1024;

constexpr int HttpPort = 80;
constexpr int HttpsPort = 443;

bool IsEncrypted(const QUrl& url) {
    return url.scheme() == QStringLiteral("https");
}

QByteArray HostField(const QUrl& url) {
    QByteArray host = url.host(QUrl::FullyEncoded).toUtf8();
    if (host.contains(':')) host = '[' + host + ']';
    if (url.port() >= 0) host += ':' + QByteArray::number(url.port());
    return host;
}

/// The way out that the system's settings name for an address.
QNetworkProxy ProxyFor(const QUrl& url) {
    const auto proxies = QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
    return proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.first();
}

/// A proxy that is asked in place of the server; of encrypted connections it passes on the bytes only.
bool IsAskedInstead(const QNetworkProxy& proxy, const QUrl& url) {
    const bool speaksHttp =
        proxy.type() == QNetworkProxy::HttpProxy || proxy.type() == QNetworkProxy::HttpCachingProxy;
    return speaksHttp && !IsEncrypted(url);
}

/// No cookies, no credentials of ours, and nothing compressed: the limit is one of the bytes that are sent.
QByteArray PlainRequest(const QUrl& url, const QNetworkProxy& proxy) {
    QByteArray target = url.path(QUrl::FullyEncoded).toUtf8();
    if (target.isEmpty()) target = "/";
    if (url.hasQuery()) target += '?' + url.query(QUrl::FullyEncoded).toUtf8();
    const bool instead = IsAskedInstead(proxy, url);
    if (instead) target = url.scheme().toUtf8() + "://" + HostField(url) + target;
    QByteArray request = "GET " + target + " HTTP/1.1\r\nHost: " + HostField(url) +
                         "\r\nUser-Agent: Mozilla/5.0\r\nAccept: */*\r\nAccept-Encoding: identity\r\n"
                         "Connection: close\r\n";
    if (instead && !proxy.user().isEmpty()) {
        const QByteArray account = (proxy.user() + ':' + proxy.password()).toUtf8();
        request += "Proxy-Authorization: Basic " + account.toBase64() + "\r\n";
    }
    return request + "\r\n";
}

}  // namespace

void WebRequest::Abandon::operator()(QSslSocket* socket) const {
    socket->disconnect(Listener);
    socket->abort();
    socket->deleteLater();
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
    Connect(url);
}

void WebRequest::Drop() {
    Socket.reset();
    Answer.reset();
}

void WebRequest::Connect(const QUrl& url) {
    Drop();
    Asked = url;
    Answer.emplace(Limit);
    Socket.reset(std::make_unique<QSslSocket>(&Listener).release());  // it may go in one of its own signals
    Socket->setReadBufferSize(ReadBufferBytes);
    const bool encrypted = IsEncrypted(url);
    // Queued: a connection that fails at once must not be reported from within Begin.
    QObject::connect(Socket.get(), encrypted ? &QSslSocket::encrypted : &QAbstractSocket::connected,
                     &Listener, [this] { Send(); });
    QObject::connect(Socket.get(), &QAbstractSocket::readyRead, &Listener, [this] { Read(); });
    QObject::connect(
        Socket.get(), &QAbstractSocket::disconnected, &Listener,
        [this, socket = Socket.get()] {
            if (Socket.get() != socket) return;
            Read();
            if (Socket.get() != socket) return;
            Answer->Close();
            Judge();
        },
        Qt::QueuedConnection);
    QObject::connect(
        Socket.get(), &QAbstractSocket::errorOccurred, &Listener,
        [this, socket = Socket.get()](QAbstractSocket::SocketError error) {
            if (Socket.get() == socket && error != QAbstractSocket::RemoteHostClosedError) End(true);
        },
        Qt::QueuedConnection);
    const QNetworkProxy proxy = ProxyFor(url);
    Request = PlainRequest(url, proxy);
    const bool instead = IsAskedInstead(proxy, url);
    Socket->setProxy(instead ? QNetworkProxy(QNetworkProxy::NoProxy) : proxy);
    const QString host = instead ? proxy.hostName() : url.host(QUrl::FullyEncoded);
    const auto port =
        static_cast<quint16>(instead ? proxy.port() : url.port(encrypted ? HttpsPort : HttpPort));
    if (encrypted) {
        Socket->connectToHostEncrypted(host, port);
    } else {
        Socket->connectToHost(host, port);
    }
}

void WebRequest::Send() {
    Socket->write(Request);
}

void WebRequest::Read() {
    const QByteArray bytes = Socket->readAll();
    Answer->Take({bytes.constData(), static_cast<size_t>(bytes.size())});
    Judge();
}

/// Looks whether enough of the answer has come.
void WebRequest::Judge() {
    const int status = Answer->Status();
    if (IsRedirect()) {
        Follow();
    } else if (Answer->HasFailed() || (status != 0 && (status < 200 || status > 299))) {
        End(true);
    } else if (Answer->IsOver()) {
        End(false);
    }
}

bool WebRequest::IsRedirect() const {
    const int status = Answer->Status();
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// Each redirect is looked at here: it may lead from http to https and back, but out of the web never.
void WebRequest::Follow() {
    const QUrl target(QString::fromStdString(Answer->Field("location")));
    const QUrl next = Asked.resolved(target);
    if (target.isEmpty() || !Takes(next) || ++Redirects > MostRedirects) {
        End(true);
    } else {
        Connect(next);
    }
}

void WebRequest::End(bool failed) {
    const HttpAnswer answer{failed, failed ? std::string() : Answer->Body()};
    Drop();
    Ended(answer);
}

}  // namespace Corvetape
