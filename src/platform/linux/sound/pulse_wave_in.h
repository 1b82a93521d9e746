#pragma once

#include <chrono>
#include <string>

#include "platform/event_loop.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// Where the server is and how long it is waited for.
struct PulseTerms {
    std::string Server;                            ///< address; empty for the user's own server
    std::chrono::milliseconds ConnectLimit{1000};  ///< for Devices
    std::chrono::milliseconds OpenLimit{3000};     ///< for Open: a server that has just begun is slow
    std::chrono::milliseconds RetryInterval{250};  ///< between attempts to get a lost device back
    std::chrono::seconds QueueLength{80};          ///< at least 75 to survive a minute's stall
};

/// Sources of the sound server, PulseAudio's or PipeWire's.
///
/// The monitors of the outputs come first, that of the default output leading, then the inputs. The
/// first of all is marked as the default.
/// An open stream has a thread of its own that drains the server into a queue of 80 s, whose memory is
/// taken at open: a logic thread that stands still for a minute loses nothing. When server or device go,
/// the stream waits for them, records from nothing else meanwhile, and goes on by itself.
///
/// Incident and Availability are reported where they lie between the buffers: in the modes 0 and 3 from the
/// loop, in the polling modes from Deliver.
class PulseWaveIn : public WaveIn {
 public:
    /// The loop must outlive this and all streams.
    explicit PulseWaveIn(EventLoop& loop);
    PulseWaveIn(EventLoop& loop, PulseTerms options);

    /// Empty if no server answers within the limit. Starts no server.
    WaveInList Devices() override;

    OpenedWaveIn Open(size_t device, const WaveFormat& format, BufferReturn mode,
                      WaveInEvents events) override;

 private:
    EventLoop& Loop;
    PulseTerms Choice;
    std::vector<WaveInDevice> Listed;
};

}  // namespace Corvetape
