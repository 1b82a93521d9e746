#pragma once

#include "ui/ui_parts.h"

class QWidget;

namespace Corvetape {

/// Tab "MP3, WMA, ...": the format of the music files. The parts outlive the pages, which the caller owns.
QWidget* MakeEncoderView(const UiParts& parts);

/// Tab "Options 1": encoding, temporary files, the end of the program.
QWidget* MakeOptions1View(const UiParts& parts);

/// Tab "Options 2": disk space, and programs to start.
QWidget* MakeOptions2View(const UiParts& parts);

/// Tab "Folders & Files": where files go and what they are called.
QWidget* MakeFoldersView(const UiParts& parts);

}  // namespace Corvetape
