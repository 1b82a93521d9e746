#pragma once

#include "audio/recording_flags.h"
#include "audio/signal_state.h"
#include "core/media_state.h"
#include "media/provider_adoption.h"

namespace Corvetape {

/// What a provider may touch, and whose settings it takes. Outlives every provider.
struct ProviderHost {
    MediaState& Media;
    SignalState& Signal;
    RecordingFlags& Flags;
    ProviderAdoption& Adoption;
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
