#include "core/controls/controls.h"

#include <gtest/gtest.h>

#include "core/controls/control_array.h"
#include "core/controls/event.h"
#include "core/controls/form.h"
#include "platform/event_loop.h"

namespace Corvetape {
namespace {

struct Window : Form {
    Window() : Form("frmTest", "Title", "300") {
        tbsTabs.AddTab({"ONE", "one", "0", "", ""});
        tbsTabs.AddTab({"TWO", "two", "301", "Two", "tip"});
        lstItems.AddItem("a", 7);
        lstItems.AddItem("b");
    }
    Label lblText{*this, "lblText"};
    CommandButton cmdGo{*this, "cmdGo", -1, "55"};
    ControlArray<CheckBox, 2> chkBox{*this, "chkBox"};
    OptionArray<3> optMode{*this, "optMode"};
    TextBox txtBox{*this, "txtBox"};
    ListBox lstItems{*this, "lstItems"};
    Slider sldLevel{*this, "sldLevel", -1, -10, 10};
    TabStrip tbsTabs{*this, "tbsTabs"};
};

/// Counts how often an event was raised.
struct Counter {
    explicit Counter(Event<>& event) {
        event.Connect([this] { ++Count; });
    }
    int Count = 0;
};

TEST(Event, HandlersRunInTheOrderOfTheirConnection) {
    Event<int> event;
    std::vector<int> seen;
    event.Connect([&](int value) { seen.push_back(value); });
    event.Connect([&](int value) { seen.push_back(value * 10); });
    event.Raise(1);
    EXPECT_EQ(seen, (std::vector<int>{1, 10}));
}

TEST(Event, AHandlerConnectedMeanwhileRunsFromTheNextTimeOn) {
    Event<> event;
    int late = 0;
    event.Connect([&] { event.Connect([&] { ++late; }); });
    event.Raise();
    EXPECT_EQ(late, 0);
    event.Raise();
    EXPECT_EQ(late, 1);
}

TEST(Form, FindsAControlByNameIgnoringCaseAndByIndex) {
    Window window;
    EXPECT_EQ(window.Find("CMDgo"), &window.cmdGo);
    EXPECT_EQ(window.Find("chkBox", 1), &window.chkBox[1]);
    EXPECT_EQ(window.Find("chkBox"), nullptr);
    EXPECT_EQ(window.Find("chkBox", 2), nullptr);
    EXPECT_EQ(window.Find("cmdNone"), nullptr);
}

TEST(Form, ListsItsControlsInTheOrderOfTheirMaking) {
    Window window;
    ASSERT_EQ(window.Controls().size(), size_t{11});
    EXPECT_EQ(window.Controls()[0]->Name(), "lblText");
    EXPECT_EQ(window.Controls()[3]->Index(), 1);
}

TEST(Form, ReportsAChangeOfCaptionAndStateOnce) {
    Window window;
    const Counter changed(window.Changed);
    window.Caption("New");
    window.Caption("New");
    EXPECT_EQ(changed.Count, 1);
    window.Enabled(false);
    window.Enabled(false);
    EXPECT_EQ(changed.Count, 2);
    EXPECT_EQ(window.TextKey(), "300");
}

TEST(Controls, WhatCanBeSeenIsReportedWhenItChanges) {
    Window window;
    const Counter changed(window.lblText.Changed);
    window.lblText.Enabled(false);
    window.lblText.Visible(false);
    window.lblText.ToolTip("tip");
    window.lblText.Caption("text");
    EXPECT_EQ(changed.Count, 4);
    window.lblText.Enabled(false);
    window.lblText.Visible(false);
    window.lblText.ToolTip("tip");
    EXPECT_TRUE(window.lblText.SetValueText("text"));
    EXPECT_EQ(changed.Count, 4);
    EXPECT_EQ(window.lblText.ValueText(), "text");
    EXPECT_EQ(window.cmdGo.TextKey(), "55");
}

TEST(CommandButton, APressIsAClickUnlessItIsDisabled) {
    Window window;
    const Counter clicks(window.cmdGo.Click);
    window.cmdGo.Press();
    window.cmdGo.Enabled(false);
    window.cmdGo.Press();
    EXPECT_EQ(clicks.Count, 1);
    EXPECT_FALSE(window.cmdGo.SetValueText("1"));
}

TEST(CheckBox, SettingAnotherValueRunsItsHandlerWhoeverSetsIt) {
    Window window;
    CheckBox& box = window.chkBox[0];
    const Counter clicks(box.Click);
    box.Value(1);
    box.Value(2);
    EXPECT_EQ(clicks.Count, 1);
    box.Press();
    EXPECT_EQ(box.Value(), 0);
    EXPECT_TRUE(box.SetValueText("1"));
    EXPECT_EQ(clicks.Count, 3);
    EXPECT_EQ(box.ValueText(), "1");
    EXPECT_FALSE(box.SetValueText("yes"));
    box.Enabled(false);
    box.Press();
    EXPECT_EQ(box.Value(), 1);
}

TEST(OptionButton, SettingOneClearsTheOthersWithoutTheirHandlers) {
    Window window;
    const Counter first(window.optMode[0].Click);
    const Counter second(window.optMode[1].Click);
    EXPECT_EQ(window.optMode.Selected(), -1);
    window.optMode[0].Press();
    window.optMode[1].Value(true);
    EXPECT_EQ(window.optMode.Selected(), 1);
    EXPECT_FALSE(window.optMode[0].Value());
    EXPECT_EQ(first.Count, 1);
    EXPECT_EQ(second.Count, 1);
    EXPECT_TRUE(window.optMode[1].SetValueText("0"));
    EXPECT_EQ(window.optMode.Selected(), -1);
    EXPECT_EQ(second.Count, 1);
    EXPECT_FALSE(window.optMode[1].SetValueText(""));
}

TEST(TextBox, AChangeRunsWhenTheTextDiffers) {
    Window window;
    const Counter changes(window.txtBox.Change);
    window.txtBox.Text("a");
    window.txtBox.Text("a");
    EXPECT_EQ(changes.Count, 1);
}

TEST(TextBox, ARefusedTextIsTakenBack) {
    Window window;
    window.txtBox.Text("5");
    window.txtBox.Validate = [&] { return window.txtBox.Text() == "bad"; };
    EXPECT_FALSE(window.txtBox.SetValueText("bad"));
    EXPECT_EQ(window.txtBox.Text(), "5");
    EXPECT_TRUE(window.txtBox.SetValueText("6"));
    EXPECT_EQ(window.txtBox.ValueText(), "6");
}

TEST(ListBox, SelectingAnotherEntryIsAClick) {
    Window window;
    const Counter clicks(window.lstItems.Click);
    EXPECT_EQ(window.lstItems.ListIndex(), -1);
    EXPECT_TRUE(window.lstItems.ListIndex(1));
    EXPECT_TRUE(window.lstItems.ListIndex(1));
    EXPECT_EQ(clicks.Count, 1);
    EXPECT_TRUE(window.lstItems.Select(1));
    EXPECT_EQ(clicks.Count, 2);
    EXPECT_FALSE(window.lstItems.ListIndex(2));
    EXPECT_FALSE(window.lstItems.Select(-1));
    EXPECT_EQ(window.lstItems.ListIndex(), 1);
    EXPECT_TRUE(window.lstItems.SetValueText("0"));
    EXPECT_FALSE(window.lstItems.SetValueText("x"));
    EXPECT_EQ(window.lstItems.ValueText(), "0");
}

TEST(MultiListBox, SelectsEntriesBesideOneAnother) {
    Form form("frm", "");
    MultiListBox list(form, "lst");
    for (const char* text : {"a", "b", "c", "d"}) list.AddItem(text);
    int clicks = 0;
    list.Click.Connect([&] { ++clicks; });
    list.Select(1);
    list.Selected(3, true);
    list.Selected(3, true);
    EXPECT_EQ(list.SelCount(), 2);
    EXPECT_EQ(list.ListIndex(), 3);
    EXPECT_EQ(clicks, 2);
    list.Select(0);  // a plain click leaves the others
    EXPECT_EQ(list.SelCount(), 1);
    EXPECT_FALSE(list.Selected(4, true));
    EXPECT_FALSE(list.Selected(-1, true));
}

TEST(MultiListBox, TakesAWholeSelectionAtOnce) {
    Form form("frm", "");
    MultiListBox list(form, "lst");
    for (const char* text : {"a", "b", "c", "d"}) list.AddItem(text);
    int clicks = 0;
    list.Click.Connect([&] { ++clicks; });
    const std::vector<int32_t> wanted = {1, 2, 7, -1};
    list.SelectExactly(wanted);
    list.SelectExactly(wanted);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(list.SelCount(), 2);
    list.SelectExactly({});
    EXPECT_EQ(list.SelCount(), 0);
    EXPECT_EQ(clicks, 2);
}

TEST(MultiListBox, KeepsTheSelectionOnItsEntriesWhenOthersComeAndGo) {
    Form form("frm", "");
    MultiListBox list(form, "lst");
    for (const char* text : {"a", "c", "d"}) list.AddItem(text);
    list.SelectExactly(std::vector<int32_t>{1, 2});
    list.InsertItem(1, "b");
    list.RemoveItem(0);
    const std::vector<ListItem> taken = list.TakeSelected();
    ASSERT_EQ(taken.size(), 2U);
    EXPECT_EQ(taken[0].Text, "c");
    EXPECT_EQ(taken[1].Text, "d");
    ASSERT_EQ(list.Items().size(), 1U);
    EXPECT_EQ(list.Items()[0].Text, "b");
    EXPECT_EQ(list.ListIndex(), -1);
}

TEST(ListBox, EntriesKeepTheirDataAndClearingSelectsNone) {
    Window window;
    window.lstItems.ListIndex(0);
    window.lstItems.ItemText(0, "new");
    EXPECT_EQ(window.lstItems.Items()[0].Text, "new");
    EXPECT_EQ(window.lstItems.Items()[0].Data, 7);
    window.lstItems.Clear();
    EXPECT_EQ(window.lstItems.ListIndex(), -1);
    EXPECT_TRUE(window.lstItems.Items().empty());
}

TEST(Slider, AValueIsBroughtIntoTheRange) {
    Window window;
    EXPECT_EQ(window.sldLevel.Value(), 0);
    window.sldLevel.Value(99);
    EXPECT_EQ(window.sldLevel.Value(), 10);
    EXPECT_TRUE(window.sldLevel.SetValueText("-99"));
    EXPECT_EQ(window.sldLevel.ValueText(), "-10");
    EXPECT_FALSE(window.sldLevel.SetValueText("loud"));
}

TEST(Slider, DraggingScrollsAndLettingGoChanges) {
    Window window;
    const Counter scrolls(window.sldLevel.Scroll);
    const Counter changes(window.sldLevel.Change);
    window.sldLevel.Drag(3);
    EXPECT_EQ(scrolls.Count, 1);
    EXPECT_EQ(changes.Count, 0);
    window.sldLevel.Value(3);
    EXPECT_EQ(scrolls.Count, 1);
    EXPECT_EQ(changes.Count, 1);
    window.sldLevel.Value(3);
    EXPECT_EQ(changes.Count, 1);
}

TEST(TabStrip, SelectsByKey) {
    Window window;
    const Counter clicks(window.tbsTabs.Click);
    EXPECT_TRUE(window.tbsTabs.Select("TWO"));
    EXPECT_TRUE(window.tbsTabs.SetValueText("TWO"));
    EXPECT_EQ(clicks.Count, 1);
    EXPECT_FALSE(window.tbsTabs.Select("THREE"));
    EXPECT_EQ(window.tbsTabs.SelectedKey(), "TWO");
}

TEST(TabStrip, FindsATabByItsKeyIgnoringCaseAndKeepsTheKeyAsItWasAdded) {
    Window window;
    EXPECT_EQ(window.tbsTabs.Selected(), nullptr);
    EXPECT_TRUE(window.tbsTabs.Select("two"));
    EXPECT_EQ(window.tbsTabs.SelectedKey(), "TWO");
    ASSERT_NE(window.tbsTabs.Selected(), nullptr);
    EXPECT_EQ(window.tbsTabs.Selected()->Tag, "two");
    const Counter clicks(window.tbsTabs.Click);
    EXPECT_TRUE(window.tbsTabs.Select("Two"));
    EXPECT_EQ(clicks.Count, 0);
}

TEST(TabStrip, EachTabHasItsTexts) {
    Window window;
    const Counter changed(window.tbsTabs.Changed);
    EXPECT_EQ(window.tbsTabs.Tabs()[0].TextKey, "0");
    EXPECT_EQ(window.tbsTabs.Tabs()[1].Caption, "Two");
    window.tbsTabs.Texts(0, "One", "");
    EXPECT_EQ(window.tbsTabs.Tabs()[0].Caption, "One");
    EXPECT_EQ(changed.Count, 1);
}

/// A timer that only remembers what it was told.
struct NotedTimer : LoopTimer {
    explicit NotedTimer(std::vector<std::string>& notes) : Notes(notes) {}
    void Start(std::chrono::milliseconds interval, TimerPrecision) override {
        Notes.push_back("start " + std::to_string(interval.count()));
    }
    void Stop() override { Notes.push_back("stop"); }
    bool Active() const override { return false; }
    std::vector<std::string>& Notes;
};

struct NotedLoop : EventLoop {
    std::unique_ptr<LoopTimer> NewTimer(std::function<void()> fired) override {
        Fired = std::move(fired);
        return std::make_unique<NotedTimer>(Notes);
    }
    void Post(std::function<void()>) override {}
    void ProcessEvents() override {}
    void Sleep(std::chrono::milliseconds) override {}
    void Run() override {}
    void Quit() override {}
    std::function<void()> Fired;
    std::vector<std::string> Notes;
};

TEST(TimerControl, RemembersItsStateUntilItHasALoop) {
    NotedLoop loop;
    Form form("frmTest", "");
    TimerControl timer(form, "tmrTest", 500);
    const Counter ticks(timer.Timer);
    timer.Running(true);
    EXPECT_EQ(timer.ValueText(), "1");
    timer.Attach(loop);
    loop.Fired();
    EXPECT_EQ(ticks.Count, 1);
    timer.Interval(200);
    timer.Interval(0);
    timer.Interval(100);
    timer.Running(false);
    EXPECT_EQ(loop.Notes, (std::vector<std::string>{"start 500", "start 200", "stop", "start 100", "stop"}));
    timer.Detach();
    timer.Running(true);
    EXPECT_EQ(loop.Notes.size(), size_t{5});
}

}  // namespace
}  // namespace Corvetape
