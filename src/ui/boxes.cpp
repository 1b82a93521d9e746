#include "ui/boxes.h"

#include <QApplication>
#include <QDialog>

namespace Corvetape {

void CloseBoxes() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* const box = qobject_cast<QDialog*>(window);
        if (box == nullptr) continue;
        box->reject();
        if (box->isVisible()) box->done(QDialog::Rejected);
    }
}

}  // namespace Corvetape
