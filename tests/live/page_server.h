#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace Corvetape {

/// A web server on 127.0.0.1 with a few pages, on a thread of its own and with a port of its own.
class PageServer {
 public:
    /// Page by path, as "/radio.html".
    explicit PageServer(std::map<std::string, std::string> pages);
    ~PageServer();
    PageServer(const PageServer&) = delete;
    PageServer& operator=(const PageServer&) = delete;

    uint16_t Port() const { return port; }

    /// The address of a page by a host name that leads to this machine.
    std::string Url(const std::string& path, const std::string& host = "127.0.0.1") const;

 private:
    /// A connection, and what has come of its request.
    struct Guest {
        int Connection = -1;
        std::string Request;
    };

    void Serve();

    /// Reads what has come, and answers if it is whole. False if the connection is done with.
    bool Attend(Guest& guest) const;
    void Answer(const Guest& guest) const;

    const std::map<std::string, std::string> pages;
    int listener = -1;
    uint16_t port = 0;
    std::atomic<bool> over = false;
    std::thread thread;
};

}  // namespace Corvetape
