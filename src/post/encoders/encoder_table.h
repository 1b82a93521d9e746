#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "core/settings/settings.h"
#include "forms/encoder_page.h"

namespace Corvetape {

/// What an encoder needs on this machine.
enum class EncoderTool { None, Lame, OggEnc, WmaEncoder, Sox };

/// One target format. The index in the table is the value of the setting Encoder, the index in optEncoder
/// and in Settings::EncoderCommand.
struct EncoderRow {
    std::string_view Caption;      ///< of its optEncoder
    std::string_view TemplateKey;  ///< in section Encode of the data file
    std::string_view Section;      ///< of its quality lists; empty for an encoder without qualities
    ComboBox EncoderPage::*QualityControl;
    QualityList Settings::*Qualities;
    int32_t Settings::*QualityIndex;
    std::string_view QualityKey;  ///< in section Options
    EncoderTool Needs;
    std::string_view JobLabel;   ///< kind of the log line; four characters at least
    std::string_view Extension;  ///< of the music file
};

inline constexpr std::array<EncoderRow, EncoderCount> EncoderTable = {{
    // clang-format off
    {"WAV 44 kHz:", "WAV44", "", nullptr, nullptr, nullptr, "", EncoderTool::None, "WAV44", "wav"},
    {"MP3:", "MP3", "MP3", &EncoderPage::cmbMP3, &Settings::MP3, &Settings::MP3Quality, "MP3Quality",
     EncoderTool::Lame, "MP3 ", "mp3"},
    {"Ogg Vorbis:", "OggVorbis", "OggVorbis", &EncoderPage::cmbOgg, &Settings::OggVorbis,
     &Settings::OggVorbisQuality, "OggVorbisQuality", EncoderTool::OggEnc, "OGG ", "ogg"},
    {"WMA 44 kHz:", "WMA44", "WMA44", &EncoderPage::cmbWMA44, &Settings::WMA44, &Settings::WMA44Quality,
     "WMA44Quality", EncoderTool::WmaEncoder, "WMA44", "wma"},
    {"WMA 48 kHz (SPDIF):", "WMA48", "WMA48", &EncoderPage::cmbWMA48, &Settings::WMA48,
     &Settings::WMA48Quality, "WMA48Quality", EncoderTool::WmaEncoder, "WMA48", "wma"},
    {"WAV 48 kHz (SPDIF):", "WAV48", "", nullptr, nullptr, nullptr, "", EncoderTool::Sox, "WAV48", "wav"},
    // clang-format on
}};

/// The row of an encoder; null for an index outside the table.
constexpr const EncoderRow* FindEncoder(int32_t encoder) {
    if (encoder < 0 || static_cast<size_t>(encoder) >= EncoderTable.size()) return nullptr;
    return &EncoderTable[static_cast<size_t>(encoder)];
}

}  // namespace Corvetape
