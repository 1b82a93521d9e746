#include "core/controls/controls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/controls/control_array.h"
#include "core/controls/form.h"

namespace Corvetape::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Counts how often an event is raised.
template <typename EventType>
class Count {
 public:
    explicit Count(EventType& event) {
        event.Connect([this] { ++Times; });
    }
    int Times = 0;
};

TEST(Events, RunTheirHandlersInTheOrderOfConnecting) {
    Event<> event;
    std::string order;
    event.Connect([&order] { order += "a"; });
    event.Connect([&order] { order += "b"; });
    event.Raise();
    EXPECT_EQ(order, "ab");
}

TEST(Events, AHandlerConnectedByAHandlerRunsFromTheNextTimeOn) {
    Event<> event;
    int late = 0;
    bool connected = false;
    event.Connect([&] {
        if (!connected) event.Connect([&late] { ++late; });
        connected = true;
    });
    event.Raise();
    EXPECT_EQ(late, 0);
    event.Raise();
    EXPECT_EQ(late, 1);
}

TEST(Events, HandTheirArgumentsToEachHandler) {
    Event<int, std::string> event;
    std::vector<std::string> heard;
    for (int i = 0; i < 2; ++i) {
        event.Connect([&heard](int number, const std::string& text) {
            heard.push_back(std::to_string(number) + text);
        });
    }
    event.Raise(7, "x");
    EXPECT_THAT(heard, ElementsAre("7x", "7x"));
}

TEST(Controls, AreEnabledAndVisibleFromTheStartAndHaveNoIndex) {
    Form form("frm", "");
    const CheckBox box(form, "chkBox");
    EXPECT_TRUE(box.Enabled());
    EXPECT_TRUE(box.Visible());
    EXPECT_EQ(box.Index(), -1);
    EXPECT_EQ(box.TextKey(), "0");
    EXPECT_EQ(box.Caption(), "");
}

TEST(Controls, NotifyTheScreenOnlyOfARealChange) {
    Form form("frm", "");
    Label label(form, "lbl");
    const Count changes(label.Changed);
    label.Caption("a");
    label.Caption("a");
    label.ToolTip("t");
    label.ToolTip("t");
    label.Enabled(false);
    label.Enabled(false);
    label.Visible(false);
    label.Visible(false);
    EXPECT_EQ(changes.Times, 4);
}

TEST(Controls, OneWithoutAValueTakesNoText) {
    Form form("frm", "");
    CommandButton button(form, "cmd");
    EXPECT_FALSE(button.SetValueText("1"));
    EXPECT_EQ(button.ValueText(), "");
}

TEST(Labels, HaveTheirCaptionAsValue) {
    Form form("frm", "");
    Label label(form, "lbl");
    EXPECT_TRUE(label.SetValueText("quiet"));
    EXPECT_EQ(label.Caption(), "quiet");
    EXPECT_EQ(label.ValueText(), "quiet");
}

TEST(CommandButtons, RunTheirHandlerWhenPressed) {
    Form form("frm", "");
    CommandButton button(form, "cmd");
    const Count clicks(button.Click);
    button.Press();
    button.Press();
    EXPECT_EQ(clicks.Times, 2);
}

TEST(CommandButtons, DoNothingWhileDisabled) {
    Form form("frm", "");
    CommandButton button(form, "cmd");
    const Count clicks(button.Click);
    button.Enabled(false);
    button.Press();
    EXPECT_EQ(clicks.Times, 0);
}

TEST(CheckBoxes, RunTheirHandlerWhenTheValueChangesWhoeverSetsIt) {
    Form form("frm", "");
    CheckBox box(form, "chk");
    const Count clicks(box.Click);
    box.Value(1);
    EXPECT_EQ(clicks.Times, 1);
    EXPECT_TRUE(box.SetValueText("0"));
    EXPECT_EQ(clicks.Times, 2);
    box.Press();
    EXPECT_EQ(clicks.Times, 3);
    EXPECT_EQ(box.Value(), 1);
}

TEST(CheckBoxes, DoNotRunTheirHandlerForTheValueTheyHave) {
    Form form("frm", "");
    CheckBox box(form, "chk");
    const Count clicks(box.Click);
    box.Value(0);
    EXPECT_TRUE(box.SetValueText("0"));
    EXPECT_EQ(clicks.Times, 0);
}

TEST(CheckBoxes, HaveOnlyTwoValues) {
    Form form("frm", "");
    CheckBox box(form, "chk");
    box.Value(7);
    EXPECT_EQ(box.Value(), 1);
    EXPECT_EQ(box.ValueText(), "1");
}

TEST(CheckBoxes, ShowTheNewValueToTheirHandler) {
    Form form("frm", "");
    CheckBox box(form, "chk");
    int seen = -1;
    box.Click.Connect([&] { seen = box.Value(); });
    box.Press();
    EXPECT_EQ(seen, 1);
}

TEST(CheckBoxes, AreNotFlippedByAPressWhileDisabledButCanBeSet) {
    Form form("frm", "");
    CheckBox box(form, "chk");
    box.Enabled(false);
    box.Press();
    EXPECT_EQ(box.Value(), 0);
    box.Value(1);
    EXPECT_EQ(box.Value(), 1);
}

TEST(CheckBoxes, RefuseATextThatIsNoNumber) {
    Form form("frm", "");
    CheckBox box(form, "chk");
    for (const char* text : {"", "on", "1x", " 1", "1.0"}) EXPECT_FALSE(box.SetValueText(text)) << text;
    EXPECT_EQ(box.Value(), 0);
}

TEST(OptionButtons, OfAGroupOneAtMostIsSet) {
    Form form("frm", "");
    OptionArray<3> options(form, "opt");
    EXPECT_EQ(options.Selected(), -1);
    options[1].Value(true);
    EXPECT_EQ(options.Selected(), 1);
    options[2].Press();
    EXPECT_EQ(options.Selected(), 2);
    EXPECT_FALSE(options[1].Value());
}

TEST(OptionButtons, OfOtherGroupsStayAsTheyAre) {
    Form form("frm", "");
    OptionArray<2> first(form, "optFirst");
    OptionArray<2> second(form, "optSecond");
    first[0].Value(true);
    second[1].Value(true);
    EXPECT_EQ(first.Selected(), 0);
    EXPECT_EQ(second.Selected(), 1);
}

TEST(OptionButtons, RunTheirHandlerWhenSetAndNoneWhenCleared) {
    Form form("frm", "");
    OptionArray<2> options(form, "opt");
    const Count first(options[0].Click);
    const Count second(options[1].Click);
    options[0].Value(true);
    options[0].Value(true);
    options[1].Value(true);
    EXPECT_EQ(first.Times, 1);
    EXPECT_EQ(second.Times, 1);
    options[1].Value(false);
    EXPECT_EQ(second.Times, 1);
    EXPECT_EQ(options.Selected(), -1);
}

TEST(OptionButtons, HaveClearedTheOthersWhenTheirHandlerRuns) {
    Form form("frm", "");
    OptionArray<2> options(form, "opt");
    options[0].Value(true);
    int selected = -1;
    options[1].Click.Connect([&] { selected = options.Selected(); });
    options[1].Value(true);
    EXPECT_EQ(selected, 1);
}

TEST(OptionButtons, AreSetByATextButNotByAPressWhileDisabled) {
    Form form("frm", "");
    OptionArray<2> options(form, "opt");
    options[0].Enabled(false);
    options[0].Press();
    EXPECT_FALSE(options[0].Value());
    EXPECT_TRUE(options[0].SetValueText("1"));
    EXPECT_TRUE(options[0].Value());
    EXPECT_EQ(options[0].ValueText(), "1");
    EXPECT_EQ(options[1].ValueText(), "0");
    EXPECT_FALSE(options[1].SetValueText("yes"));
}

TEST(TextBoxes, RunChangeForAnotherTextOnly) {
    Form form("frm", "");
    TextBox box(form, "txt");
    const Count changes(box.Change);
    box.Text("a");
    box.Text("a");
    EXPECT_EQ(changes.Times, 1);
    EXPECT_EQ(box.ValueText(), "a");
}

TEST(TextBoxes, AreNotCheckedByRunningCodeThatSetsThem) {
    Form form("frm", "");
    TextBox box(form, "txt");
    box.Validate = [] { return true; };
    box.Text("anything");
    EXPECT_EQ(box.Text(), "anything");
}

TEST(TextBoxes, WithoutACheckTakeAnything) {
    Form form("frm", "");
    TextBox box(form, "txt");
    EXPECT_FALSE(box.RunValidate());
    EXPECT_TRUE(box.SetValueText("anything"));
}

TEST(TextBoxes, AreCheckedWhenAPersonSetsThemAndTakeARefusedTextBack) {
    Form form("frm", "");
    TextBox box(form, "txt");
    box.Text("5");
    std::string checked;
    box.Validate = [&] {
        checked = box.Text();
        return checked == "bad";
    };
    EXPECT_FALSE(box.SetValueText("bad"));
    EXPECT_EQ(checked, "bad");
    EXPECT_EQ(box.Text(), "5");
    EXPECT_TRUE(box.SetValueText("6"));
    EXPECT_EQ(box.Text(), "6");
}

TEST(ListBoxes, StartEmptyWithNothingSelected) {
    Form form("frm", "");
    const ListBox list(form, "lst");
    EXPECT_THAT(list.Items(), IsEmpty());
    EXPECT_EQ(list.ListIndex(), -1);
    EXPECT_EQ(list.ValueText(), "-1");
}

TEST(ListBoxes, KeepTextAndDataOfTheirEntries) {
    Form form("frm", "");
    ListBox list(form, "lst");
    list.AddItem("one", 11);
    list.AddItem("two");
    list.ItemText(1, "three");
    ASSERT_EQ(list.Items().size(), 2U);
    EXPECT_EQ(list.Items()[0].Data, 11);
    EXPECT_EQ(list.Items()[1].Text, "three");
    EXPECT_EQ(list.Items()[1].Data, 0);
}

TEST(ListBoxes, RunTheirHandlerWhenAnotherEntryIsSelected) {
    Form form("frm", "");
    ListBox list(form, "lst");
    list.AddItem("one");
    list.AddItem("two");
    const Count clicks(list.Click);
    EXPECT_TRUE(list.ListIndex(1));
    EXPECT_TRUE(list.ListIndex(1));
    EXPECT_EQ(clicks.Times, 1);
    EXPECT_TRUE(list.SetValueText("0"));
    EXPECT_EQ(clicks.Times, 2);
    EXPECT_EQ(list.ListIndex(), 0);
}

TEST(ListBoxes, ChoosingTheSelectedEntryAgainIsAClickToo) {
    Form form("frm", "");
    ListBox list(form, "lst");
    list.AddItem("one");
    const Count clicks(list.Click);
    EXPECT_TRUE(list.Select(0));
    EXPECT_TRUE(list.Select(0));
    EXPECT_EQ(clicks.Times, 2);
}

TEST(ListBoxes, RefuseAnEntryThatIsNotThere) {
    Form form("frm", "");
    ListBox list(form, "lst");
    list.AddItem("one");
    list.Select(0);
    const Count clicks(list.Click);
    EXPECT_FALSE(list.Select(-1));
    EXPECT_FALSE(list.ListIndex(1));
    EXPECT_FALSE(list.SetValueText("first"));
    EXPECT_EQ(list.ListIndex(), 0);
    EXPECT_EQ(clicks.Times, 0);
}

TEST(ListBoxes, ClearingSelectsNothingAndRunsNothing) {
    Form form("frm", "");
    ComboBox list(form, "cmb");
    list.AddItem("one");
    list.Select(0);
    const Count clicks(list.Click);
    list.Clear();
    EXPECT_EQ(list.ListIndex(), -1);
    EXPECT_EQ(clicks.Times, 0);
    list.AddItem("one");
    list.ListIndex(0);
    EXPECT_EQ(clicks.Times, 1);
}

TEST(Sliders, StartAtTheValueOfTheirRangeThatIsNearestToZero) {
    Form form("frm", "");
    EXPECT_EQ(Slider(form, "sld", -1, 100, 1000).Value(), 100);
    EXPECT_EQ(Slider(form, "sld", -1, -10, 0).Value(), 0);
    EXPECT_EQ(Slider(form, "sld", -1, -10, -5).Value(), -5);
}

TEST(Sliders, BringAValueIntoTheirRange) {
    Form form("frm", "");
    ScrollBar bar(form, "vsc", -1, 100, 1000);
    bar.Value(5000);
    EXPECT_EQ(bar.Value(), 1000);
    bar.Value(-3);
    EXPECT_EQ(bar.Value(), 100);
    EXPECT_TRUE(bar.SetValueText("250"));
    EXPECT_EQ(bar.ValueText(), "250");
    EXPECT_FALSE(bar.SetValueText("much"));
    EXPECT_EQ(bar.Value(), 250);
}

TEST(Sliders, ASetValueIsDraggedAndLetGo) {
    Form form("frm", "");
    Slider slider(form, "sld", -1, 0, 10);
    std::string order;
    slider.Scroll.Connect([&order] { order += "s"; });
    slider.Change.Connect([&order] { order += "c"; });
    slider.Value(3);
    slider.Value(3);
    EXPECT_EQ(order, "sc");
}

TEST(Sliders, DraggingOnlyScrollsUntilTheyAreLetGo) {
    Form form("frm", "");
    Slider slider(form, "sld", -1, 0, 10);
    std::string order;
    slider.Scroll.Connect([&order] { order += "s"; });
    slider.Change.Connect([&order] { order += "c"; });
    slider.Drag(3);
    slider.Drag(4);
    EXPECT_EQ(order, "ss");
    slider.Value(4);
    EXPECT_EQ(order, "ssc");
}

TEST(Sliders, SetToWhereTheyStartedHaveNotChanged) {
    Form form("frm", "");
    Slider slider(form, "sld", -1, 100, 1000);
    const Count changes(slider.Change);
    slider.Value(100);
    EXPECT_EQ(changes.Times, 0);
}

TEST(Sliders, DraggedBackToWhereTheyWereHaveNotChanged) {
    Form form("frm", "");
    Slider slider(form, "sld", -1, 0, 10);
    const Count changes(slider.Change);
    slider.Drag(3);
    slider.Drag(0);
    slider.Value(0);
    EXPECT_EQ(changes.Times, 0);
}

TEST(TabStrips, RunTheirHandlerWhenAnotherTabIsSelected) {
    Form form("frm", "");
    TabStrip tabs(form, "tbs");
    tabs.AddTab({"TAB_A", "", "0", "", ""});
    tabs.AddTab({"TAB_B", "", "0", "", ""});
    const Count clicks(tabs.Click);
    EXPECT_TRUE(tabs.Select("TAB_B"));
    EXPECT_TRUE(tabs.Select("TAB_B"));
    EXPECT_EQ(clicks.Times, 1);
    EXPECT_TRUE(tabs.SetValueText("TAB_A"));
    EXPECT_EQ(tabs.ValueText(), "TAB_A");
    EXPECT_EQ(clicks.Times, 2);
}

TEST(TabStrips, RefuseATabThatIsNotThere) {
    Form form("frm", "");
    TabStrip tabs(form, "tbs");
    tabs.AddTab({"TAB_A", "", "0", "", ""});
    EXPECT_FALSE(tabs.Select("TAB_C"));
    EXPECT_EQ(tabs.SelectedKey(), "");
}

TEST(TabStrips, FindATabByItsKeyIgnoringCase) {
    Form form("frm", "");
    TabStrip tabs(form, "tbs");
    tabs.AddTab({"TAB_A", "", "0", "", ""});
    EXPECT_TRUE(tabs.Select("tab_a"));
    EXPECT_EQ(tabs.SelectedKey(), "TAB_A");
}

TEST(ControlArrays, GiveEachMemberTheNameAndItsIndex) {
    Form form("frm", "");
    ControlArray<CheckBox, 3> boxes(form, "chk");
    int32_t expected = 0;
    for (const CheckBox& box : boxes) {
        EXPECT_EQ(box.Name(), "chk");
        EXPECT_EQ(box.Index(), expected++);
    }
    EXPECT_EQ(expected, 3);
    EXPECT_EQ(boxes.Size(), 3U);
}

TEST(ControlArrays, HandFurtherArgumentsToEachMember) {
    Form form("frm", "");
    ControlArray<Slider, 2> sliders(form, "sld", 5, 9);
    EXPECT_EQ(sliders[1].Minimum(), 5);
    EXPECT_EQ(sliders[1].Maximum(), 9);
}

TEST(Forms, FindAControlByNameAndIndexIgnoringCase) {
    Form form("frm", "");
    CheckBox single(form, "chkOne");
    ControlArray<Label, 2> labels(form, "lblMany");
    EXPECT_EQ(form.Find("CHKone"), &single);
    EXPECT_EQ(form.Find("lblmany", 1), &labels[1]);
    EXPECT_EQ(form.Find("lblMany"), nullptr);
    EXPECT_EQ(form.Find("chkOne", 0), nullptr);
    EXPECT_EQ(form.Find("chkTwo"), nullptr);
}

TEST(Forms, ListTheirControlsInTheOrderOfTheirMaking) {
    Form form("frm", "");
    CheckBox first(form, "chkFirst");
    OptionArray<2> options(form, "opt");
    EXPECT_THAT(form.Controls(), ElementsAre(&first, &options[0], &options[1]));
}

TEST(Forms, NotifyTheScreenOfTheirOwnChanges) {
    Form form("frm", "title");
    const Count changes(form.Changed);
    form.Caption("title");
    form.Enabled(true);
    EXPECT_EQ(changes.Times, 0);
    form.Caption("other");
    form.Enabled(false);
    EXPECT_EQ(changes.Times, 2);
    EXPECT_EQ(form.Caption(), "other");
    EXPECT_FALSE(form.Enabled());
}

}  // namespace
}  // namespace Corvetape::Test
