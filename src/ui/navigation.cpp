#include "ui/navigation.h"

#include <QAccessible>
#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/binders.h"
#include "ui/button_reading.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/make.h"

namespace Corvetape {

void SelectNeighbour(TabStrip& tabs, int step) {
    const auto& all = tabs.Tabs();
    const auto here = std::ranges::find(all, tabs.SelectedKey(), &Tab::Key);
    if (here == all.end()) return;
    const auto count = static_cast<int>(all.size());
    const auto index = static_cast<int>(here - all.begin());
    tabs.Select(all[static_cast<size_t>((index + step % count + count) % count)].Key);
}

Navigation::Navigation(TabStrip& tabs) : Tabs(tabs) {
    QAccessible::installFactory(ReadButton);
    setObjectName(QString::fromStdString(tabs.Name()));
    auto* const lines = Make<QVBoxLayout>(this);
    lines->setContentsMargins(Grid, 2 * Grid, Grid, 2 * Grid);
    lines->setSpacing(2);
    for (const Tab& tab : tabs.Tabs()) {
        const std::string& key = tab.Key;
        auto* const button = Make<QToolButton>();
        button->setObjectName(QString::fromStdString(key));
        button->setCheckable(true);
        button->setAutoExclusive(true);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setIconSize({18, 18});
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setMinimumHeight(4 * Grid);
        connect(button, &QToolButton::clicked, this, [this, key] {
            if (LeaveField()) Tabs.Select(key);
            Refresh();  // the click has checked the button
        });
        if (key == tabs.Tabs().back().Key) lines->addStretch(1);
        lines->addWidget(button);
        Buttons[key] = button;
    }
    // As wide as its longest name in bold, in any language and font.
    int widest = 0;
    const QFontMetrics bold(ScaledFont(1, QFont::DemiBold));
    for (const Tab& tab : tabs.Tabs()) {
        widest =
            std::max(widest, bold.horizontalAdvance("  " + QString::fromStdString(tab.Caption).trimmed()));
    }
    setFixedWidth(widest + 8 * Grid);
    const auto refresh = [kept = QPointer<Navigation>(this)] {
        if (kept) kept->Refresh();
    };
    tabs.Changed.Connect(refresh);
    tabs.Click.Connect(refresh);
    Refresh();
}

void Navigation::Refresh() {
    const Look& look = PresentLook();
    for (const Tab& tab : Tabs.Tabs()) {
        QToolButton* const button = Buttons.at(tab.Key);
        const bool selected = tab.Key == Tabs.SelectedKey();
        button->setText("  " + QString::fromStdString(tab.Caption).trimmed());
        button->setToolTip(QString::fromStdString(tab.ToolTip));
        button->setIcon(DrawnIcon(QString::fromStdString(tab.Tag), selected ? look.Accent : look.Dim));
        button->setChecked(selected);
    }
}

}  // namespace Corvetape
