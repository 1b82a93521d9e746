#include "ui/navigation.h"

#include <QPointer>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

#include "ui/icons.h"
#include "ui/look.h"
#include "ui/make.h"

namespace Corvetape {

namespace {

constexpr std::array Tags =
    std::to_array<std::pair<const char*, const char*>>({{"TAB_RECORDING", "recording"},
                                                        {"TAB_AUDIO", "audio"},
                                                        {"TAB_PAUSE", "pauserecognition"},
                                                        {"TAB_MP3_WMA", "mp3wma"},
                                                        {"TAB_OPTIONS1", "options1"},
                                                        {"TAB_OPTIONS2", "options2"},
                                                        {"TAB_FOLDERS", "folders"},
                                                        {"TAB_LOGFILE", "logfile"},
                                                        {"TAB_INCLUDE", "include"},
                                                        {"TAB_EXCLUDE", "exclude"},
                                                        {"TAB_ABOUT", "about"}});

}  // namespace

std::string TagOf(const std::string& key) {
    const auto* const row =
        std::ranges::find(Tags, key, [](const auto& tag) { return std::string(tag.first); });
    return row == Tags.end() ? std::string() : row->second;
}

void SelectNeighbour(TabStrip& tabs, int step) {
    const auto& keys = tabs.Keys();
    const auto here = std::ranges::find(keys, tabs.SelectedKey());
    if (here == keys.end()) return;
    const auto count = static_cast<int>(keys.size());
    const auto index = static_cast<int>(here - keys.begin());
    tabs.Select(keys[static_cast<size_t>((index + step % count + count) % count)]);
}

Navigation::Navigation(TabStrip& tabs) : Tabs(tabs) {
    setObjectName(QString::fromStdString(tabs.Name()));
    setFixedWidth(25 * Grid);
    auto* const lines = Make<QVBoxLayout>(this);
    lines->setContentsMargins(Grid, 2 * Grid, Grid, 2 * Grid);
    lines->setSpacing(2);
    for (const std::string& key : tabs.Keys()) {
        auto* const button = Make<QToolButton>();
        button->setObjectName(QString::fromStdString(key));
        button->setCheckable(true);
        button->setAutoExclusive(true);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setIconSize({18, 18});
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setMinimumHeight(4 * Grid);
        connect(button, &QToolButton::clicked, this, [this, key] { Tabs.Select(key); });
        if (key == tabs.Keys().back()) lines->addStretch(1);
        lines->addWidget(button);
        Buttons[key] = button;
    }
    const auto refresh = [kept = QPointer<Navigation>(this)] {
        if (kept) kept->Refresh();
    };
    tabs.Changed.Connect(refresh);
    tabs.Click.Connect(refresh);
    Refresh();
}

void Navigation::Refresh() {
    const Look& look = PresentLook();
    for (size_t i = 0; i < Tabs.Keys().size(); ++i) {
        const std::string& key = Tabs.Keys()[i];
        QToolButton* const button = Buttons.at(key);
        const bool selected = key == Tabs.SelectedKey();
        const TabTexts& texts = Tabs.Texts()[i];
        button->setText("  " + QString::fromStdString(texts.Caption).trimmed());
        button->setToolTip(QString::fromStdString(texts.ToolTip));
        button->setIcon(DrawnIcon(QString::fromStdString(TagOf(key)), selected ? look.Accent : look.Dim));
        button->setChecked(selected);
    }
}

}  // namespace Corvetape
