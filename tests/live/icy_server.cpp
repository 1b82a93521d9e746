#include "live/icy_server.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "live/loopback.h"

namespace Corvetape {

namespace {

using Time = std::chrono::steady_clock;

/// Bytes of sound between two places for a title.
constexpr size_t MetaInterval = 2000;

/// A title as it stands in the stream: the number of 16-byte pieces, and the padded text.
std::string TitleBlock(const std::string& title) {
    std::string text = "StreamTitle='" + title + "';";
    text.resize((text.size() + 15) / 16 * 16);
    return static_cast<char>(text.size() / 16) + text;
}

bool Send(int connection, const std::string& bytes) {
    return send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
}

}  // namespace

IcyServer::IcyServer(std::vector<IcySong> content, double secondsAhead)
    : songs(std::move(content)), ahead(secondsAhead) {
    const Listener open = ListenOnLoopback();
    listener = open.Descriptor;
    port = open.Port;
    if (listener >= 0) thread = std::thread([this] { Serve(); });
}

IcyServer::~IcyServer() {
    over = true;
    if (thread.joinable()) thread.join();
    close(listener);
}

void IcyServer::Serve() {
    while (!over) {
        if (!Readable(listener)) continue;
        const int connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) continue;
        // Whatever is asked for is the stream.
        if (!ReadRequest(connection, over).empty()) Broadcast(connection);
        close(connection);
    }
}

void IcyServer::Broadcast(int connection) const {
    bool listens = Send(connection,
                        "HTTP/1.0 200 OK\r\nContent-Type: audio/mpeg\r\nicy-name: Loopback\r\n"
                        "icy-metaint: " +
                            std::to_string(MetaInterval) + "\r\n\r\n");
    const auto begin = Time::now();
    double playedSeconds = 0;
    std::string part;
    for (size_t song = 0; listens && !over; song = (song + 1) % songs.size()) {
        const std::string& sound = songs[song].Sound;
        std::string title = songs[song].Title.empty() ? "" : TitleBlock(songs[song].Title);
        for (size_t at = 0; listens && !over && at < sound.size();) {
            const size_t count = std::min(MetaInterval - part.size(), sound.size() - at);
            part += sound.substr(at, count);
            at += count;
            playedSeconds +=
                songs[song].Seconds * static_cast<double>(count) / static_cast<double>(sound.size());
            if (part.size() < MetaInterval) break;
            listens = Send(connection, part + (title.empty() ? std::string(1, '\0') : title));
            part.clear();
            title.clear();
            const auto due = begin + std::chrono::duration<double>(playedSeconds - ahead);
            // A listener says nothing more; that it can be read means that it has gone.
            while (listens && !over && Time::now() < due) listens = !Readable(connection);
        }
    }
}

}  // namespace Corvetape
