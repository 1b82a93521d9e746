#pragma once

#include <cstdint>

namespace Corvetape {

class clsLocalizeControls;
class Dialogs;
class TextBox;

/// True if the text of the box is refused: no number, not a whole one, outside `minimum` to `maximum`, or
/// not a multiple of `step`. The reason is reported in a box with the exclamation icon.
bool ValidateNumber(TextBox& box, int32_t minimum, int32_t maximum, int32_t step, Dialogs& dialogs,
                    const clsLocalizeControls& messages);

}  // namespace Corvetape
