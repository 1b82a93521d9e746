#pragma once

#include <QFrame>
#include <QScrollArea>
#include <initializer_list>

#include "core/controls/controls.h"
#include "ui/binders.h"
#include "ui/look.h"

class QGridLayout;
class QHBoxLayout;
class QVBoxLayout;

namespace Corvetape {

/// A group of settings with a heading and one line that explains it.
class Card : public QFrame {
 public:
    Card(const QString& heading, const QString& explanation);

    /// A control in a line of its own, as wide as the card.
    template <typename ControlType>
    auto* Add(ControlType& control) {
        auto* const widget = BoundTo(control);
        AddWidget(widget);
        return widget;
    }

    void AddWidget(QWidget* widget);

    /// Caption, field and what stands beside it, in the three columns that all fields of a card share.
    void AddField(Control& captionOf, QWidget* field, QWidget* unit = nullptr);

    /// Widgets side by side, as wide as they need to be, so many pixels apart.
    void AddRow(std::initializer_list<QWidget*> widgets, int spacing = Grid);

 private:
    QVBoxLayout* Lines;
    QGridLayout* Fields = nullptr;  ///< that of the fields added last, while nothing else was added since
};

/// A page of settings: its name, one line, and its cards. Scrolls where the window is too small.
class FormPage : public QScrollArea {
 public:
    FormPage(const QString& name, const QString& explanation);

    Card& AddCard(const QString& heading, const QString& explanation = {});

    /// Anything else below the cards; above a `stretch` of 0 it shares the space that is left.
    void AddFilling(QWidget* widget, int stretch);

    /// To be called when all is added.
    void Finish();

 private:
    void KeepPlace(int least, int most);

    QVBoxLayout* Cards;
    int LeftAt =
        0;  ///< where the page was scrolled to before the window became too large for that; 0: nowhere
};

/// A number's field: as wide as its numbers are.
QLineEdit* NumberField(TextBox& control);

/// A quiet line of explanation.
QLabel* DimText(const QString& text);

}  // namespace Corvetape
