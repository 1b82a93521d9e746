#pragma once

#include <functional>
#include <string>

#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "core/media_state.h"

namespace Corvetape {

/// What a provider may touch, and what it asks of others. Outlives every provider.
struct ProviderHost {
    MediaState& Media;
    SignalState& Signal;
    RecordingFlags& Flags;

    /// Reads the pause recognition values of one provider; nothing happens for the one loaded last.
    std::function<void(const std::string& providerName)> LoadProviderSettings;

    /// Applies the saved mixer section of the present provider if the user wants that.
    std::function<void()> ApplyMixerSection;

    /// True while a closed song waits for the transfer job, which needs SongMedia as it is.
    std::function<bool()> HandOverPending;

    /// Takes over the settings of a provider that has become the present one.
    std::function<void(const std::string& providerName)> AdoptSettings;
};

/// Turns on pause recognition and recording, as every new provider does.
void ReArmRecording(ProviderHost& host);

/// Empties all fields of the last reading.
void ClearMedia(STATIONANDSONGDATA& media);

/// A source of media data. It writes what it reads straight into CurrentMedia and reports nothing in
/// words: a source that has gone empties ProviderName.
class clsProvider {
 public:
    virtual ~clsProvider() = default;

    /// Finds the source again and refills all fields.
    virtual void GetStationData() = 0;

    /// Refills artist, title, album and cover only.
    virtual void GetSongData() = 0;

    /// Asks the source to play again. True when the request ran without an error.
    virtual bool RestartRadio() = 0;
};

/// The provider for a state in which nothing is known. Its construction starts the recording without media
/// data and takes the settings of "NoStationData".
class clsProviderNull : public clsProvider {
 public:
    explicit clsProviderNull(ProviderHost& host);
    void GetStationData() override {}
    void GetSongData() override {}
    bool RestartRadio() override { return false; }
};

}  // namespace Corvetape
