#include "ui/mnemonics.h"

#include <QAbstractButton>
#include <QEvent>
#include <QLabel>
#include <QWidget>

namespace Corvetape {

namespace {

/// The caption that a widget was given; what it shows may hold a mark more.
QString CaptionOf(const QWidget& widget) {
    const QVariant given = widget.property("caption");
    if (given.isValid()) return given.toString();
    const auto* const button = qobject_cast<const QAbstractButton*>(&widget);
    return button ? button->text() : static_cast<const QLabel&>(widget).text();
}

bool TakesALetter(const QWidget& widget, const QWidget& page) {
    if (!widget.isVisibleTo(&page)) return false;
    if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget)) {
        return !button->text().isEmpty();
    }
    const auto* const label = qobject_cast<const QLabel*>(&widget);
    return label && label->buddy() && !label->text().isEmpty();
}

template <typename Widget>
void ShowIn(Widget& widget, const QString& caption, const QString& shown) {
    widget.setProperty("caption", caption);
    if (widget.text() != shown) widget.setText(shown);
}

bool IsMark(const QString& text, qsizetype place) {
    return text[place] == '&' && place + 1 < text.size() && text[place + 1] != '&';
}

}  // namespace

QChar MarkedLetter(const QString& text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (IsMark(text, i)) return text[i + 1].toLower();
        if (text[i] == '&') ++i;  // two of them show one
    }
    return {};
}

QString Marked(const QString& caption, const QString& taken) {
    if (!MarkedLetter(caption).isNull()) return caption;
    for (const bool anyLetter : {false, true}) {
        for (qsizetype i = 0; i < caption.size(); ++i) {
            const bool begins = i == 0 || caption[i - 1].isSpace();
            if (!caption[i].isLetter() || (!begins && !anyLetter)) continue;
            if (!taken.contains(caption[i].toLower())) return QString(caption).insert(i, '&');
        }
    }
    return caption;
}

Mnemonics::Mnemonics(QWidget* page) : QObject(page), Page(*page) {
    page->installEventFilter(this);
    for (QWidget* widget : page->findChildren<QWidget*>()) widget->installEventFilter(this);
    Assign();
}

bool Mnemonics::eventFilter(QObject* watched, QEvent* event) {
    const bool laidOut = event->type() == QEvent::LayoutRequest;
    if (laidOut || (event->type() == QEvent::Show && watched == &Page)) Assign();
    return false;
}

void Mnemonics::Assign() {
    QString taken;
    for (QWidget* widget : Page.findChildren<QWidget*>()) {
        if (!TakesALetter(*widget, Page)) continue;
        const QString caption = CaptionOf(*widget);
        const QString shown = Marked(caption, taken);
        const QChar letter = MarkedLetter(shown);
        if (!letter.isNull()) taken += letter;
        if (auto* const button = qobject_cast<QAbstractButton*>(widget)) {
            ShowIn(*button, caption, shown);
        } else {
            ShowIn(static_cast<QLabel&>(*widget), caption, shown);
        }
    }
}

}  // namespace Corvetape
