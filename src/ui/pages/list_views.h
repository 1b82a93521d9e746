#pragma once

#include "ui/ui_parts.h"

class QWidget;

namespace Corvetape {

/// Tab "Log file". The parts outlive the pages, which the caller owns.
QWidget* MakeLogView(const UiParts& parts);

/// Tabs "White List" and "Blacklist".
QWidget* MakeIncludeView(const UiParts& parts);
/// The same for the second of the two.
QWidget* MakeExcludeView(const UiParts& parts);

/// The last tab: the program itself.
QWidget* MakeAboutView(const UiParts& parts);

}  // namespace Corvetape
