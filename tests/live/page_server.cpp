#include "live/page_server.h"

#include <sys/socket.h>
#include <unistd.h>

#include <utility>

#include "live/loopback.h"

namespace Corvetape {

PageServer::PageServer(std::map<std::string, std::string> content) : pages(std::move(content)) {
    const Listener open = ListenOnLoopback();
    listener = open.Descriptor;
    port = open.Port;
    if (listener >= 0) thread = std::thread([this] { Serve(); });
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
    const std::string request = ReadRequest(connection, over);
    if (request.empty()) return;
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
