#include "browser/recorder_link.h"

#include <QJsonDocument>

#include "platform/browser_protocol.h"

namespace Corvetape {

RecorderLink::RecorderLink(int socket) {
    QObject::connect(&Socket, &QLocalSocket::readyRead, this, &RecorderLink::Read);
    QObject::connect(&Socket, &QLocalSocket::disconnected, this, &RecorderLink::Ended);
    Socket.setSocketDescriptor(socket);
}

void RecorderLink::Send(const QJsonObject& message) {
    if (Open()) Socket.write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
}

void RecorderLink::Flush() {
    constexpr int limitMs = 1000;
    while (Socket.bytesToWrite() > 0 && Socket.waitForBytesWritten(limitMs)) {
    }
}

void RecorderLink::Read() {
    while (Socket.canReadLine()) Take(QJsonDocument::fromJson(Socket.readLine()).object());
    if (Socket.bytesAvailable() > static_cast<qint64>(BrowserProtocol::LongestLine)) Socket.abort();
}

void RecorderLink::Take(const QJsonObject& message) {
    const QString kind = message[BrowserProtocol::Kind].toString();
    if (kind == BrowserProtocol::Navigate) {
        emit NavigateWanted(message[BrowserProtocol::Url].toString());
    } else if (kind == BrowserProtocol::Evaluate) {
        emit EvaluateWanted(message[BrowserProtocol::Id].toInt(),
                            message[BrowserProtocol::Script].toString());
    } else if (kind == BrowserProtocol::Captions) {
        emit CaptionsCame(message);
    }
}

}  // namespace Corvetape
