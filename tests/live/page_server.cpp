#include "live/page_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace Corvetape {

namespace {

/// True if there is something to read within 50 ms.
bool Readable(int descriptor) {
    pollfd wait{descriptor, POLLIN, 0};
    return poll(&wait, 1, 50) > 0;
}

}  // namespace

PageServer::PageServer(std::map<std::string, std::string> content) : pages(std::move(content)) {
    listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    const bool ready = bind(listener, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                       listen(listener, 16) == 0 &&
                       getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    if (!ready) return;
    port = ntohs(address.sin_port);
    thread = std::thread([this] { Serve(); });
}

PageServer::~PageServer() {
    over = true;
    if (thread.joinable()) thread.join();
    close(listener);
}

std::string PageServer::Url(const std::string& path, const std::string& host) const {
    return "http://" + host + ":" + std::to_string(port) + path;
}

void PageServer::Serve() {
    while (!over) {
        if (!Readable(listener)) continue;
        const int connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) continue;
        Answer(connection);
        close(connection);
    }
}

void PageServer::Answer(int connection) const {
    std::string request;
    while (!over && request.find("\r\n\r\n") == std::string::npos) {
        char part[2048];
        // A browser opens connections that it then does not use; the next one waits behind them.
        if (!Readable(connection)) return;
        const ssize_t count = read(connection, part, sizeof(part));
        if (count <= 0) return;
        request.append(part, static_cast<size_t>(count));
    }
    const size_t begin = request.find(' ') + 1;
    const auto page = pages.find(request.substr(begin, request.find_first_of(" ?", begin) - begin));
    const std::string body = page == pages.end() ? "" : page->second;
    const std::string answer =
        (page == pages.end() ? std::string("HTTP/1.1 404 Not Found\r\n") : "HTTP/1.1 200 OK\r\n") +
        "Content-Type: text/html; charset=utf-8\r\nConnection: close\r\nContent-Length: " +
        std::to_string(body.size()) + "\r\n\r\n" + body;
    // A browser that has gone meanwhile does not want it any more.
    static_cast<void>(send(connection, answer.data(), answer.size(), MSG_NOSIGNAL));
}

}  // namespace Corvetape
