#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace Corvetape {

/// A song as a station sends it.
struct IcySong {
    std::string Title;
    std::string Sound;  ///< MP3 of one bit rate
};

/// A web radio on 127.0.0.1 that sends its songs round and round, as fast as they play and half a second
/// ahead, and tells the title in the stream whenever it changes. One listener at a time.
class IcyServer {
 public:
    /// Each song plays for `songSeconds`.
    IcyServer(std::vector<IcySong> songs, double songSeconds);
    ~IcyServer();
    IcyServer(const IcyServer&) = delete;
    IcyServer& operator=(const IcyServer&) = delete;

    std::string Url() const { return "http://127.0.0.1:" + std::to_string(port) + "/"; }

 private:
    void Serve();
    void Broadcast(int connection) const;

    const std::vector<IcySong> songs;
    const double songSeconds;
    int listener = -1;
    uint16_t port = 0;
    std::atomic<bool> over = false;
    std::thread thread;
};

}  // namespace Corvetape
