#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace Corvetape {

/// A drawing of this program in one colour, sharp at every size and scale. `name` is the file in the folder
/// of icons without its ending; one that is not there is an empty icon.
QIcon DrawnIcon(const QString& name, const QColor& colour);

}  // namespace Corvetape
