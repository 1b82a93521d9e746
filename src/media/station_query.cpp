#include "media/station_query.h"

#include "core/event_wait.h"
#include "media/provider_wmp.h"

namespace Corvetape {

StationQuery::StationQuery(frmMain& form, const MediaState& media, ProviderChoice& choice,
                           PlayerBridge* bridge, const Machine& machine)
    : Form(form), Media(media), Choice(choice), Bridge(bridge), Computer(machine) {
    Form.cmdGetStationID.Click.Connect([this] { Ask(); });
}

void StationQuery::Ask() {
    constexpr float answerMs = 500;
    Form.cmdGetStationID.Enabled(false);
    if (Bridge != nullptr && Media.ProviderName == MediaPlayerName && Media.StationDataEnabled) {
        Bridge->ListenAnew();
        PauseWithEvents(Computer.Clock, Computer.Loop, answerMs);
    }
    Choice.Refresh();
    Form.cmdGetStationID.Enabled(true);
}

}  // namespace Corvetape
