#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/virtual/source_wave_in.h"
#include "sim/radio_script.h"

namespace Corvetape {

/// The simulated machine's inputs: radios that play on whether somebody listens or not, on devices that can
/// stop, vanish and come back, and a sound server that can die. Devices are named by their Id; commands for
/// an unknown one do nothing. What a disturbance tells its owner comes as an event of the loop.
class SimWaveIn : public SourceWaveIn {
 public:
    using SourceWaveIn::SourceWaveIn;

    /// Adds a radio on the air from now on. A stream hears it from the moment of its start, not from the
    /// radio's beginning. The Id of the device is `name` too.
    void AddRadio(const std::string& name, RadioScript script, WaveInKind kind = WaveInKind::Monitor);

    /// Takes the device out of the list, or puts it back. Streams on it lose what it plays meanwhile and are
    /// told: a DeviceLost incident when it is back.
    void Vanish(const std::string& id);
    void Return(const std::string& id);

    /// The device delivers nothing and nobody is told; back again, the lost frames are told as `kind`.
    void Stop(const std::string& id);
    void Restart(const std::string& id, WaveInIncidentKind kind = WaveInIncidentKind::ClockDrift);

    /// The device delivers nothing until Release, then everything at once: nothing is lost.
    void Hold(const std::string& id);
    void Release(const std::string& id);

    /// Drops the next frames of the device's open streams, told at once.
    void Lose(const std::string& id, uint64_t frames, WaveInIncidentKind kind = WaveInIncidentKind::Overrun);

    /// The server takes all devices with it and brings them back. Streams are told a ServerLost incident.
    void KillServer();
    void RestartServer();

    /// The device's clock runs so many millionths faster than the machine's, open streams included.
    void SetDrift(const std::string& id, int64_t millionths);

    /// Later opens keep at most so many seconds of undelivered sound; older sound stays, newer is lost.
    void SetQueueLimit(double seconds) { QueueLimitSeconds = seconds; }

    /// Opening the device fails from now on, as if another program held it, or works again.
    void Refuse(const std::string& id);
    void Admit(const std::string& id);

    /// What the sound server says of itself from now on, where it lists nothing or refuses a device, and of
    /// what streams opened later lose.
    void SetServerWords(std::string words) { ServerWords = std::move(words); }

    WaveInList Devices() override;
    OpenedWaveIn Open(size_t device, const WaveFormat& format, BufferReturn mode,
                      WaveInEvents events) override;

    /// The radio's frame that is at `delivered` in what the stream opened last got. The radio's first frame
    /// is number 0. Nothing if no radio is open.
    std::optional<uint64_t> RadioFrameOf(uint64_t delivered) const;

    /// The timeline of a radio at a rate; none if there is no such radio.
    std::shared_ptr<const RadioTimeline> Timeline(const std::string& id, uint32_t framesPerSecond);

 protected:
    void Prepare(FeedSetup& setup) override;

 private:
    struct Condition {
        bool Gone = false;
        bool Stopped = false;
        bool Refused = false;
        int64_t Drift = 0;
    };
    struct Radio {
        RadioScript Script;
        int64_t OnAirSince = 0;                                              ///< monotonic nanoseconds
        std::map<uint32_t, std::shared_ptr<const RadioTimeline>> Timelines;  ///< by rate
    };

    bool Reachable(const std::string& id) const;
    const std::shared_ptr<const RadioTimeline>& TimelineOf(Radio& radio, uint32_t framesPerSecond);
    std::unique_ptr<SoundSource> TuneIn(const std::string& id, uint32_t framesPerSecond);

    template <typename Action>
    void ForFeedsOf(const std::string& id, Action action);

    std::map<std::string, Condition> Conditions;
    std::map<std::string, Radio> Radios;
    bool ServerDead = false;
    std::string ServerWords;
    double QueueLimitSeconds = 0;  ///< 0: no limit
    uint64_t TunedAtFrame = 0;     ///< of the radio opened last
};

}  // namespace Corvetape
