#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace Corvetape {

/// A song as a station sends it.
struct IcySong {
    std::string Title;   ///< empty to go on with the one before
    std::string Sound;   ///< MP3 of one bit rate
    double Seconds = 0;  ///< for which it plays
};

/// A web radio on 127.0.0.1 that sends its songs round and round, as fast as they play and some
/// seconds ahead, and tells the title in the stream whenever it changes. One listener at a time.
class IcyServer {
 public:
    explicit IcyServer(std::vector<IcySong> songs, double secondsAhead = 0.5);
    ~IcyServer();
    IcyServer(const IcyServer&) = delete;
    IcyServer& operator=(const IcyServer&) = delete;

    std::string Url() const { return "http://127.0.0.1:" + std::to_string(port) + "/"; }

 private:
    void Serve();
    void Broadcast(int connection) const;

    const std::vector<IcySong> songs;
    const double ahead;
    int listener = -1;
    uint16_t port = 0;
    std::atomic<bool> over = false;
    std::thread thread;
};

}  // namespace Corvetape
