#pragma once

#include <QObject>

#include "core/controls/controls.h"
#include "core/controls/form.h"
#include "core/help_keys.h"

class QWidget;

namespace Corvetape {

/// The keys of the help, which a window sees before what has the keyboard in it does.
class WindowKeys : public QObject {
 public:
    /// The page is that of the selected tab, or without tabs that of the form. All of it outlives it.
    WindowKeys(QWidget& window, HelpKeys& keys, const Form& form, const TabStrip* tabs);

    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    QWidget& Window;
    HelpKeys& Keys;
    const Form& Own;
    const TabStrip* Tabs;
};

}  // namespace Corvetape
