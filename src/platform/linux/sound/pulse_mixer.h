#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/sound/pulse_handles.h"
#include "platform/mixer.h"

namespace Corvetape {

/// What is known of the volumes of a source or sink, by its name.
struct PulseVolumes {
    pa_cvolume Users{};  ///< as somebody else than this program has set it last, with its balance
    pa_cvolume Ours{};   ///< as this program has set it last
    std::map<int32_t, pa_cvolume> Seen;  ///< each that somebody else had set, by its value; none above 100 %
};

/// One end of the sound server that has volume, mute and perhaps ports.
struct PulseEnd {
    bool IsSource = true;
    std::string Name;  ///< stable
};

/// The sources and sinks of the sound server, PulseAudio's or PipeWire's, as mixer devices: first the sources
/// in the order of the inputs that can be recorded from, then the sinks by their names.
///
/// A device has one destination, of type wave-in for a source and speakers for a sink, with these controls:
/// a selector where there are ports, as a port may bring a volume of its own; the volume; mute. Each port is
/// a source line without controls. The volume is the server's cubic one, 65535 being 100 %.
///
/// A volume that was read before brings back what all channels had then; any other one moves the channels
/// alike, so that their balance stays. A volume above 100 % is set by other programs only. It reads as 65535,
/// and setting 65535 leaves it, or brings it back if nobody else has changed it since. Each call asks the
/// server over a connection of its own; one that does not answer within two seconds is not asked again before
/// the next count.
class PulseMixer : public Mixer {
 public:
    /// Address of the server; empty for the user's own.
    explicit PulseMixer(std::string server = {});
    ~PulseMixer() override;

    uint32_t CountDevices() override;
    std::unique_ptr<MixerDevice> Open(uint32_t device) override;
    std::unique_ptr<MixerDevice> OpenWaveIn(const std::string& input) override;

 private:
    std::unique_ptr<MixerDevice> OpenEnd(const PulseEnd& end);

    const std::string Server;
    std::vector<PulseEnd> Ends;
    std::map<std::string, PulseVolumes> Volumes;
    bool Silent = false;  ///< the server has let a call wait too long
};

}  // namespace Corvetape
