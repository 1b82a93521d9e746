#include "ui/form_page.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "ui/look.h"
#include "ui/make.h"
#include "ui/more_below.h"

namespace Corvetape {

QLabel* DimText(const QString& text) {
    auto* const label = Make<QLabel>(text);
    label->setProperty("dim", true);
    label->setWordWrap(true);
    return label;
}

QLineEdit* NumberField(TextBox& control) {
    QLineEdit* const field = BoundTo(control);
    field->setFixedWidth(10 * Grid);
    return field;
}

Card::Card(const QString& heading, const QString& explanation) : Lines(Make<QVBoxLayout>(this)) {
    setObjectName("card");
    Lines->setContentsMargins(2 * Grid, 2 * Grid, 2 * Grid, 2 * Grid);
    Lines->setSpacing(Grid);
    auto* const head = Make<QVBoxLayout>();
    head->setSpacing(Grid / 2);
    if (!heading.isEmpty()) {
        auto* const label = Make<QLabel>(heading);
        label->setFont(ScaledFont(1, QFont::DemiBold));
        head->addWidget(label);
    }
    if (!explanation.isEmpty()) head->addWidget(DimText(explanation));
    if (head->count() > 0) Lines->addLayout(head);
}

void Card::AddWidget(QWidget* widget) {
    Fields = nullptr;
    // A button is no wider than its caption: a click beside it is none on it.
    const bool button = qobject_cast<QAbstractButton*>(widget) != nullptr;
    Lines->addWidget(widget, 0, button ? Qt::AlignLeft : Qt::Alignment());
}

void Card::AddField(Control& captionOf, QWidget* field, QWidget* unit) {
    if (!Fields) {
        Fields = Make<QGridLayout>();
        Fields->setHorizontalSpacing(Grid);
        Fields->setVerticalSpacing(Grid);
        Fields->setColumnMinimumWidth(0, 30 * Grid);
        Fields->setColumnStretch(unit ? 2 : 1, 1);
        Lines->addLayout(Fields);
    }
    const int row = Fields->rowCount();
    const QString name = QString::fromStdString(captionOf.Caption());
    field->setAccessibleName(name);
    for (QLineEdit* inner : field->findChildren<QLineEdit*>()) inner->setAccessibleName(name);
    Fields->addWidget(CaptionOf(captionOf, field), row, 0);
    Fields->addWidget(field, row, 1);
    if (unit) Fields->addWidget(unit, row, 2);
}

void Card::AddRow(std::initializer_list<QWidget*> widgets, int spacing) {
    Fields = nullptr;
    auto* const row = Make<QHBoxLayout>();
    row->setSpacing(spacing);
    for (QWidget* widget : widgets) row->addWidget(widget);
    row->addStretch(1);
    Lines->addLayout(row);
}

FormPage::FormPage(const QString& name, const QString& explanation) {
    auto* const page = Make<QWidget>();
    page->setObjectName("page");
    Cards = Make<QVBoxLayout>(page);
    Cards->setContentsMargins(3 * Grid, 3 * Grid, 3 * Grid, 3 * Grid);
    Cards->setSpacing(2 * Grid);
    auto* const title = Make<QLabel>(name);
    title->setFont(ScaledFont(1.5, QFont::Bold));
    auto* const head = Make<QVBoxLayout>();
    head->setSpacing(Grid / 2);
    head->addWidget(title);
    if (!explanation.isEmpty()) head->addWidget(DimText(explanation));
    Cards->addLayout(head);
    setWidget(page);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(name);
    Make<MoreBelow>(this);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &FormPage::KeepPlace);
}

/// A larger window shows more, and takes the page along; when it is small again the page is where it was.
void FormPage::KeepPlace(int /*least*/, int most) {
    const int place = verticalScrollBar()->value();
    if (place > most) {
        LeftAt = std::max(LeftAt, place);
    } else if (LeftAt > 0 && LeftAt <= most) {
        verticalScrollBar()->setValue(std::exchange(LeftAt, 0));
    }
}

Card& FormPage::AddCard(const QString& heading, const QString& explanation) {
    auto* const card = Make<Card>(heading, explanation);
    Cards->addWidget(card);
    return *card;
}

void FormPage::AddFilling(QWidget* widget, int stretch) {
    Cards->addWidget(widget, stretch);
}

void FormPage::Finish() {
    Cards->addStretch(1);
}

}  // namespace Corvetape
