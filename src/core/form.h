#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/event.h"

namespace Corvetape {

class Control;

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

    const std::vector<Control*>& Controls() const { return Members; }

    /// A control by name, ignoring case, and index (-1 for a single control). Null if there is none.
    Control* Find(std::string_view name, int32_t index = -1) const;

    /// Public methods by name, for pages.
    std::map<std::string, std::function<void()>> Methods;

    /// The caption, the enabled or the visible state of the form itself has changed.
    Event<> Changed;

    bool Enabled() const { return IsEnabled; }
    void Enabled(bool enabled);

    /// Whether the window is on the screen. A dialog ends when it is hidden.
    bool Visible() const { return IsVisible; }
    void Visible(bool visible);

 private:
    friend class Control;
    std::string OwnName;
    std::string OwnCaption;
    std::string OwnTextKey;
    std::vector<Control*> Members;  // not owned: they are members of the derived form
    bool IsEnabled = true;
    bool IsVisible = false;
};

}  // namespace Corvetape
