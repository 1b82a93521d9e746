#pragma once

#include <QJsonObject>
#include <QLocalSocket>
#include <QObject>

namespace Corvetape {

/// The browser's end of its connection to the recorder.
class RecorderLink : public QObject {
    Q_OBJECT

 public:
    /// Takes over an open socket.
    explicit RecorderLink(int socket);

    /// False if the number was no open socket.
    bool Open() const { return Socket.state() == QLocalSocket::ConnectedState; }

    void Send(const QJsonObject& message);

    /// Sends everything that waits, at most for a second.
    void Flush();

 signals:
    void NavigateWanted(const QString& url);
    void EvaluateWanted(int id, const QString& script);
    void CaptionsCame(const QJsonObject& captions);

    /// The recorder has gone, or has closed the connection.
    void Ended();

 private:
    void Read();
    void Take(const QJsonObject& message);

    QLocalSocket Socket;
};

}  // namespace Corvetape
