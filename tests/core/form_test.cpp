#include "core/controls/form.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/controls/control_array.h"
#include "core/controls/form_parts.h"
#include "core/controls/open_forms.h"

namespace Corvetape {
namespace {

struct Window : Form {
    Window() : Form("frmTest", "Title") {}
    CommandButton cmdGo{*this, "cmdGo"};
    ControlArray<CommandButton, 2> cmdPick{*this, "cmdPick"};
    CheckBox chkBox{*this, "chkBox"};
    TextBox txtBox{*this, "txtBox"};
    Slider sldLevel{*this, "sldLevel", -1, 0, 10};
    SparseControlArray<MenuItem, 10, 20> mnuItem{*this, "mnuItem"};
};

bool Call(const Form& form, const char* method, std::vector<MethodArgument> arguments = {}) {
    return form.Methods.Call(method, arguments);
}

TEST(Methods, AreCalledByNameIgnoringCase) {
    Window window;
    int calls = 0;
    window.Methods.Add("Quit", [&calls] { ++calls; });
    EXPECT_TRUE(Call(window, "qUIT"));
    EXPECT_FALSE(Call(window, "Exit"));
    EXPECT_EQ(calls, 1);
}

TEST(Methods, TakeWholeNumbersAndTexts) {
    Window window;
    std::string heard;
    window.Methods.Add<int32_t, std::string>(
        "Add", [&heard](int32_t list, const std::string& entry) { heard = std::to_string(list) + entry; });
    EXPECT_TRUE(Call(window, "Add", {1, "song"}));
    EXPECT_EQ(heard, "1song");
    EXPECT_TRUE(Call(window, "Add", {"2", 7}));
    EXPECT_EQ(heard, "27");
}

TEST(Methods, WithArgumentsThatDoNotFitAreNotCalled) {
    Window window;
    int calls = 0;
    window.Methods.Add<int32_t>("Pick", [&calls](int32_t) { ++calls; });
    EXPECT_FALSE(Call(window, "Pick"));
    EXPECT_FALSE(Call(window, "Pick", {1, 2}));
    EXPECT_FALSE(Call(window, "Pick", {"one"}));
    EXPECT_EQ(calls, 0);
}

TEST(PublishedHandlers, RunWithoutChangingTheValue) {
    Window window;
    int clicks = 0;
    window.chkBox.Click.Connect([&clicks] { ++clicks; });
    window.PublishHandler("chkBox_Click");
    window.chkBox.Enabled(false);
    EXPECT_TRUE(Call(window, "CHKBOX_click"));
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(window.chkBox.Value(), 0);
}

TEST(PublishedHandlers, OfAnArrayTakeTheIndex) {
    Window window;
    std::string picked;
    for (CommandButton& button : window.cmdPick) {
        button.Click.Connect([&] { picked += std::to_string(button.Index()); });
    }
    window.PublishHandler("cmdPick_Click");
    EXPECT_TRUE(Call(window, "cmdPick_Click", {1}));
    EXPECT_FALSE(Call(window, "cmdPick_Click"));
    EXPECT_FALSE(Call(window, "cmdPick_Click", {2}));
    EXPECT_FALSE(Call(window, "cmdPick_Click", {"1"}));
    EXPECT_FALSE(Call(window, "cmdPick_Click", {1, 1}));
    EXPECT_EQ(picked, "1");
}

TEST(PublishedHandlers, ReachEveryEventOfTheirControl) {
    Window window;
    std::string heard;
    window.txtBox.Validate = [&heard] {
        heard += "validate ";
        return false;
    };
    window.sldLevel.Scroll.Connect([&heard] { heard += "scroll "; });
    window.sldLevel.Change.Connect([&heard] { heard += "change "; });
    for (const char* handler : {"txtBox_Validate", "sldLevel_Scroll", "sldLevel_Change", "cmdGo_Scroll"}) {
        window.PublishHandler(handler);
    }
    EXPECT_TRUE(Call(window, "txtBox_Validate"));
    EXPECT_TRUE(Call(window, "sldLevel_Scroll"));
    EXPECT_TRUE(Call(window, "sldLevel_Change"));
    EXPECT_FALSE(Call(window, "cmdGo_Scroll"));
    EXPECT_EQ(heard, "validate scroll change ");
}

TEST(PublishedHandlers, AreTheOnlyOnesThatCanBeCalled) {
    const Window window;
    EXPECT_FALSE(Call(window, "cmdGo_Click"));
}

TEST(Focus, GoesToAControlThatIsEnabledAndVisible) {
    Window window;
    int moves = 0;
    window.FocusMoved.Connect([&moves] { ++moves; });
    EXPECT_EQ(window.Focused(), nullptr);
    EXPECT_TRUE(window.cmdGo.SetFocus());
    EXPECT_EQ(window.Focused(), &window.cmdGo);
    window.txtBox.Enabled(false);
    window.chkBox.Visible(false);
    EXPECT_FALSE(window.txtBox.SetFocus());
    EXPECT_FALSE(window.chkBox.SetFocus());
    EXPECT_EQ(window.Focused(), &window.cmdGo);
    EXPECT_EQ(moves, 1);
}

TEST(Form, ReportsAChangeOfWindowStateAndPlaceOnce) {
    Window window;
    int changes = 0;
    window.Changed.Connect([&changes] { ++changes; });
    window.State(WindowState::Minimised);
    window.State(WindowState::Minimised);
    window.Place({10, 20, 300, 400});
    window.Place({10, 20, 300, 400});
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(window.State(), WindowState::Minimised);
    EXPECT_EQ(window.Place().Height, 400);
}

TEST(OpenForms, AreListedInTheOrderOfTheirOpeningWhileTheyAreOpen) {
    Form first("frmFirst", "");
    Form second("frmSecond", "");
    OpenForms forms;
    const Connection open = forms.Open(first);
    {
        const Connection shortly = forms.Open(second);
        EXPECT_EQ(forms.InOrder(), (std::vector<Form*>{&first, &second}));
        EXPECT_EQ(forms.Find("frmSecond"), &second);
    }
    EXPECT_EQ(forms.InOrder(), std::vector<Form*>{&first});
    EXPECT_EQ(forms.Find("frmSecond"), nullptr);
}

TEST(SparseArrays, AreReachedByTheirOwnIndices) {
    Window window;
    EXPECT_EQ(window.mnuItem[20].Index(), 20);
    EXPECT_EQ(window.Find("mnuItem", 10), &window.mnuItem[10]);
    EXPECT_EQ(window.Find("mnuItem", 0), nullptr);
}

TEST(MenuItems, ThatSeparateOthersCannotBeChosen) {
    Window window;
    int clicks = 0;
    window.mnuItem[10].Click.Connect([&clicks] { ++clicks; });
    window.mnuItem[10].Press();
    window.mnuItem[10].Caption(std::string(MenuItem::SeparatorCaption));
    window.mnuItem[10].Press();
    EXPECT_EQ(clicks, 1);
}

TEST(BrowserViews, ReportWhatTheyAreSentTo) {
    Form form("frm", "");
    BrowserView view(form, "objWebBrowser");
    std::string asked;
    view.NavigateAsked.Connect([&] { asked = view.Address(); });
    view.Navigate("about:blank");
    EXPECT_EQ(asked, "about:blank");
}

}  // namespace
}  // namespace Corvetape
