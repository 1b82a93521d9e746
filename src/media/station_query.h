#pragma once

#include "forms/frm_main.h"
#include "media/player_bridge.h"
#include "media/provider_choice.h"
#include "platform/machine.h"

namespace Corvetape {

/// Asks the present source anew, by cmdGetStationID.
class StationQuery {
 public:
    /// Attaches itself to the control. All of them, and the machine's parts, outlive it. `bridge` may be
    /// missing.
    StationQuery(frmMain& form, const MediaState& media, ProviderChoice& choice, PlayerBridge* bridge,
                 const Machine& machine);

 private:
    void Ask();

    frmMain& Form;
    const MediaState& Media;
    ProviderChoice& Choice;
    PlayerBridge* Bridge;
    Machine Computer;
};

}  // namespace Corvetape
