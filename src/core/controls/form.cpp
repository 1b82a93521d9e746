#include "core/controls/form.h"

#include "core/controls/controls.h"
#include "core/text/text.h"

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

void Form::State(WindowState state) {
    if (OwnState == state) return;
    OwnState = state;
    Changed.Raise();
}

void Form::Place(const WindowPlace& place) {
    if (OwnPlace == place) return;
    OwnPlace = place;
    Changed.Raise();
}

void Form::Focus(Control& control) {
    FocusedControl = &control;
    FocusMoved.Raise();
}

void Form::PublishHandler(std::string_view controlAndEvent) {
    const size_t line = controlAndEvent.find('_');
    const std::string control(controlAndEvent.substr(0, line));
    const std::string event(controlAndEvent.substr(line + 1));
    Methods.AddPlain(controlAndEvent, [this, control, event](MethodArguments arguments) {
        int32_t index = -1;
        if (!arguments.empty()) {
            const auto* const given = std::get_if<int32_t>(&arguments[0]);
            if (given == nullptr || arguments.size() > 1) return false;
            index = *given;
        }
        Control* const found = Find(control, index);
        return found != nullptr && found->RunHandler(event);
    });
}

Control* Form::Find(std::string_view name, int32_t index) const {
    for (Control* control : Members) {
        if (control->Index() == index && EqualIgnoringCase(control->Name(), name)) return control;
    }
    return nullptr;
}

}  // namespace Corvetape
