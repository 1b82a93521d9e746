#pragma once

#include <QAction>
#include <QMenu>
#include <QPointer>

#include "core/controls/form_parts.h"

namespace Corvetape {

/// Fills a menu with items, which it follows as long as it is there. The items outlive it.
template <typename Items>
void FillMenu(QMenu& menu, Items& items) {
    for (MenuItem& item : items) {
        if (item.IsSeparator()) {
            menu.addSeparator();
            continue;
        }
        QAction* const action = menu.addAction(QString());
        action->setObjectName(QString::fromStdString(item.Name()) + "_" + QString::number(item.Index()));
        QObject::connect(action, &QAction::triggered, &menu, [&item] { item.Press(); });
        const auto show = [&item, kept = QPointer<QAction>(action)] {
            if (!kept) return;
            kept->setText(QString::fromStdString(item.Caption()));
            kept->setEnabled(item.Enabled());
        };
        show();
        item.Changed.Connect(show);
    }
}

}  // namespace Corvetape
