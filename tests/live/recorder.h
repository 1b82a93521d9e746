#pragma once

#include <array>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/sound/pulse_wave_in.h"
#include "support/live_session.h"

namespace Corvetape {

/// The sound server at this address, waited for as long as a busy machine may need.
PulseTerms Patiently(const std::string& server);

/// Records one source of a sound server as the program does: 30 buffers of 50 ms, handed back as they come.
class Recorder {
 public:
    Recorder(LiveSession& session, const std::string& server, BufferReturn mode = BufferReturn::Loop,
             uint32_t framesPerSecond = 44100);

    /// As above, with a queue of this length instead of the usual one.
    Recorder(LiveSession& session, const PulseTerms& options);

    /// Opens the source and begins. False if there is none of this name.
    bool Begin(const std::string& source);
    void End();

    /// Waits until `count` more frames have come.
    bool WaitForFrames(size_t count);

    /// Seconds between the first loss of the source and its return.
    double Gap() const;

    /// Frames that were told to be missing, in seconds.
    double Told() const;

    /// Begins to compare what comes with the clock.
    void BeginAccount();

    /// Seconds since BeginAccount that have neither come as frames nor been told to be missing. Negative if
    /// more has come than time has passed.
    double Unaccounted() const;

    /// True if nothing is unaccounted for soon, give or take `tolerance`, and it stays so for a while.
    bool AccountIsEven(double tolerance);

    std::vector<Frame> Frames;
    std::vector<WaveInIncident> Incidents;
    std::vector<bool> Lost;      ///< what Availability said
    std::vector<size_t> LostAt;  ///< frames that had come when it did
    std::vector<std::chrono::steady_clock::time_point> LostWhen;
    size_t OddBuffers = 0;  ///< buffers that were not full or came out of order

 private:
    static constexpr size_t Buffers = 30;

    void Take(WaveHeader& header);
    void Poll();

    LiveSession& session;
    PulseWaveIn waveIn;
    const BufferReturn mode;
    const uint32_t rate;
    std::vector<Frame> memory;
    std::array<WaveHeader, Buffers> headers;
    size_t next = 0;
    size_t accountFrames = 0;
    std::chrono::steady_clock::time_point accountBegan;
    std::unique_ptr<WaveInStream> stream;
    std::unique_ptr<LoopTimer> timer;
};

}  // namespace Corvetape
