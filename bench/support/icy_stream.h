#pragma once

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/files/descriptor.h"

namespace Corvetape::Bench {

/// A title and the byte of the stream from which on it is told.
struct StreamTitle {
    size_t From = 0;
    std::string Text;
};

/// A stream of MP3 with titles between the music, as radio stations send it, for the first one who connects
/// from this machine. It is sent as fast as it is taken.
class IcyStream {
 public:
    /// Bytes of music between two places where a title may be.
    static constexpr size_t TitleEvery = 8192;

    IcyStream(std::string music, std::vector<StreamTitle> titles);
    ~IcyStream();
    IcyStream(const IcyStream&) = delete;
    IcyStream& operator=(const IcyStream&) = delete;

    /// Empty if there is no port to be had.
    std::string Address() const;

 private:
    void Serve();

    std::string Music;
    std::vector<StreamTitle> Titles;
    Descriptor Listening;
    uint16_t Port = 0;
    std::thread Server;
};

}  // namespace Corvetape::Bench
