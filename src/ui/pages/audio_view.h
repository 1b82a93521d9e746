#pragma once

#include "ui/ui_parts.h"

class QWidget;

namespace Corvetape {

/// Tab "Audio Devices": the input, its level, its gain. The parts outlive the page, which the caller owns.
QWidget* MakeAudioView(const UiParts& parts);

}  // namespace Corvetape
