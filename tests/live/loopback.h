#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace Corvetape {

/// A socket that waits for connections; -1 if there is none.
struct Listener {
    int Descriptor = -1;
    uint16_t Port = 0;
};

/// Opens a port of its own on 127.0.0.1.
Listener ListenOnLoopback();

/// True if there is something to read within 50 ms.
bool Readable(int descriptor);

/// The head of a request, waited for as long as the connection is open. Empty if none comes, or if `over`
/// becomes true.
std::string ReadRequest(int connection, const std::atomic<bool>& over);

}  // namespace Corvetape
