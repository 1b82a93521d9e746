#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "audio/audio_ring.h"
#include "audio/signal_state.h"
#include "audio/wave_buffer.h"
#include "core/settings/settings.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/wave_in.h"

namespace Corvetape {

/// Where a buffer goes that has come from the device.
class BufferTarget {
 public:
    virtual ~BufferTarget() = default;

    /// Handles the buffer in place. False: the program is to end.
    virtual bool Handle(WaveBuffer& buffer) = 0;
};

/// What capture works with. All of it outlives the capture.
struct CaptureParts {
    Corvetape::WaveIn& WaveIn;
    EventLoop& Loop;
    const Corvetape::Clock& Clock;
    const Corvetape::Settings& Settings;
    SignalState& Signal;  ///< its Format is that of the open device
    AudioRing& Ring;
    BufferTarget& Target;
};

/// What capture reports, always on the logic thread. Those that are not set are left out. Each of them may
/// close, open or destroy the capture.
struct CaptureEvents {
    /// A song file could not be made for a buffer: the program is to end.
    std::function<void()> Fatal;

    /// Audio was lost, after the fact; already added to SignalState::FramesLost.
    std::function<void(const WaveInIncident&)> DeviceIncident;

    /// The device went (true) or came back (false).
    std::function<void(bool lost)> Availability;

    /// A finite input has delivered its last buffer, and it was handled.
    std::function<void()> Ended;
};

/// Keeps one input open and turns it into buffers of exactly 50 ms of 16-bit stereo audio, each handed to
/// the target and then given back to the device. The device is read all the time, whether or not anything is
/// recorded.
///
/// How a filled buffer arrives is chosen by Settings::PollRecordingBuffers at each opening: 0 and 3 as an
/// event of the loop, 1 by a poll every Settings::Interval ms, 2 by a poll every 50 ms on a precise timer.
class Capture {
 public:
    /// Most buffers in the device's queue, a minute. A setting beyond it would only fill the memory.
    static constexpr int32_t MostRecordingBuffers = 1'200;

    /// Period of the precise timer of mode 2.
    static constexpr int32_t PrecisePeriodMs = 50;

    Capture(CaptureParts parts, CaptureEvents events);
    ~Capture();
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    /// Opens the device with this number in the list of WaveIn, with a fresh format, queue and ring, and
    /// starts it. A device that is open is closed first. Fails, and is closed, if it cannot be opened or does
    /// not start; nothing is reported.
    WaveInOpening OpenWaveIn(size_t device);

    /// Stops the arrival of buffers, then the device. Events are handled meanwhile: timers and handlers may
    /// run, and may close or open again themselves.
    void CloseWaveIn();

    bool IsOpen() const;

    /// The format of the open device, or of the one that was to be opened last. The reference stays good.
    const WaveFormat& Format() const;

    /// 2205 or 2400, 0 before the first opening.
    uint32_t FramesPerBuffer() const;

    /// The common way of every arrived buffer: handed to the target, then given back to the device. False if
    /// the program is to end, which `Fatal` has reported.
    bool ProcessBuffer(size_t index);

    /// The buffers in the device's queue.
    const std::vector<WaveBuffer>& RecordingRing() const;

    /// Slot that a polling mode looks at next.
    size_t PollIndex() const;

    /// Highest number of buffers found waiting, for whoever shows and clears it. In modes 0 and 3 it is made
    /// of the time between arrivals: an arrival exactly on time counts 2. The time in which a device
    /// delivered nothing, and said so, does not count, nor that in which none was open.
    int32_t& MaxBuffersUsed();

 private:
    struct Engine;
    std::shared_ptr<Engine> Self;  ///< shared with the handlers that are running
};

}  // namespace Corvetape
