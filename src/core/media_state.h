#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Corvetape {

/// The name of the source while none is known; its settings have a section of this name.
inline constexpr const char* NoStationData = "NoStationData";

/// What is known of a piece that plays or was recorded.
struct STATIONANDSONGDATA {
    std::string StationName;  ///< the media player's genre stands here too
    std::string StationDescr;
    std::string Artist;
    std::string Song;
    std::string Album;
    std::string Cover;  ///< address of a picture, as its source gave it
    int32_t RemainingTime = 0;
    std::string RemainingTimeAsString;
    int32_t Size = 0;          ///< seconds; in SongMedia only, set when the song's file closes
    std::string TempFileName;  ///< base name of the temporary file; in SongMedia only
    int32_t FilePart = 0;      ///< 0 for a song in one file, else the number of the file, from 1

    bool operator==(const STATIONANDSONGDATA&) const = default;
};

/// Who plays what. Made once; written by the providers, the media poll and the age of the song.
struct MediaState {
    STATIONANDSONGDATA CurrentMedia;   ///< the last reading
    STATIONANDSONGDATA PreviousMedia;  ///< the reading before it
    STATIONANDSONGDATA SongMedia;      ///< the song in the file, and the hand-over to the transfer job
    std::string ProviderName;          ///< empty: there is no provider any more, the choice runs again
    std::string MixerSectionName = "Mixer";
    std::vector<std::string> KnownProviders;  ///< those that a section "Mixer" + name exists for
    bool StationDataEnabled = true;
};

}  // namespace Corvetape
