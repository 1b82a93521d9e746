#pragma once

#include <string>

namespace Corvetape {

struct dlgProvider;

/// Shows forms as boxes that the user answers.
class FormBoxes {
 public:
    virtual ~FormBoxes() = default;

    /// Shows a form until it is no longer visible, and handles events meanwhile.
    virtual void Ask(dlgProvider& dialog) = 0;

    /// The language that the user chooses, as the name of its file of texts; `fitting` is preselected, and
    /// the answer where nobody chooses.
    virtual std::string AskLanguage(const std::string& fitting) { return fitting; }
};

}  // namespace Corvetape
