#include "ui/shown_text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include "ui/look.h"
#include "ui/make.h"

namespace Corvetape {

ShownText::ShownText() {
    setReadOnly(true);
    setFrame(false);
    setProperty("plain", true);
    setTextMargins(-2, 0, 0, 0);  // in line with the texts of labels
    setFocusPolicy(Qt::ClickFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    connect(this, &QLineEdit::textChanged, this, [this] { updateGeometry(); });
}

QSize ShownText::sizeHint() const {
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(text()) + 4, metrics.height() + 2};
}

QSize ShownText::minimumSizeHint() const {
    return {std::min(sizeHint().width(), 5 * Grid), sizeHint().height()};
}

void ShownText::paintEvent(QPaintEvent* event) {
    const int room = width() - 2;
    if (hasFocus() || fontMetrics().horizontalAdvance(text()) <= room) return QLineEdit::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room));
}

DottedLine::DottedLine() : Row(Make<QHBoxLayout>(this)) {
    Row->setContentsMargins(0, 0, 0, 0);
    Row->setSpacing(0);
    Row->addStretch(1);
}

void DottedLine::Add(QWidget* part) {
    auto* const dot = Make<QLabel>(QString::fromUtf8(" ·  "));
    dot->setProperty("dim", true);
    Row->insertWidget(Row->count() - 1, dot);
    Row->insertWidget(Row->count() - 1, part);
    dot->hide();
    part->hide();
    Entries.push_back({dot, part, false});
}

void DottedLine::Show(QWidget* part, bool shown) {
    bool before = false;
    for (Entry& entry : Entries) {
        if (entry.Part == part) entry.Shown = shown;
        entry.Part->setVisible(entry.Shown);
        entry.Dot->setVisible(entry.Shown && before);
        before = before || entry.Shown;
    }
}

}  // namespace Corvetape
