#pragma once

#include <QWidget>

#include "recording/present_state.h"
#include "ui/ui_parts.h"

class QLabel;

namespace Corvetape {

/// What the recorder does now, in words, with a symbol and a colour.
class StateLine : public QWidget {
 public:
    explicit StateLine(const UiParts& parts);

    /// Looks anew.
    void Refresh();

 private:
    PresentState Present() const;

    const UiParts& Parts;
    QLabel* Symbol;
    QLabel* Text;
    QString Shown;
};

}  // namespace Corvetape
