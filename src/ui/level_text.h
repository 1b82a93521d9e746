#pragma once

#include <QString>
#include <cstdint>

#include "core/controls/controls.h"
#include "ui/words.h"

class QLabel;

namespace Corvetape {

/// A level of 0 to 32768 in whole decibels below full scale. Empty for one below 0, which is none.
QString DecibelText(int32_t level, const Words& say);

/// A quiet label that says in decibels what a number of the program says as a level.
QLabel* DecibelsOf(TextBox& control, const Words& say);
QLabel* DecibelsOf(Label& control, const Words& say);

}  // namespace Corvetape
