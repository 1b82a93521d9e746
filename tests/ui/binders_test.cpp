// What the user does to a widget reaches its control, and what anybody does to the control shows.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QWheelEvent>
#include <QWindow>
#include <memory>

#include "core/controls/control_array.h"
#include "ui/binders.h"
#include "ui/words.h"

namespace Corvetape::Test {
namespace {

struct Sample : Form {
    Sample() : Form("frmSample", "Sample") {}
    CheckBox chkOne{*this, "chkOne"};
    OptionArray<2> optTwo{*this, "optTwo"};
    CommandButton cmdThree{*this, "cmdThree"};
    TextBox txtFour{*this, "txtFour"};
    ComboBox cmbFive{*this, "cmbFive"};
    MultiListBox lstSix{*this, "lstSix"};
    Label lblEight{*this, "lblEight"};
    Slider sldSeven{*this, "sldSeven", -1, 0, 10};
};

TEST(Binders, ACheckBoxPressedChangesItsControlAndBack) {
    Sample form;
    const std::unique_ptr<QCheckBox> widget(BoundTo(form.chkOne));
    widget->click();
    EXPECT_EQ(form.chkOne.Value(), 1);
    form.chkOne.Value(0);
    EXPECT_FALSE(widget->isChecked());
}

TEST(Binders, AControlThatTakesItsValueBackTakesItBackInTheWidget) {
    Sample form;
    form.chkOne.Click.Connect([&form] { form.chkOne.Value(0); });
    const std::unique_ptr<QCheckBox> widget(BoundTo(form.chkOne));
    widget->click();
    EXPECT_FALSE(widget->isChecked());
}

TEST(Binders, OptionButtonsFollowTheGroupOfTheirControls) {
    Sample form;
    const std::unique_ptr<QRadioButton> first(BoundTo(form.optTwo[0]));
    const std::unique_ptr<QRadioButton> second(BoundTo(form.optTwo[1]));
    first->click();
    second->click();
    EXPECT_EQ(form.optTwo.Selected(), 1);
    EXPECT_FALSE(first->isChecked());
    second->click();
    EXPECT_TRUE(second->isChecked());  // a second press does not clear it
    EXPECT_EQ(first->objectName(), "optTwo_0");
}

TEST(Binders, AButtonPressesItsControl) {
    Sample form;
    int pressed = 0;
    form.cmdThree.Click.Connect([&pressed] { ++pressed; });
    const std::unique_ptr<QPushButton> widget(BoundTo(form.cmdThree));
    widget->click();
    form.cmdThree.Enabled(false);
    widget->click();
    EXPECT_EQ(pressed, 1);
    EXPECT_FALSE(widget->isEnabled());
}

TEST(Binders, ATextGoesOverWhileItIsTypedAndIsValidatedWhenItIsLeft) {
    Sample form;
    int validated = 0;
    form.txtFour.Validate = [&] { return ++validated, form.txtFour.Text() == "bad"; };
    const std::unique_ptr<QLineEdit> widget(BoundTo(form.txtFour));
    widget->setText("");
    for (const char* text : {"ba", "bad"}) emit widget->textEdited(text);
    EXPECT_EQ(form.txtFour.Text(), "bad");
    EXPECT_EQ(validated, 0);
    emit widget->editingFinished();
    EXPECT_EQ(validated, 1);
    EXPECT_TRUE(widget->property("refused").toBool());
    form.txtFour.Text("good");
    EXPECT_EQ(widget->text(), "good");
    emit widget->editingFinished();
    EXPECT_FALSE(widget->property("refused").toBool());
}

TEST(Binders, AComboBoxShowsTheItemsAndSelectsThem) {
    Sample form;
    form.cmbFive.AddItem("one");
    const std::unique_ptr<QComboBox> widget(BoundTo(form.cmbFive));
    form.cmbFive.AddItem("two");
    ASSERT_EQ(widget->count(), 2);
    EXPECT_EQ(widget->currentIndex(), -1);
    emit widget->activated(1);
    EXPECT_EQ(form.cmbFive.ListIndex(), 1);
    form.cmbFive.ListIndex(0);
    EXPECT_EQ(widget->currentText(), "one");
}

TEST(Binders, AListOfManySelectionsFollowsBothWays) {
    Sample form;
    for (const char* text : {"one", "two", "three"}) form.lstSix.AddItem(text);
    const std::unique_ptr<QListView> widget(BoundTo(form.lstSix));
    widget->selectAll();
    EXPECT_EQ(form.lstSix.SelCount(), 3);
    form.lstSix.SelectExactly(std::vector<int32_t>{1});
    ASSERT_EQ(widget->selectionModel()->selectedIndexes().size(), 1);
    EXPECT_EQ(widget->selectionModel()->selectedIndexes()[0].row(), 1);
}

TEST(Binders, ASliderMovesItsControlAndFollowsIt) {
    Sample form;
    const std::unique_ptr<QSlider> widget(BoundTo(form.sldSeven));
    widget->setValue(7);
    EXPECT_EQ(form.sldSeven.Value(), 7);
    form.sldSeven.Value(3);
    EXPECT_EQ(widget->value(), 3);
}

/// A notch of the wheel with the pointer in the middle of a widget; true if the widget takes it.
bool TakesWheel(QWidget& widget) {
    const QPointF middle = QRectF(widget.rect()).center();
    QWheelEvent wheel(middle, widget.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &wheel);
    return wheel.isAccepted();
}

TEST(Binders, TheWheelChangesNoListAndNoSliderThatWasNotClicked) {
    Sample form;
    for (const char* text : {"one", "two", "three"}) form.cmbFive.AddItem(text);
    form.cmbFive.ListIndex(0);
    form.sldSeven.Value(3);
    QWidget page;
    QComboBox* const list = BoundTo(form.cmbFive);
    QSlider* const slider = BoundTo(form.sldSeven);
    for (QWidget* widget : {static_cast<QWidget*>(list), static_cast<QWidget*>(slider)}) {
        widget->setParent(&page);
        EXPECT_FALSE(TakesWheel(*widget)) << widget->objectName().toStdString();
        EXPECT_NE(widget->focusPolicy(), Qt::WheelFocus);
    }
    EXPECT_EQ(form.cmbFive.ListIndex(), 0);
    EXPECT_EQ(form.sldSeven.Value(), 3);
    page.show();
    QApplication::setActiveWindow(&page);
    slider->setFocus();
    ASSERT_TRUE(slider->hasFocus());
    EXPECT_TRUE(TakesWheel(*slider));
    EXPECT_NE(form.sldSeven.Value(), 3);
}

TEST(Binders, ALineWithoutRoomSaysAllOfItInATip) {
    Sample form;
    form.lblEight.Caption("A title with <b>marks</b> of a page");
    const std::unique_ptr<QLabel> widget(BoundToElided(form.lblEight));
    widget->resize(600, 20);
    widget->grab();
    EXPECT_TRUE(widget->toolTip().isEmpty());
    widget->resize(60, 20);
    widget->grab();
    EXPECT_EQ(widget->toolTip(), "<p>A title with &lt;b&gt;marks&lt;/b&gt; of a page</p>");
}

TEST(Binders, ATitleKeepsTheMarkOfAnUnsavedWindow) {
    QWidget window;
    window.setWindowTitle(TitleOf("One [*] two [*][*]"));
    window.show();
    EXPECT_EQ(window.windowHandle()->title().section(" - ", 0, 0), "One [*] two [*][*]");
}

TEST(Binders, AControlOutlivesItsWidget) {
    Sample form;
    BoundTo(form.chkOne)->deleteLater();
    std::unique_ptr<QCheckBox>(BoundTo(form.chkOne)).reset();
    form.chkOne.Value(1);  // nothing is there to show it
    EXPECT_EQ(form.chkOne.Value(), 1);
}

}  // namespace
}  // namespace Corvetape::Test
