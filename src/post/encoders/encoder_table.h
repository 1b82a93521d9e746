#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "core/settings/encoder_settings.h"
#include "forms/encoder_page.h"

namespace Corvetape {

/// What an encoder needs on this machine.
enum class EncoderTool { None, Lame, OggEnc, WmaEncoder, Sox };

/// One target format: what is stored for it, and what it takes to make it. The index in the table is the
/// value of the setting Encoder, the index in optEncoder and in Settings::EncoderCommand.
struct EncoderRow : EncoderSettings {
    ComboBox EncoderPage::*QualityControl;  ///< null for an encoder without qualities
    EncoderTool Needs;
    std::string_view JobLabel;   ///< kind of the log line; four characters at least
    std::string_view Extension;  ///< of the music file
};

inline constexpr std::array<EncoderRow, EncoderCount> EncoderTable = {{
    {EncoderSettingsTable[0], nullptr, EncoderTool::None, "WAV44", "wav"},
    {EncoderSettingsTable[1], &EncoderPage::cmbMP3, EncoderTool::Lame, "MP3 ", "mp3"},
    {EncoderSettingsTable[2], &EncoderPage::cmbOgg, EncoderTool::OggEnc, "OGG ", "ogg"},
    {EncoderSettingsTable[3], &EncoderPage::cmbWMA44, EncoderTool::WmaEncoder, "WMA44", "wma"},
    {EncoderSettingsTable[4], &EncoderPage::cmbWMA48, EncoderTool::WmaEncoder, "WMA48", "wma"},
    {EncoderSettingsTable[5], nullptr, EncoderTool::Sox, "WAV48", "wav"},
}};

/// The row of an encoder; null for an index outside the table.
constexpr const EncoderRow* FindEncoder(int32_t encoder) {
    if (encoder < 0 || static_cast<size_t>(encoder) >= EncoderTable.size()) return nullptr;
    return &EncoderTable[static_cast<size_t>(encoder)];
}

}  // namespace Corvetape
