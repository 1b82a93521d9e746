#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "core/controls/controls.h"

namespace Corvetape {

/// Holds the controls of one page. Its tag is that of the tab that brings it up.
class Panel : public Control {
 public:
    using Control::Control;
};

/// A box with a caption around controls that belong together.
class GroupBox : public Control {
 public:
    using Control::Control;
};

/// Something drawn: a display, a logo, an icon, or a button that is a picture.
class Picture : public Control {
 public:
    using Control::Control;
    void Press() override {
        if (Enabled()) Click.Raise();
    }
    Event<> Click;
    Event<> DoubleClick;
    Event<int32_t> MouseMove;  ///< with the column under the pointer, counted from the left edge
};

/// An item of a menu.
class MenuItem : public Control {
 public:
    using Control::Control;

    /// The caption of a line between two groups of items.
    static constexpr std::string_view SeparatorCaption = "-";
    bool IsSeparator() const { return Caption() == SeparatorCaption; }
    void Press() override {
        if (Enabled() && !IsSeparator()) Click.Raise();
    }
    Event<> Click;
};

/// A menu that opens at the pointer. Its items are a control array of their own, named after it.
class Menu : public Control {
 public:
    using Control::Control;
};

/// A view of web pages. Whatever shows them reports through the events; without one they never come.
class BrowserView : public Control {
 public:
    using Control::Control;

    /// Asks for a page; `Address` is it from then on.
    void Navigate(std::string address) {
        OwnAddress = std::move(address);
        NavigateAsked.Raise();
    }
    const std::string& Address() const { return OwnAddress; }
    Event<> NavigateAsked;
    Event<const std::string&> StatusTextChange;
    Event<int64_t, int64_t> ProgressChange;  ///< progress, or -1, and its maximum
    Event<> DownloadComplete;

 private:
    std::string OwnAddress;
};

}  // namespace Corvetape
