#include "forms/frm_cover_buttons.h"
#include "core/version.h"

namespace Corvetape {

frmCoverButtons::frmCoverButtons()
    : Form("frmCoverButtons", ProgramTitle),
      imgCover(*this, "imgCover"),
      shpTop(*this, "shpTop"),
      lblArtist(*this, "lblArtist"),
      lblSong(*this, "lblSong"),
      picButtons(*this, "picButtons"),
      imgStartStop(*this, "imgStartStop"),
      imgStart(*this, "imgStart"),
      imgStop(*this, "imgStop"),
      imgSkip(*this, "imgSkip"),
      Image1(*this, "Image1"),
      Image2(*this, "Image2"),
      inet(*this, "inet"),
      mnuContext(*this, "mnuContext"),
      mnuContextItem(*this, "mnuContextItem"),
      tmrHide(*this, "tmrHide", 2000) {
    Tag("quickbuttons");
    lblArtist.Caption(NoTitleText);
    lblSong.Caption(NoTitleText);
    imgStartStop.TextKey("1320");
    imgStart.TextKey("1321");
    imgStop.TextKey("1322");
    imgSkip[1].TextKey("1323");
    imgStop.Visible(false);
    inet.Visible(false);
    mnuContextItem[10].Wording("1324", "Hide/show Corvetape");
    mnuContextItem[19].Caption(std::string(MenuItem::SeparatorCaption));
    mnuContextItem[20].Wording("1325", "Close Quickbuttons");
    mnuContextItem[30].Wording("1326", "Switch Quickbuttons design");
}

}  // namespace Corvetape
