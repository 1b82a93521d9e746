#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Corvetape {

/// A web server on this machine's own address that answers as a test tells it to.
class WebServer {
 public:
    using Answer = std::function<void(QTcpSocket&)>;

    WebServer() {
        server.listen(QHostAddress::LocalHost);
        QObject::connect(&server, &QTcpServer::newConnection, &server, [this] { Accept(); });
    }

    std::string Address(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(server.serverPort()) + path;
    }

    /// What is sent back for a path, headers and all; the connection is closed then.
    void Say(const std::string& path, const std::string& answer) {
        answers[path] = [answer](QTcpSocket& socket) {
            socket.write(answer.data(), static_cast<qint64>(answer.size()));
            socket.disconnectFromHost();
        };
    }

    void Body(const std::string& path, const std::string& body) {
        Say(path, "HTTP/1.1 200 OK\r\nContent-Type: image/jpeg\r\nSet-Cookie: id=1\r\nContent-Length: " +
                      std::to_string(body.size()) + "\r\n\r\n" + body);
    }

    void Redirect(const std::string& path, const std::string& target) {
        Say(path, "HTTP/1.1 302 Found\r\nLocation: " + target + "\r\nContent-Length: 0\r\n\r\n");
    }

    void On(const std::string& path, const Answer& answer) { answers[path] = answer; }

    /// The heads of all requests, in their order.
    std::vector<std::string> Requests;

    int Open = 0;  ///< connections that the other side has not closed

 private:
    void Accept() {
        while (QTcpSocket* const socket = server.nextPendingConnection()) {
            ++Open;
            QObject::connect(socket, &QTcpSocket::disconnected, socket, [this, socket] {
                --Open;
                socket->deleteLater();
            });
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { Read(*socket); });
        }
    }

    void Read(QTcpSocket& socket) {
        std::string& head = heads[&socket];
        head += socket.readAll().toStdString();
        if (!head.ends_with("\r\n\r\n")) return;
        Requests.push_back(head);
        const size_t begin = head.find(' ') + 1;
        const std::string path = head.substr(begin, head.find(' ', begin) - begin);
        heads.erase(&socket);
        const auto known = answers.find(path);
        if (known != answers.end()) {
            known->second(socket);
        } else {
            socket.write("HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\n\r\nnone");
            socket.disconnectFromHost();
        }
    }

    QTcpServer server;
    std::map<std::string, Answer> answers;
    std::map<QTcpSocket*, std::string> heads;
};

}  // namespace Corvetape
