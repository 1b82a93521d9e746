#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "platform/linux/files/descriptor.h"
#include "platform/linux/sound/capture_road.h"
#include "platform/linux/sound/loss_meter.h"
#include "platform/linux/sound/pulse_handles.h"

namespace Corvetape {

/// The thread that takes one source's frames out of the sound server.
///
/// It connects, records, notices when server or device go or when frames are missing, and begins anew by
/// itself. It never records from another source than the named one. It touches nothing of the program but
/// the road and `arrived`.
class PulseCapture {
 public:
    struct Target {
        std::string Server;  ///< address; empty for the user's own server
        std::string Source;  ///< its name on the server
        uint32_t FramesPerSecond = 44100;
        size_t FramesPerBuffer = 2205;
        std::chrono::milliseconds RetryInterval{250};
    };

    /// Starts the thread. `road` outlives it; `arrived` is called on the thread after each addition to the
    /// road.
    PulseCapture(Target target, CaptureRoad& road, std::function<void()> arrived);

    /// Ends the thread, in whatever state it is, without waiting for the server.
    ~PulseCapture();
    PulseCapture(const PulseCapture&) = delete;
    PulseCapture& operator=(const PulseCapture&) = delete;

    /// Waits until the first attempt to record has succeeded or failed. True if it runs.
    bool WaitForStart(std::chrono::milliseconds limit);

 private:
    enum class Attempt { Pending, Succeeded, Failed };

    void Run();
    void RunOnce();
    void Connect();
    void Disconnect();
    void CreateStream();
    void StreamReady();
    void Watch(int64_t now);
    int64_t NextLook(int64_t now) const;
    void Break(WaveInIncidentKind kind);
    void TellLost(WaveInIncidentKind kind, bool certain);
    void BeginDelivering();
    void Say(CaptureNotice::What said, WaveInIncidentKind kind, uint64_t lostFrames);
    void Read();
    void Take(const void* data, size_t frames);
    void Account(uint64_t frames);
    void Finish(Attempt result);

    static void ContextChanged(pa_context* context, void* user);
    static void SourceAnswer(pa_context* context, const pa_source_info* info, int end, void* user);
    static void StreamChanged(pa_stream* stream, void* user);
    static void StreamMoved(pa_stream* stream, void* user);
    static void StreamSuspended(pa_stream* stream, void* user);
    static void StreamReadable(pa_stream* stream, size_t bytes, void* user);

    const Target target;
    CaptureRoad& road;
    const std::function<void()> arrived;

    // Of the capture thread only.
    PulseLoop loop;
    PulseContext context;
    PulseStream stream;
    PulseOperation question;
    LossMeter meter;
    bool delivering = false;  // the road is open, and the meter runs
    bool accepting = false;   // the stream is ready and from the right source
    bool away = false;        // nothing comes at present
    bool toldLost = false;    // and the road knows
    WaveInIncidentKind awayKind = WaveInIncidentKind::DeviceLost;
    bool broken = false;      // connection to be given up
    uint64_t overflowed = 0;  // frames that the road had no room for
    int64_t attemptBegan = 0;
    int64_t nextAttempt = 0;
    int64_t lastArrival = 0;

    Descriptor wake;
    std::atomic<bool> ending{false};
    std::mutex attemptLock;
    std::condition_variable attemptEnded;
    Attempt attempt = Attempt::Pending;
    std::thread thread;
};

}  // namespace Corvetape
