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

    /// Waits until the first attempt to record has succeeded or failed. Empty if it runs; else the sound
    /// server's own words.
    std::string WaitForStart(std::chrono::milliseconds limit);

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
    void Break(WaveInIncidentKind kind, int error);
    void ReportLost(WaveInIncidentKind kind, bool certain);
    void BeginDelivering();
    void Say(CaptureNotice::What said, WaveInIncidentKind kind, uint64_t lostFrames);
    void Read();
    void Take(const void* data, size_t frames);
    void Account(uint64_t frames);
    void Finish(Attempt result);
    int ServerError() const;

    static void ContextChanged(pa_context* context, void* user);
    static void SourceAnswer(pa_context* context, const pa_source_info* info, int end, void* user);
    static void StreamChanged(pa_stream* stream, void* user);
    static void StreamMoved(pa_stream* stream, void* user);
    static void StreamSuspended(pa_stream* stream, void* user);
    static void StreamReadable(pa_stream* stream, size_t bytes, void* user);

    const Target Wanted;
    CaptureRoad& Road;
    const std::function<void()> Arrived;

    // Of the capture thread only.
    PulseLoop Loop;
    PulseContext Context;
    PulseStream Stream;
    PulseOperation Question;
    LossMeter Meter;
    bool Delivering = false;    // the road is open, and the meter runs
    bool Accepting = false;     // the stream is ready and from the right source
    bool Away = false;          // nothing comes at present
    bool ReportedLost = false;  // and the road knows
    WaveInIncidentKind AwayKind = WaveInIncidentKind::DeviceLost;
    bool Broken = false;      // connection to be given up
    int AwayError = 0;        // the server's number of the reason; 0 if it gave none
    uint64_t Overflowed = 0;  // frames that the road had no room for
    int64_t AttemptBegan = 0;
    int64_t NextAttempt = 0;
    int64_t LastArrival = 0;

    Descriptor Wake;
    std::atomic<bool> Ending{false};
    std::mutex AttemptLock;
    std::condition_variable AttemptEnded;
    Attempt PresentAttempt = Attempt::Pending;
    int AttemptError = 0;  // of a failed attempt
    std::thread Thread;
};

}  // namespace Corvetape
