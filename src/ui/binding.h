#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

#include "core/controls/controls.h"
#include "ui/text_keys.h"
#include "ui/words.h"

namespace Corvetape {

/// Object name of the widget of a control.
QString WidgetName(const Control& control);

/// Shows what all kinds of controls have: name, tool tip, whether it is enabled and visible.
void ShowCommon(const Control& control, QWidget& widget);

/// The wheel scrolls the page below a widget that was not clicked, and does not change its value unasked.
void LeaveWheelToPage(QWidget& widget);

/// For a control whose function this version does not have yet: it cannot be pressed, and its tool tip says
/// so, whatever its control says.
template <typename Widget>
Widget* NotBuilt(Widget* widget, const Words& say) {
    widget->setProperty("notBuilt", say(Key::NotBuilt));
    widget->setEnabled(false);
    widget->setToolTip(say(Key::NotBuilt));
    return widget;
}

/// Calls `show` now and whenever the control has changed, for as long as the widget is there.
template <typename Widget, typename ControlType, typename Show>
void Follow(ControlType& control, Widget* widget, Show show) {
    const auto update = [&control, show, kept = QPointer<Widget>(widget)] {
        if (!kept) return;
        ShowCommon(control, *kept);
        show(control, *kept);
    };
    update();
    control.Changed.Connect(update);
}

}  // namespace Corvetape
