#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "core/settings/settings.h"

namespace Corvetape {

/// What is stored for one target format, by the index that the setting Encoder holds.
struct EncoderSettings {
    std::string_view TemplateKey;  ///< in section Encode of the data file
    std::string_view Section;      ///< of its quality lists there; empty for an encoder without qualities
    std::string_view QualityKey;   ///< in section Options of the user's settings
    QualityList Settings::*Qualities = nullptr;
    int32_t Settings::*QualityIndex = nullptr;
};

inline constexpr std::array<EncoderSettings, EncoderCount> EncoderSettingsTable = {{
    {"WAV44", "", ""},
    {"MP3", "MP3", "MP3Quality", &Settings::MP3, &Settings::MP3Quality},
    {"OggVorbis", "OggVorbis", "OggVorbisQuality", &Settings::OggVorbis, &Settings::OggVorbisQuality},
    {"WMA44", "WMA44", "WMA44Quality", &Settings::WMA44, &Settings::WMA44Quality},
    {"WMA48", "WMA48", "WMA48Quality", &Settings::WMA48, &Settings::WMA48Quality},
    {"WAV48", "", ""},
}};

}  // namespace Corvetape
