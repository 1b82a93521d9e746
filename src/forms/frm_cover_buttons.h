#pragma once

#include "core/controls.h"
#include "core/form.h"

namespace Corvetape {

/// The floating bar that shows the cover of the song, with artist and title over it.
struct frmCoverButtons : Form {
    frmCoverButtons();

    /// What the labels show while there is no title: the program's name.
    static constexpr const char* NoTitleText = "Corvetape";

    Label lblArtist;
    Label lblSong;
};

}  // namespace Corvetape
