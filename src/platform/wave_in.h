#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Corvetape {

/// Format of the recorded signal: 16-bit stereo PCM at 44.1 or 48 kHz.
struct WaveFormat {
    uint16_t wFormatTag = 1;
    uint16_t nChannels = 2;
    uint32_t nSamplesPerSec = 44100;
    uint32_t nAvgBytesPerSec = 176400;
    uint16_t nBlockAlign = 4;
    uint16_t wBitsPerSample = 16;

    bool operator==(const WaveFormat&) const = default;
};

/// The format at 44100 or 48000 frames per second.
constexpr WaveFormat MakeWaveFormat(uint32_t framesPerSecond) {
    WaveFormat format;
    format.nSamplesPerSec = framesPerSecond;
    format.nBlockAlign = static_cast<uint16_t>(format.nChannels * 16 / 8);
    format.nAvgBytesPerSec = framesPerSecond * 2 * format.nChannels;
    return format;
}

/// One stereo frame as it is in memory: left, then right.
struct Frame {
    int16_t Left = 0;
    int16_t Right = 0;

    bool operator==(const Frame&) const = default;
};
static_assert(sizeof(Frame) == 4);

/// Bit of WaveHeader::dwFlags: the device has filled the buffer.
inline constexpr uint32_t WHDR_DONE = 1;

/// What a device needs to know of a buffer. The owner of the samples keeps the header where it is while
/// the device has it.
struct WaveHeader {
    Frame* lpData = nullptr;      ///< first frame; not owned
    uint32_t dwBufferLength = 0;  ///< bytes there is room for
    uint32_t dwBytesRecorded =
        0;                 ///< bytes filled by the device; less than the length only at the end of a file
    uint32_t dwUser = 0;   ///< the owner's index of the buffer
    uint32_t dwFlags = 0;  ///< WHDR_DONE once filled
};

/// How a filled buffer reaches its owner.
enum class BufferReturn {
    Loop = 0,           ///< delivered on the event loop
    PollByTimer = 1,    ///< the owner polls from a timer of its own
    PollPrecisely = 2,  ///< the owner polls from a precise timer
    CaptureThread = 3,  ///< each arrival is posted to the loop by the capture thread
};

enum class WaveInKind { Monitor, Input, File, Demo };

/// Bits of WaveInDevice::dwFormats.
inline constexpr uint32_t WAVE_FORMAT_4S16 = 0x800;
inline constexpr uint32_t WAVE_FORMAT_48S16 = 0x8000;

struct WaveInDevice {
    std::string Name;  ///< for people
    std::string Id;    ///< stable name of the device on this machine
    WaveInKind Kind = WaveInKind::Input;
    uint32_t dwFormats = WAVE_FORMAT_4S16 | WAVE_FORMAT_48S16;
    bool IsDefault = false;
};

enum class WaveInIncidentKind {
    Overrun,     ///< the server or the queue threw audio away
    ServerLost,  ///< the sound server went and came back
    DeviceLost,  ///< the device went, was moved or was muted out of reach, and came back
    ClockDrift,  ///< frames are missing against the clock with no other reason known
};

/// Audio that the device should have delivered and did not. Reported once an incident, when it is over.
struct WaveInIncident {
    WaveInIncidentKind Kind = WaveInIncidentKind::Overrun;
    uint64_t LostFrames = 0;
    std::string DeviceName;
    std::string Reason{};  ///< the sound server's own words; empty if it gave none
};

/// Called on the logic thread only.
struct WaveInEvents {
    std::function<void(WaveHeader&)> BufferDone;          ///< modes 0 and 3
    std::function<void(const WaveInIncident&)> Incident;  ///< lost audio, after the fact
    std::function<void(bool lost)> Availability;          ///< device gone (true), device back (false)
    std::function<void()> Ended;                          ///< a finite input has delivered its last buffer
};

/// An open input. Between AddBuffer and the return of the buffer the header belongs to the device.
/// Destroying the stream closes the device; buffers still in it are forgotten.
class WaveInStream {
 public:
    virtual ~WaveInStream() = default;

    /// Queues a buffer to be filled. Its flags are cleared by the caller beforehand.
    virtual void AddBuffer(WaveHeader& header) = 0;

    /// Begins to deliver. False if the device refused.
    virtual bool Start() = 0;

    /// Stops delivering and forgets all queued buffers. No event comes after it.
    virtual void Reset() = 0;

    /// For the polling modes: fills queued buffers with what has arrived, in order, and sets WHDR_DONE.
    virtual void Deliver() = 0;
};

/// An open input, or why it could not be opened.
struct OpenedWaveIn : std::unique_ptr<WaveInStream> {
    // NOLINTBEGIN(google-explicit-constructor)
    template <class Kind>
    OpenedWaveIn(std::unique_ptr<Kind> stream) : std::unique_ptr<WaveInStream>(std::move(stream)) {}
    OpenedWaveIn(std::nullptr_t) {}
    // NOLINTEND(google-explicit-constructor)

    static OpenedWaveIn Refused(std::string reason) {
        OpenedWaveIn none = nullptr;
        none.Reason = std::move(reason);
        return none;
    }

    std::string Reason;  ///< the sound server's own words; empty if it gave none
};

/// What can be recorded from.
struct WaveInList : std::vector<WaveInDevice> {
    WaveInList() = default;
    WaveInList(std::vector<WaveInDevice> devices)  // NOLINT(google-explicit-constructor)
        : std::vector<WaveInDevice>(std::move(devices)) {}

    std::string Reason;  ///< why the server could not be asked, in its own words; empty if it could
};

/// Whether an input was opened, and why not.
struct WaveInOpening {
    bool Succeeded = true;
    std::string Reason;  ///< the sound server's own words; empty if it gave none

    explicit operator bool() const { return Succeeded; }
};

/// The inputs that can be recorded from. Device numbers are indices of the last list given by Devices().
class WaveIn {
 public:
    virtual ~WaveIn() = default;

    virtual WaveInList Devices() = 0;

    /// Opens a device. Nothing if there is no such device or it cannot give the format.
    virtual OpenedWaveIn Open(size_t device, const WaveFormat& format, BufferReturn mode,
                              WaveInEvents events) = 0;
};

}  // namespace Corvetape
