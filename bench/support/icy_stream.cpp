#include "support/icy_stream.h"

#include <fmt/format.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace Corvetape::Bench {

namespace {

bool Send(int to, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(sent));
    }
    return true;
}

/// A title as it is between the music: its length in units of 16 bytes, and its text filled up with zeros.
std::string Block(const std::string& title) {
    std::string text = fmt::format("StreamTitle='{}';", title);
    text.resize((text.size() + 15) / 16 * 16);
    return static_cast<char>(text.size() / 16) + text;
}

}  // namespace

IcyStream::IcyStream(std::string music, std::vector<StreamTitle> titles)
    : Music(std::move(music)), Titles(std::move(titles)), Listening(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* const raw = reinterpret_cast<sockaddr*>(&address);
    socklen_t length = sizeof address;
    const int listening = Listening.Number();
    const bool ready = bind(listening, raw, length) == 0 && listen(listening, 1) == 0 &&
                       getsockname(listening, raw, &length) == 0;
    if (!ready) return;
    Port = ntohs(address.sin_port);
    Server = std::thread([this] { Serve(); });
}

IcyStream::~IcyStream() {
    shutdown(Listening.Number(), SHUT_RDWR);  // ends the wait for somebody who never came
    if (Server.joinable()) Server.join();
}

std::string IcyStream::Address() const {
    return Port == 0 ? std::string() : fmt::format("http://127.0.0.1:{}/", Port);
}

void IcyStream::Serve() {
    const Descriptor client(accept(Listening.Number(), nullptr, nullptr));
    if (client.Number() < 0) return;
    std::array<char, 4096> request{};
    if (recv(client.Number(), request.data(), request.size(), 0) <= 0) return;
    const std::string head = fmt::format(
        "ICY 200 OK\r\nicy-name:Radio\r\nicy-br:128\r\nContent-Type:audio/mpeg\r\nicy-metaint:{}\r\n\r\n",
        TitleEvery);
    if (!Send(client.Number(), head)) return;
    size_t next = 0;
    for (size_t at = 0; at < Music.size(); at += TitleEvery) {
        const size_t count = std::min(TitleEvery, Music.size() - at);
        if (!Send(client.Number(), std::string_view(Music).substr(at, count))) return;
        std::string block(1, '\0');
        while (next < Titles.size() && Titles[next].From <= at + count) block = Block(Titles[next++].Text);
        if (!Send(client.Number(), block)) return;
    }
}

}  // namespace Corvetape::Bench
