#include "core/form.h"

#include "core/controls.h"
#include "core/text.h"

namespace Corvetape {

void Form::Caption(std::string text) {
    if (OwnCaption == text) return;
    OwnCaption = std::move(text);
    Changed.Raise();
}

void Form::Enabled(bool enabled) {
    if (IsEnabled == enabled) return;
    IsEnabled = enabled;
    Changed.Raise();
}

void Form::Visible(bool visible) {
    if (IsVisible == visible) return;
    IsVisible = visible;
    Changed.Raise();
}

Control* Form::Find(std::string_view name, int32_t index) const {
    for (Control* control : Members) {
        if (control->Index() == index && EqualIgnoringCase(control->Name(), name)) return control;
    }
    return nullptr;
}

}  // namespace Corvetape
