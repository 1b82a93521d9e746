#include "ui/button_reading.h"

#include <QAccessibleWidget>
#include <QRadioButton>
#include <QToolButton>
#include <memory>

#include "ui/navigation.h"

namespace Corvetape {

namespace {

class ButtonReading : public QAccessibleWidget {
 public:
    ButtonReading(QAbstractButton& button, QAccessible::Role role)
        : QAccessibleWidget(&button, role), Button(button) {}

    QString text(QAccessible::Text kind) const override {
        QString own = QAccessibleWidget::text(kind);
        if (kind != QAccessible::Name || !own.isEmpty()) return own;
        return QString(Button.text()).remove('&').trimmed();
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const bool page = role() == QAccessible::PageTab;
        state.selectable = page;
        state.selected = page && Button.isChecked();
        state.checkable = !page;
        state.checked = !page && Button.isChecked();
        return state;
    }

    QStringList actionNames() const override {
        return Button.isEnabled() ? QStringList{pressAction(), setFocusAction()} : QStringList{};
    }

    void doAction(const QString& action) override {
        if (action != pressAction()) return QAccessibleWidget::doAction(action);
        if (Button.isEnabled()) Button.click();
    }

 private:
    QAbstractButton& Button;
};

QAccessible::Role RoleOf(const QAbstractButton& button) {
    if (qobject_cast<const QRadioButton*>(&button)) return QAccessible::RadioButton;
    return dynamic_cast<const Navigation*>(button.parent()) ? QAccessible::PageTab : QAccessible::NoRole;
}

}  // namespace

QAccessibleInterface* ReadButton(const QString& /*className*/, QObject* object) {
    auto* const button = qobject_cast<QAbstractButton*>(object);
    const QAccessible::Role role = button == nullptr ? QAccessible::NoRole : RoleOf(*button);
    return role == QAccessible::NoRole ? nullptr : std::make_unique<ButtonReading>(*button, role).release();
}

}  // namespace Corvetape
