#pragma once

#include <QAccessible>

namespace Corvetape {

/// What screen readers are given for radio buttons and for the entries of the list of pages, and nothing for
/// any other object. The toolkit would take the first for check boxes, as the group of the controls clears
/// their neighbours, and the second for buttons that stay pressed.
///
/// To be handed to QAccessible::installFactory, which owns what comes back.
QAccessibleInterface* ReadButton(const QString& className, QObject* object);

}  // namespace Corvetape
