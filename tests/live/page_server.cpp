#include "live/page_server.h"

#include <poll.h>
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
    // All at the same time, and none with a time limit: a browser opens connections that it then does not
    // use, and one on a busy machine comes late with its request.
    std::vector<Guest> guests;
    while (!over) {
        std::vector<pollfd> waits = {{listener, POLLIN, 0}};
        for (const Guest& guest : guests) waits.push_back({guest.Connection, POLLIN, 0});
        if (poll(waits.data(), waits.size(), 50) <= 0) continue;
        for (size_t i = guests.size(); i > 0; --i) {
            if (waits[i].revents == 0 || Attend(guests[i - 1])) continue;
            close(guests[i - 1].Connection);
            guests.erase(guests.begin() + static_cast<std::ptrdiff_t>(i - 1));
        }
        if (waits.front().revents == 0) continue;
        const int connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection >= 0) guests.push_back({connection, {}});
    }
    for (const Guest& guest : guests) close(guest.Connection);
}

bool PageServer::Attend(Guest& guest) const {
    char part[2048];
    const ssize_t count = read(guest.Connection, part, sizeof(part));
    if (count <= 0) return false;
    guest.Request.append(part, static_cast<size_t>(count));
    if (guest.Request.find("\r\n\r\n") == std::string::npos) return true;
    Answer(guest);
    return false;
}

void PageServer::Answer(const Guest& guest) const {
    const std::string& request = guest.Request;
    const size_t begin = request.find(' ') + 1;
    const auto page = pages.find(request.substr(begin, request.find_first_of(" ?", begin) - begin));
    const std::string body = page == pages.end() ? "" : page->second;
    const std::string answer =
        (page == pages.end() ? std::string("HTTP/1.1 404 Not Found\r\n") : "HTTP/1.1 200 OK\r\n") +
        "Content-Type: text/html; charset=utf-8\r\nConnection: close\r\nContent-Length: " +
        std::to_string(body.size()) + "\r\n\r\n" + body;
    // A browser that has gone meanwhile does not want it any more.
    static_cast<void>(send(guest.Connection, answer.data(), answer.size(), MSG_NOSIGNAL));
}

}  // namespace Corvetape
