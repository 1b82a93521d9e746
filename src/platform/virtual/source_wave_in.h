#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/virtual/source_feed.h"

namespace Corvetape {

/// Makes a source at the open rate; nothing if it cannot.
using SourceFactory = std::function<std::unique_ptr<SoundSource>(uint32_t framesPerSecond)>;

/// Inputs made of sound sources: a sound file, a made-up radio, a script. They run by the clock and the loop
/// given, real or simulated, in exact buffers. An open makes its source anew, from its beginning.
///
/// Outlives the streams and everything that its loop still handles.
class SourceWaveIn : public WaveIn {
 public:
    SourceWaveIn(Clock& clock, EventLoop& loop);

    /// Adds a device to the end of the list. Its Id must be unlike all others.
    void AddDevice(WaveInDevice device, SourceFactory source);

    WaveInList Devices() override;
    OpenedWaveIn Open(size_t device, const WaveFormat& format, BufferReturn mode,
                      WaveInEvents events) override;

    /// What plays on the input that was opened last, at the frame delivered last. Empty if none is open.
    SourceMedia NowPlaying() const;

    /// The feed that was opened last and is open; none otherwise.
    const SourceFeed* OpenFeed() const;

 protected:
    struct Entry {
        WaveInDevice Info;
        SourceFactory Source;
    };

    /// Nothing if no device has the id.
    Entry* Find(const std::string& id);

    /// What a device needs beyond its source; here nothing.
    virtual void Prepare(FeedSetup& setup);

    std::vector<Entry> Entries;
    std::vector<std::unique_ptr<SourceFeed>> Feeds;  ///< open and closed ones; closed ones are used again
    std::vector<std::string> Listed;                 ///< ids in the order of the last list

    Clock& Time;
    EventLoop& Loop;

 private:
    SourceFeed& FreeFeed();

    SourceFeed* LastOpened = nullptr;
};

}  // namespace Corvetape
