#include "core/controls/controls.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "core/controls/form.h"
#include "core/text/text.h"
#include "platform/event_loop.h"

namespace Corvetape {

namespace {

/// A whole decimal number and nothing else.
bool ReadWhole(std::string_view text, int32_t& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

/// Runs the handlers of `event` if `wanted` is its name.
bool RunIfNamed(std::string_view wanted, std::string_view name, const Event<>& event) {
    if (!EqualIgnoringCase(wanted, name)) return false;
    event.Raise();
    return true;
}

}  // namespace

Control::Control(Form& form, std::string name, int32_t index, std::string textKey)
    : Parent(form), OwnName(std::move(name)), OwnIndex(index), OwnTextKey(std::move(textKey)) {
    form.Members.push_back(this);
}

void Control::Enabled(bool enabled) {
    if (IsEnabled == enabled) return;
    IsEnabled = enabled;
    Changed.Raise();
}

void Control::Visible(bool visible) {
    if (IsVisible == visible) return;
    IsVisible = visible;
    Changed.Raise();
}

void Control::ToolTip(std::string text) {
    if (OwnToolTip == text) return;
    OwnToolTip = std::move(text);
    Changed.Raise();
}

void Control::Caption(std::string text) {
    if (OwnCaption == text) return;
    OwnCaption = std::move(text);
    Changed.Raise();
}

void Control::Wording(std::string textKey, std::string defaultCaption) {
    TextKey(std::move(textKey));
    Caption(std::move(defaultCaption));
}

bool Control::SetValueText(std::string_view /*text*/) {
    return false;
}

bool Control::RunHandler(std::string_view /*event*/) {
    return false;
}

bool Control::SetFocus() {
    if (!IsEnabled || !IsVisible) return false;
    Parent.Focus(*this);
    return true;
}

bool Label::SetValueText(std::string_view text) {
    Caption(std::string(text));
    return true;
}

void Label::Press() {
    if (Enabled()) Click.Raise();
}

bool Label::RunHandler(std::string_view event) {
    return RunIfNamed(event, "Click", Click);
}

void CommandButton::Press() {
    if (Enabled()) Click.Raise();
}

bool CommandButton::RunHandler(std::string_view event) {
    return RunIfNamed(event, "Click", Click);
}

void CheckBox::Value(int32_t value) {
    const bool ticked = value != 0;
    if (Ticked == ticked) return;
    Ticked = ticked;
    Changed.Raise();
    Click.Raise();
}

bool CheckBox::SetValueText(std::string_view text) {
    int32_t value = 0;
    if (!ReadWhole(text, value)) return false;
    Value(value);
    return true;
}

void CheckBox::Press() {
    if (Enabled()) Value(1 - Value());
}

bool CheckBox::RunHandler(std::string_view event) {
    return RunIfNamed(event, "Click", Click);
}

int32_t OptionGroup::Selected() const {
    const auto found = std::ranges::find_if(Members, [](const OptionButton* each) { return each->Value(); });
    return found == Members.end() ? -1 : (*found)->Index();
}

OptionButton::OptionButton(Form& form, OptionGroup& group, std::string name, int32_t index,
                           std::string textKey)
    : Control(form, std::move(name), index, std::move(textKey)), Group(group) {
    Group.Members.push_back(this);
}

void OptionButton::Value(bool value) {
    if (IsSet == value) return;
    IsSet = value;
    if (value) {
        for (OptionButton* other : Group.Members) {
            if (other != this) other->Value(false);
        }
    }
    Changed.Raise();
    if (value) Click.Raise();
}

bool OptionButton::SetValueText(std::string_view text) {
    int32_t value = 0;
    if (!ReadWhole(text, value)) return false;
    Value(value != 0);
    return true;
}

void OptionButton::Press() {
    if (Enabled()) Value(true);
}

bool OptionButton::RunHandler(std::string_view event) {
    return RunIfNamed(event, "Click", Click);
}

void TextBox::Text(std::string text) {
    if (OwnText == text) return;
    OwnText = std::move(text);
    Changed.Raise();
    Change.Raise();
}

bool TextBox::RunValidate() {
    return Validate && Validate();
}

bool TextBox::SetValueText(std::string_view text) {
    const std::string before = OwnText;
    Text(std::string(text));
    if (!RunValidate()) return true;
    Text(before);
    return false;
}

void TextBox::Press() {
    if (Enabled()) Click.Raise();
}

bool TextBox::RunHandler(std::string_view event) {
    if (!EqualIgnoringCase(event, "Validate")) {
        return RunIfNamed(event, "Change", Change) || RunIfNamed(event, "Click", Click);
    }
    RunValidate();
    return true;
}

void ListBox::Clear() {
    OwnItems.clear();
    Index_ = -1;
    Changed.Raise();
}

void ListBox::AddItem(std::string text, int64_t data) {
    OwnItems.push_back({std::move(text), data, false});
    Changed.Raise();
}

void ListBox::ItemText(int32_t index, std::string text) {
    OwnItems.at(static_cast<size_t>(index)).Text = std::move(text);
    Changed.Raise();
}

void ListBox::Items(std::vector<ListItem> items) {
    OwnItems = std::move(items);
    Index_ = -1;
    Changed.Raise();
}

void ListBox::InsertItem(int32_t index, std::string text) {
    OwnItems.insert(OwnItems.begin() + index, ListItem{std::move(text)});
    if (Index_ >= index) ++Index_;
    Changed.Raise();
}

void ListBox::RemoveItem(int32_t index) {
    OwnItems.erase(OwnItems.begin() + index);
    if (Index_ == index) {
        Index_ = -1;
    } else if (Index_ > index) {
        --Index_;
    }
    Changed.Raise();
}

bool ListBox::ListIndex(int32_t index) {
    return index == Index_ || Select(index);
}

bool ListBox::Select(int32_t index) {
    if (index < 0 || static_cast<size_t>(index) >= OwnItems.size()) return false;
    for (ListItem& item : OwnItems) item.Selected = false;
    OwnItems[static_cast<size_t>(index)].Selected = true;
    Index_ = index;
    Changed.Raise();
    Click.Raise();
    return true;
}

bool ListBox::SetValueText(std::string_view text) {
    int32_t index = 0;
    return ReadWhole(text, index) && ListIndex(index);
}

bool ListBox::RunHandler(std::string_view event) {
    return RunIfNamed(event, "Click", Click);
}

bool MultiListBox::Selected(int32_t index, bool selected) {
    if (index < 0 || static_cast<size_t>(index) >= OwnItems.size()) return false;
    bool& present = OwnItems[static_cast<size_t>(index)].Selected;
    if (present == selected && index == Index_) return true;
    present = selected;
    Index_ = index;
    Changed.Raise();
    Click.Raise();
    return true;
}

void MultiListBox::SelectExactly(std::span<const int32_t> indices) {
    std::vector<bool> wanted(OwnItems.size());
    for (const int32_t index : indices) {
        if (index >= 0 && static_cast<size_t>(index) < wanted.size())
            wanted[static_cast<size_t>(index)] = true;
    }
    bool changed = false;
    for (size_t i = 0; i < wanted.size(); ++i) {
        changed = changed || OwnItems[i].Selected != wanted[i];
        OwnItems[i].Selected = wanted[i];
    }
    if (!changed) return;
    Changed.Raise();
    Click.Raise();
}

int32_t MultiListBox::SelCount() const {
    return static_cast<int32_t>(std::ranges::count(OwnItems, true, &ListItem::Selected));
}

std::vector<ListItem> MultiListBox::TakeSelected() {
    std::vector<ListItem> taken;
    std::vector<ListItem> left;
    for (ListItem& item : OwnItems) (item.Selected ? taken : left).push_back(std::move(item));
    Items(std::move(left));
    return taken;
}

Slider::Slider(Form& form, std::string name, int32_t index, int32_t minimum, int32_t maximum,
               std::string textKey)
    : Control(form, std::move(name), index, std::move(textKey)),
      Low(minimum),
      High(maximum),
      OwnValue(std::clamp(0, minimum, maximum)),
      Settled(OwnValue) {}

void Slider::Value(int32_t value) {
    Drag(value);
    if (Settled == OwnValue) return;
    Settled = OwnValue;
    Change.Raise();
}

void Slider::Drag(int32_t value) {
    const int32_t inRange = std::clamp(value, Low, High);
    if (inRange == OwnValue) return;
    OwnValue = inRange;
    Changed.Raise();
    Scroll.Raise();
}

bool Slider::SetValueText(std::string_view text) {
    int32_t value = 0;
    if (!ReadWhole(text, value)) return false;
    Value(value);
    return true;
}

bool Slider::RunHandler(std::string_view event) {
    return RunIfNamed(event, "Change", Change) || RunIfNamed(event, "Scroll", Scroll);
}

void TabStrip::AddTab(Tab tab) {
    OwnTabs.push_back(std::move(tab));
    Changed.Raise();
}

void TabStrip::Texts(size_t index, std::string caption, std::string toolTip) {
    Tab& tab = OwnTabs.at(index);
    tab.Caption = std::move(caption);
    tab.ToolTip = std::move(toolTip);
    Changed.Raise();
}

bool TabStrip::Select(std::string_view key) {
    const auto found =
        std::ranges::find_if(OwnTabs, [key](const Tab& each) { return EqualIgnoringCase(each.Key, key); });
    if (found == OwnTabs.end()) return false;
    const auto index = static_cast<size_t>(found - OwnTabs.begin());
    if (index == Current) return true;
    Current = index;
    Changed.Raise();
    Click.Raise();
    return true;
}

bool TabStrip::RunHandler(std::string_view event) {
    return RunIfNamed(event, "Click", Click);
}

TimerControl::TimerControl(Form& form, std::string name, int32_t intervalMs)
    : Control(form, std::move(name)), IntervalMs(intervalMs) {}

TimerControl::~TimerControl() = default;

void TimerControl::Attach(EventLoop& loop) {
    Backing = loop.NewTimer([this] { Timer.Raise(); });
    Apply();
}

void TimerControl::Detach() {
    Backing.reset();
}

void TimerControl::Running(bool on) {
    if (On == on) return;
    On = on;
    Apply();
    Changed.Raise();
}

void TimerControl::Interval(int32_t milliseconds) {
    if (IntervalMs == milliseconds) return;
    IntervalMs = milliseconds;
    Apply();
}

void TimerControl::Apply() {
    if (!Backing) return;
    if (On && IntervalMs > 0) {
        Backing->Start(std::chrono::milliseconds(IntervalMs), TimerPrecision::Coarse);
    } else {
        Backing->Stop();
    }
}

bool TimerControl::RunHandler(std::string_view event) {
    return RunIfNamed(event, "Timer", Timer);
}

}  // namespace Corvetape
