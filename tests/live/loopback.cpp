#include "live/loopback.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Corvetape {

Listener ListenOnLoopback() {
    Listener listener{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), 0};
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    const bool ready = bind(listener.Descriptor, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                       listen(listener.Descriptor, 16) == 0 &&
                       getsockname(listener.Descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    if (ready) {
        listener.Port = ntohs(address.sin_port);
        return listener;
    }
    close(listener.Descriptor);
    return {};
}

bool Readable(int descriptor) {
    pollfd wait{descriptor, POLLIN, 0};
    return poll(&wait, 1, 50) > 0;
}

std::string ReadRequest(int connection, const std::atomic<bool>& over) {
    std::string request;
    while (!over && request.find("\r\n\r\n") == std::string::npos) {
        char part[2048];
        if (!Readable(connection)) continue;
        const ssize_t count = read(connection, part, sizeof(part));
        if (count <= 0) return {};
        request.append(part, static_cast<size_t>(count));
    }
    return request;
}

}  // namespace Corvetape
