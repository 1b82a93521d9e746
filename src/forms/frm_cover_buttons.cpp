#include "forms/frm_cover_buttons.h"

namespace Corvetape {

frmCoverButtons::frmCoverButtons()
    : Form("frmCoverButtons", "Corvetape"), lblArtist(*this, "lblArtist"), lblSong(*this, "lblSong") {
    lblArtist.Caption(NoTitleText);
    lblSong.Caption(NoTitleText);
}

}  // namespace Corvetape
