#include "ui/boxes.h"

#include <QApplication>
#include <QDialog>

namespace Corvetape {

void CloseBoxes() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* const box = qobject_cast<QDialog*>(window)) box->reject();
    }
}

}  // namespace Corvetape
