#include "ui/binders.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>

#include "ui/binding.h"
#include "ui/button_reading.h"
#include "ui/make.h"
#include "ui/shown_text.h"
#include "ui/words.h"

namespace Corvetape {

QString WidgetName(const Control& control) {
    const QString name = QString::fromStdString(control.Name());
    return control.Index() < 0 ? name : name + "_" + QString::number(control.Index());
}

void ShowCommon(const Control& control, QWidget& widget) {
    if (widget.objectName().isEmpty()) widget.setObjectName(WidgetName(control));
    const QString notBuilt = widget.property("notBuilt").toString();
    widget.setEnabled(control.Enabled() && notBuilt.isEmpty());
    // A widget that has no parent yet would become a window of its own.
    // One that is to be hidden says so all the same, or its layout would show it.
    const bool shows = widget.isHidden() && control.Visible() && widget.parentWidget();
    if (shows || !control.Visible()) widget.setVisible(control.Visible());
    widget.setToolTip(notBuilt.isEmpty() ? TipOf(QString::fromStdString(control.ToolTip())) : notBuilt);
}

namespace {

class WheelFilter : public QObject {
 public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Wheel || static_cast<QWidget*>(watched)->hasFocus()) return false;
        event->ignore();
        return true;
    }
};

}  // namespace

void LeaveWheelToPage(QWidget& widget) {
    widget.setFocusPolicy(Qt::StrongFocus);
    widget.installEventFilter(Make<WheelFilter>(&widget));
}

namespace {

template <typename Button>
void ShowCaption(const Control& control, Button& widget) {
    const QString caption = QString::fromStdString(control.Caption());
    // What is shown may have the mark of a key in it that the caption has not.
    if (widget.property("caption") == caption) return;
    widget.setProperty("caption", caption);
    widget.setText(caption);
}

/// What a click of the user does to a control that is set by clicking. The widget follows the control, also
/// if the control does not follow the click.
template <typename Button, typename ControlType>
void SendClicks(Button* widget, ControlType& control) {
    QObject::connect(widget, &QAbstractButton::clicked, [widget, &control] {
        control.Press();
        widget->setChecked(control.Value() != 0);
    });
}

void Mark(QLineEdit& field, bool refused) {
    if (field.property("refused").toBool() == refused) return;
    field.setProperty("refused", refused);
    field.style()->unpolish(&field);
    field.style()->polish(&field);
}

/// Validating may show a box, which takes the focus and so leaves the field once more.
void Leave(QLineEdit& field, TextBox& control) {
    if (field.property("leaving").toBool()) return;
    field.setProperty("leaving", true);
    const bool refused = control.RunValidate();
    field.setProperty("leaving", false);
    Mark(field, refused);
    if (refused) field.setFocus();
}

}  // namespace

QCheckBox* BoundTo(CheckBox& control) {
    auto* const widget = Make<QCheckBox>();
    SendClicks(widget, control);
    Follow(control, widget, [](const CheckBox& from, QCheckBox& to) {
        ShowCaption(from, to);
        to.setChecked(from.Value() != 0);
    });
    return widget;
}

QRadioButton* BoundTo(OptionButton& control) {
    QAccessible::installFactory(ReadButton);
    auto* const widget = Make<QRadioButton>();
    widget->setAutoExclusive(false);  // the group of the controls decides
    SendClicks(widget, control);
    Follow(control, widget, [](const OptionButton& from, QRadioButton& to) {
        ShowCaption(from, to);
        to.setChecked(from.Value());
    });
    return widget;
}

QPushButton* BoundTo(CommandButton& control) {
    auto* const widget = Make<QPushButton>();
    widget->setAutoDefault(false);
    QObject::connect(widget, &QPushButton::clicked, [&control] { control.Press(); });
    Follow(control, widget, [](const CommandButton& from, QPushButton& to) { ShowCaption(from, to); });
    return widget;
}

QPushButton* BoundToIcon(CommandButton& control) {
    auto* const widget = Make<QPushButton>();
    widget->setAutoDefault(false);
    widget->setProperty("small", true);
    widget->setIconSize({18, 18});
    QObject::connect(widget, &QPushButton::clicked, [&control] { control.Press(); });
    Follow(control, widget, [](const CommandButton& from, QPushButton& to) {
        const QString caption = QString::fromStdString(from.Caption());
        to.setAccessibleName(caption);
        if (to.toolTip().isEmpty()) to.setToolTip(TipOf(caption));
    });
    return widget;
}

namespace {

template <typename ControlType>
QPushButton* NewLink(ControlType& control) {
    auto* const widget = Make<QPushButton>();
    widget->setAutoDefault(false);
    widget->setProperty("link", true);
    widget->setCursor(Qt::PointingHandCursor);
    QObject::connect(widget, &QPushButton::clicked, [&control] { control.Press(); });
    return widget;
}

}  // namespace

QPushButton* BoundToLink(Label& control) {
    QPushButton* const widget = NewLink(control);
    Follow(control, widget, [](const Label& from, QPushButton& to) { ShowCaption(from, to); });
    return widget;
}

QPushButton* BoundToLink(TextBox& control) {
    QPushButton* const widget = NewLink(control);
    Follow(control, widget,
           [](const TextBox& from, QPushButton& to) { to.setText(QString::fromStdString(from.Text())); });
    return widget;
}

namespace {

/// Some texts do when clicked what the box beside them does.
class PressedLabel : public QLabel {
 public:
    explicit PressedLabel(Label& control) : Own(control) {}

 protected:
    void mouseReleaseEvent(QMouseEvent* event) override {
        QLabel::mouseReleaseEvent(event);
        if (event->button() == Qt::LeftButton && rect().contains(event->pos())) Own.Press();
    }

 private:
    Label& Own;
};

}  // namespace

QLabel* BoundTo(Label& control) {
    auto* const widget = Make<PressedLabel>(control);
    widget->setTextFormat(Qt::PlainText);
    Follow(control, widget, [](const Label& from, QLabel& to) { ShowCaption(from, to); });
    return widget;
}

namespace {

/// Shows its whole text in a tip where there is no room for it.
class ElidedLabel : public QLabel {
 public:
    ElidedLabel() {
        setTextFormat(Qt::PlainText);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }

 protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, width());
        setToolTip(shown == text() ? QString() : TipOf(text()));
        QPainter painter(this);
        painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, shown);
    }
};

}  // namespace

QLabel* BoundToElided(Label& control) {
    auto* const widget = Make<ElidedLabel>();
    Follow(control, widget,
           [](const Label& from, QLabel& to) { to.setText(QString::fromStdString(from.Caption())); });
    return widget;
}

namespace {

/// The toolkit reports the end of an edit only after a change; a refused text is asked about each time.
class Field : public QLineEdit {
 public:
    explicit Field(TextBox& control) : Own(control) {
        connect(this, &QLineEdit::textEdited, [this](const QString& text) { Own.Text(text.toStdString()); });
        connect(this, &QLineEdit::editingFinished, [this] {
            Asked = true;
            Leave(*this, Own);
        });
    }

 protected:
    void focusOutEvent(QFocusEvent* event) override {
        Asked = false;
        QLineEdit::focusOutEvent(event);
        const Qt::FocusReason reason = event->reason();
        if (Asked || reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return;
        if (property("refused").toBool()) Leave(*this, Own);
    }

 private:
    TextBox& Own;
    bool Asked = false;
};

}  // namespace

QLineEdit* BoundTo(TextBox& control) {
    auto* const widget = Make<Field>(control);
    Follow(control, widget, [](const TextBox& from, QLineEdit& to) {
        const QString text = QString::fromStdString(from.Text());
        if (to.text() != text) to.setText(text);
        if (!from.Caption().empty()) to.setAccessibleName(QString::fromStdString(from.Caption()));
    });
    return widget;
}

bool LeaveField() {
    auto* const field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    if (!field) return true;
    field->clearFocus();
    return !field->property("refused").toBool();
}

QPlainTextEdit* BoundToLines(TextBox& control) {
    auto* const widget = Make<QPlainTextEdit>();
    widget->setReadOnly(true);
    widget->setLineWrapMode(QPlainTextEdit::NoWrap);
    Follow(control, widget, [](const TextBox& from, QPlainTextEdit& to) {
        const QString text = QString::fromStdString(from.Text());
        if (to.toPlainText() == text) return;
        to.setPlainText(text);
        to.verticalScrollBar()->setValue(to.verticalScrollBar()->maximum());
    });
    return widget;
}

ShownText* BoundToShown(TextBox& control) {
    auto* const widget = Make<ShownText>();
    Follow(control, widget, [](const TextBox& from, QLineEdit& to) {
        const QString text = QString::fromStdString(from.Text());
        if (to.text() == text) return;
        to.setText(text);
        to.setCursorPosition(0);
    });
    return widget;
}

QSlider* BoundTo(Slider& control) {
    auto* const widget = Make<QSlider>(Qt::Horizontal);
    widget->setRange(control.Minimum(), control.Maximum());
    widget->setSingleStep(control.Step());
    widget->setPageStep(control.Step() * 5);
    LeaveWheelToPage(*widget);
    QObject::connect(widget, &QSlider::sliderMoved, [&control](int value) { control.Drag(value); });
    QObject::connect(widget, &QSlider::sliderReleased,
                     [widget, &control] { control.Value(widget->value()); });
    QObject::connect(widget, &QSlider::valueChanged, [widget, &control](int value) {
        if (!widget->isSliderDown()) control.Value(value);
    });
    Follow(control, widget, [](const Slider& from, QSlider& to) {
        if (to.isSliderDown()) return;
        const QSignalBlocker quiet(to);
        to.setValue(from.Value());
    });
    return widget;
}

QLabel* CaptionOf(Control& control, QWidget* buddy) {
    auto* const widget = Make<QLabel>();
    if (dynamic_cast<const Label*>(&control)) widget->setObjectName(WidgetName(control));
    widget->setBuddy(buddy);
    widget->setWordWrap(true);
    const auto update = [&control, kept = QPointer<QLabel>(widget)] {
        if (!kept) return;
        ShowCaption(control, *kept);
        kept->setEnabled(control.Enabled());
    };
    update();
    control.Changed.Connect(update);
    return widget;
}

}  // namespace Corvetape
