#pragma once

#include "core/controls/control_array.h"
#include "core/controls/form.h"
#include "core/controls/form_parts.h"
#include "core/version.h"

namespace Corvetape {

/// The floating bar that shows the cover of the song, with artist and title over it.
struct frmCoverButtons : Form {
    frmCoverButtons();

    /// What the labels show while there is no title: the program's name.
    static constexpr const char* NoTitleText = ProgramTitle;

    Picture imgCover;

    /// Place and size of imgCover as laid out, in pixels: the whole bar, from the time when it is loaded.
    float CoverBoxLeft = 0;
    float CoverBoxTop = 0;
    float CoverBoxWidth = 0;
    float CoverBoxHeight = 0;
    Picture shpTop;  ///< behind the text
    Label lblArtist;
    Label lblSong;
    Panel picButtons;  ///< holds the pictures that serve as buttons
    Picture imgStartStop;
    Picture imgStart;
    Picture imgStop;
    ControlArray<Picture, 2> imgSkip;  ///< 0 cannot be used, 1 skips
    Picture Image1;                    ///< artwork
    Picture Image2;
    Control inet;  ///< what fetches the cover; never seen
    Menu mnuContext;

    /// 10 Hide/show, 20 Close, 30 Switch design; 19 is a separator.
    SparseControlArray<MenuItem, 10, 19, 20, 30> mnuContextItem;
    TimerControl tmrHide;  ///< 2000 ms after the pointer has left, text and buttons go
};

}  // namespace Corvetape
