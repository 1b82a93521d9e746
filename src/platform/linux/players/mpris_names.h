#pragma once

namespace Corvetape {

/// The name of this program among the players of the session bus. A second process has its number after it.
inline constexpr const char* OwnPlayerName = "org.mpris.MediaPlayer2.corvetape";

}  // namespace Corvetape
