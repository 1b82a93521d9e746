#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/controls/event.h"
#include "core/controls/method_table.h"

namespace Corvetape {

class Control;

/// How a window stands on the screen. The numbers are those of the settings file.
enum class WindowState { Normal = 0, Minimised = 1, Maximised = 2 };

/// Place and size of a window, in twips: 1440 to the inch.
struct WindowPlace {
    int32_t Left = 0;
    int32_t Top = 0;
    int32_t Width = 0;
    int32_t Height = 0;

    bool operator==(const WindowPlace&) const = default;
};

/// A window as a value: a name, a caption, its controls in the order of their making, and its public methods.
class Form {
 public:
    /// `textKey` is the key of the caption in the language file, "0" for none.
    Form(std::string name, std::string caption, std::string textKey = "0")
        : OwnName(std::move(name)), OwnCaption(std::move(caption)), OwnTextKey(std::move(textKey)) {}
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& Name() const { return OwnName; }
    const std::string& Caption() const { return OwnCaption; }
    void Caption(std::string text);
    const std::string& TextKey() const { return OwnTextKey; }

    /// Name of its help page without ".htm", empty if it has none of its own.
    const std::string& Tag() const { return OwnTag; }
    void Tag(std::string tag) { OwnTag = std::move(tag); }

    const std::vector<Control*>& Controls() const { return Members; }

    /// A control by name, ignoring case, and index (-1 for a single control). Null if there is none.
    Control* Find(std::string_view name, int32_t index = -1) const;

    /// Public methods by name, for pages.
    MethodTable Methods;

    /// Makes the handlers of an event public, as the method "control_Event". For a control array the method
    /// takes the index as its argument.
    void PublishHandler(std::string_view controlAndEvent);

    /// The caption, the enabled or the visible state, the window state or the place of the form has changed.
    Event<> Changed;

    bool Enabled() const { return IsEnabled; }
    void Enabled(bool enabled);

    /// Whether the window is on the screen. A dialog ends when it is hidden.
    bool Visible() const { return IsVisible; }
    void Visible(bool visible);

    WindowState State() const { return OwnState; }
    void State(WindowState state);

    /// Where the window stands; all zero until it has been placed.
    const WindowPlace& Place() const { return OwnPlace; }
    void Place(const WindowPlace& place);

    /// The control that has the keyboard within the form. Null before one got it.
    Control* Focused() const { return FocusedControl; }

    /// Gives the keyboard to a control of this form. Runs FocusMoved also if it has it already, so that a
    /// window in the background can come up.
    void Focus(Control& control);
    Event<> FocusMoved;

 private:
    friend class Control;
    std::string OwnName;
    std::string OwnCaption;
    std::string OwnTextKey;
    std::string OwnTag;
    std::vector<Control*> Members;  // not owned: they are members of the derived form
    Control* FocusedControl = nullptr;
    WindowPlace OwnPlace;
    WindowState OwnState = WindowState::Normal;
    bool IsEnabled = true;
    bool IsVisible = false;
};

}  // namespace Corvetape
