#include "ui/boxes.h"

#include <QApplication>
#include <QDialog>

namespace Corvetape {

void CloseBoxes() {
    // Some menus of the toolkit wait in a loop of their own. One that does not close is not asked twice.
    while (QWidget* const popup = QApplication::activePopupWidget()) {
        popup->close();
        if (popup == QApplication::activePopupWidget()) break;
    }
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* const box = qobject_cast<QDialog*>(window);
        if (box == nullptr) continue;
        box->reject();
        if (box->isVisible()) box->done(QDialog::Rejected);
    }
}

}  // namespace Corvetape
