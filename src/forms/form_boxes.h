#pragma once

namespace Corvetape {

struct dlgProvider;

/// Shows forms as boxes that the user answers.
class FormBoxes {
 public:
    virtual ~FormBoxes() = default;

    /// Shows a form until it is no longer visible, and handles events meanwhile.
    virtual void Ask(dlgProvider& dialog) = 0;
};

}  // namespace Corvetape
