#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/controls/event.h"

namespace Corvetape {

class EventLoop;
class Form;
class LoopTimer;

/// A named value that a person, a page, a switch or the running program can set. It knows no widget;
/// the screen binds to it through Changed.
///
/// Setting a value to what it is already does nothing. Setting another one runs the control's handlers,
/// whoever sets it.
class Control {
 public:
    /// `index` is the place in a control array, -1 for a single control. `textKey` is the key of caption and
    /// tool tip in the language file, "0" for none.
    Control(Form& form, std::string name, int32_t index = -1, std::string textKey = "0");
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::string& Name() const { return OwnName; }
    int32_t Index() const { return OwnIndex; }
    const std::string& TextKey() const { return OwnTextKey; }
    void TextKey(std::string textKey) { OwnTextKey = std::move(textKey); }

    /// Gives it the key of its texts and the caption that it has until a language file replaces it. A text
    /// box takes no caption: a label of its own names it.
    void Wording(std::string textKey, std::string defaultCaption = {});

    /// A word for whoever handles the control; it is never shown. Empty unless it is set.
    const std::string& Tag() const { return OwnTag; }
    void Tag(std::string tag) { OwnTag = std::move(tag); }

    bool Enabled() const { return IsEnabled; }
    void Enabled(bool enabled);
    bool Visible() const { return IsVisible; }
    void Visible(bool visible);
    const std::string& ToolTip() const { return OwnToolTip; }
    void ToolTip(std::string text);

    /// Caption or label as shown; controls without one have an empty caption.
    const std::string& Caption() const { return OwnCaption; }
    void Caption(std::string text);

    /// The value as a settings file or a page writes it: 0 or 1, a number, a text, a list index.
    virtual std::string ValueText() const { return {}; }

    /// Sets the value from such a text, as the user would. False if the control cannot take it.
    virtual bool SetValueText(std::string_view text);

    /// What a click does. Nothing on a disabled control.
    virtual void Press() {}

    /// Runs the handlers of an event by its name, such as "Click" or "Validate", ignoring case, without the
    /// event itself: the value stays, and a disabled control runs them too. False if it has no such event.
    virtual bool RunHandler(std::string_view event);

    /// Asks for the keyboard. False if it cannot have it, because it is disabled or invisible.
    bool SetFocus();

    /// Anything that can be seen has changed.
    Event<> Changed;

 private:
    Form& Parent;
    std::string OwnName;
    int32_t OwnIndex;
    std::string OwnTextKey;
    std::string OwnTag;
    std::string OwnCaption;
    std::string OwnToolTip;
    bool IsEnabled = true;
    bool IsVisible = true;
};

class Label : public Control {
 public:
    using Control::Control;
    std::string ValueText() const override { return Caption(); }
    bool SetValueText(std::string_view text) override;
    void Press() override;
    bool RunHandler(std::string_view event) override;
    Event<> Click;
};

class CommandButton : public Control {
 public:
    using Control::Control;
    void Press() override;
    bool RunHandler(std::string_view event) override;
    Event<> Click;
};

/// 0 or 1.
class CheckBox : public Control {
 public:
    using Control::Control;
    int32_t Value() const { return Ticked ? 1 : 0; }
    void Value(int32_t value);
    std::string ValueText() const override { return Ticked ? "1" : "0"; }
    bool SetValueText(std::string_view text) override;
    void Press() override;
    bool RunHandler(std::string_view event) override;
    Event<> Click;

 private:
    bool Ticked = false;
};

class OptionButton;

/// Option buttons of which one at most is set.
class OptionGroup {
 public:
    /// Index of the set one, -1 for none.
    int32_t Selected() const;

 private:
    friend class OptionButton;
    std::vector<OptionButton*> Members;
};

class OptionButton : public Control {
 public:
    OptionButton(Form& form, OptionGroup& group, std::string name, int32_t index, std::string textKey = "0");
    bool Value() const { return IsSet; }

    /// Setting it clears the others of its group and runs Click. Clearing it runs nothing.
    void Value(bool value);
    std::string ValueText() const override { return IsSet ? "1" : "0"; }
    bool SetValueText(std::string_view text) override;
    void Press() override;
    bool RunHandler(std::string_view event) override;
    Event<> Click;

 private:
    OptionGroup& Group;
    bool IsSet = false;
};

class TextBox : public Control {
 public:
    using Control::Control;
    const std::string& Text() const { return OwnText; }

    /// Runs Change if the text differs.
    void Text(std::string text);

    /// What leaving the field does. True if the input is refused and the focus stays.
    bool RunValidate();

    std::string ValueText() const override { return OwnText; }

    /// Sets the text and leaves the field. A refused text is taken back.
    bool SetValueText(std::string_view text) override;

    bool RunHandler(std::string_view event) override;
    void Press() override;
    Event<> Change;
    Event<> Click;
    std::function<bool()> Validate;  ///< true refuses; one owner

 private:
    std::string OwnText;
};

struct ListItem {
    std::string Text;
    int64_t Data = 0;
    bool Selected = false;
};

/// A list of which one entry, or none (-1), is selected.
class ListBox : public Control {
 public:
    using Control::Control;
    void Clear();
    void AddItem(std::string text, int64_t data = 0);
    void ItemText(int32_t index, std::string text);

    /// Replaces all entries at once; none is current.
    void Items(std::vector<ListItem> items);

    /// Puts an entry before the one at `index`, which may be one after the last; what is selected stays so.
    void InsertItem(int32_t index, std::string text);

    /// Takes an entry out; if it was selected, none is.
    void RemoveItem(int32_t index);
    const std::vector<ListItem>& Items() const { return OwnItems; }
    int32_t ListIndex() const { return Index_; }

    /// Selects an entry and runs Click if it is another one. False, and no change, if there is no such entry.
    bool ListIndex(int32_t index);

    /// Selects an entry and no other, and runs Click also if it is selected already.
    bool Select(int32_t index);

    /// Asks the screen to scroll an entry into view.
    void Reveal(int32_t index) { Revealed.Raise(index); }

    std::string ValueText() const override { return std::to_string(Index_); }
    bool SetValueText(std::string_view text) override;
    bool RunHandler(std::string_view event) override;
    Event<> Click;
    Event<int32_t> Revealed;

 protected:
    std::vector<ListItem> OwnItems;
    int32_t Index_ = -1;
};

/// A list of which any number of entries can be selected. ListIndex is the one that was clicked last, whether
/// or not it is selected.
class MultiListBox : public ListBox {
 public:
    using ListBox::ListBox;

    /// A click with Ctrl: selects or releases one entry beside the others and makes it the current one. Runs
    /// Click if something changes. False, and no change, if there is no such entry.
    bool Selected(int32_t index, bool selected);

    /// Selects exactly these entries, as a click with Shift does. Runs Click if something changes; what is no
    /// entry is passed over.
    void SelectExactly(std::span<const int32_t> indices);

    /// How many entries are selected.
    int32_t SelCount() const;

    /// Takes all selected entries out and gives them.
    std::vector<ListItem> TakeSelected();
};

class ComboBox : public ListBox {
 public:
    using ListBox::ListBox;
};

/// A number in a range, dragged (Scroll) and let go (Change).
class Slider : public Control {
 public:
    Slider(Form& form, std::string name, int32_t index, int32_t minimum, int32_t maximum,
           std::string textKey = "0");
    int32_t Value() const { return OwnValue; }

    /// Brings the value into the range; runs Scroll and Change if it differs.
    void Value(int32_t value);

    /// While dragging: runs Scroll only.
    void Drag(int32_t value);
    int32_t Minimum() const { return Low; }
    int32_t Maximum() const { return High; }

    /// What a key or a click on an arrow moves it by, 1 unless it is set. Any value of the range can be set.
    int32_t Step() const { return OwnStep; }
    void Step(int32_t step) { OwnStep = step; }
    std::string ValueText() const override { return std::to_string(OwnValue); }
    bool SetValueText(std::string_view text) override;
    bool RunHandler(std::string_view event) override;
    Event<> Scroll;
    Event<> Change;

 private:
    int32_t Low;
    int32_t High;
    int32_t OwnValue;
    int32_t Settled;
    int32_t OwnStep = 1;
};

class ScrollBar : public Slider {
 public:
    using Slider::Slider;
};

/// A tab of a tab strip.
struct Tab {
    std::string Key;            ///< unique in its strip, compared ignoring case
    std::string Tag;            ///< name of the panel that it brings up and of its help page
    std::string TextKey = "0";  ///< key of caption and tool tip in the language file, "0" for none
    std::string Caption;        ///< "&&" stands for one "&"
    std::string ToolTip;
};

class TabStrip : public Control {
 public:
    using Control::Control;
    void AddTab(Tab tab);
    const std::vector<Tab>& Tabs() const { return OwnTabs; }

    /// Replaces caption and tool tip of the tab at `index`, which must be there.
    void Texts(size_t index, std::string caption, std::string toolTip);

    /// The selected tab. Null before the first selection.
    const Tab* Selected() const { return Current < OwnTabs.size() ? &OwnTabs[Current] : nullptr; }

    /// Key of the selected tab as it was added, empty before the first selection.
    std::string SelectedKey() const { return Selected() ? Selected()->Key : std::string(); }

    /// Selects a tab by its key, ignoring case, and runs Click if it is another one. False if there is none.
    bool Select(std::string_view key);
    std::string ValueText() const override { return SelectedKey(); }
    bool SetValueText(std::string_view text) override { return Select(text); }
    bool RunHandler(std::string_view event) override;
    Event<> Click;

 private:
    std::vector<Tab> OwnTabs;
    size_t Current = SIZE_MAX;  // none
};

/// A timer of a form. It fires every Interval milliseconds while it is enabled; an interval of 0 never fires.
class TimerControl : public Control {
 public:
    TimerControl(Form& form, std::string name, int32_t intervalMs);
    ~TimerControl() override;

    /// Gives it the loop that it runs on. Until then it only remembers its state.
    void Attach(EventLoop& loop);
    void Detach();
    bool Running() const { return On; }
    void Running(bool on);
    int32_t Interval() const { return IntervalMs; }
    void Interval(int32_t milliseconds);
    std::string ValueText() const override { return On ? "1" : "0"; }
    bool RunHandler(std::string_view event) override;
    Event<> Timer;

 private:
    void Apply();

    std::unique_ptr<LoopTimer> Backing;
    int32_t IntervalMs;
    bool On = false;
};

}  // namespace Corvetape
