#include "ui/window_keys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <optional>

namespace Corvetape {

namespace {

std::optional<HelpKey> HelpKeyOf(int key) {
    if (key == Qt::Key_F1) return HelpKey::F1;
    if (key == Qt::Key_F2) return HelpKey::F2;
    if (key == Qt::Key_F3) return HelpKey::F3;
    if (key == Qt::Key_F12) return HelpKey::F12;
    return std::nullopt;
}

}  // namespace

WindowKeys::WindowKeys(QWidget& window, HelpKeys& keys, const Form& form, const TabStrip* tabs)
    : Window(window), Keys(keys), Own(form), Tabs(tabs) {
    qApp->installEventFilter(this);
}

bool WindowKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return false;
    const auto* const widget = qobject_cast<QWidget*>(watched);
    const auto key = HelpKeyOf(static_cast<QKeyEvent*>(event)->key());
    if (!widget || !key || widget->window() != &Window) return false;
    const bool alt = static_cast<QKeyEvent*>(event)->modifiers().testFlag(Qt::AltModifier);
    const Tab* const tab = Tabs != nullptr ? Tabs->Selected() : nullptr;
    Keys.Press(*key, alt, tab != nullptr ? tab->Tag : Own.Tag());
    return true;
}

}  // namespace Corvetape
