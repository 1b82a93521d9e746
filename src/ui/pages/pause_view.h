#pragma once

#include "ui/ui_parts.h"

class QWidget;

namespace Corvetape {

/// Tab "Pause Recognition": what the end of a song is. The parts outlive the page, which the caller owns.
QWidget* MakePauseView(const UiParts& parts);

}  // namespace Corvetape
