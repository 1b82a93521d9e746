#include "ui/look.h"

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QPalette>
#include <QWidget>
#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "ui/make.h"

/// The pictures are in a library, where nothing else would take them into the program.
static void TakeInPictures() {
    Q_INIT_RESOURCE(icons);
}

namespace Corvetape {

namespace {

const Look Light{false,     "#f6f6f4", "#ffffff", "#efeeea", "#e0deda", "#1d1d1b", "#686762",
                 "#c8371f", "#ffffff", "#fbe9e5", "#2a7448", "#8f6000", "#b9b7b0"};
const Look Dark{true,      "#1c1c1e", "#252528", "#202023", "#39393e", "#f0efec", "#a8a6a0",
                "#ff6a4d", "#1c1c1e", "#42251f", "#63c088", "#e0b04a", "#5d5c62"};

/// Three colours that go together, from the upper left to the lower right. White can be read on the first
/// two.
const std::array Chords = std::to_array<NameColours>({{"#274d6e", "#7a3b63", "#d98a46"},
                                                      {"#1f5f5b", "#3a7f63", "#d7b450"},
                                                      {"#35398a", "#7f57a6", "#e6a0b8"},
                                                      {"#6b2a38", "#b2522f", "#e9b35f"},
                                                      {"#16324f", "#2f6f8f", "#9fd3c7"},
                                                      {"#46295a", "#a0446e", "#f0a07a"},
                                                      {"#234d36", "#5d7f3b", "#e3d06b"},
                                                      {"#572a33", "#96495a", "#dcaab6"},
                                                      {"#1d2b4f", "#5b4a9a", "#c684c0"},
                                                      {"#2b4a52", "#667863", "#dfb98a"},
                                                      {"#13475a", "#5b2350", "#e0703a"},
                                                      {"#2c3a5c", "#56628a", "#cdb6d8"}});

QPalette PaletteOf(const Look& look) {
    QPalette palette(look.Text, look.Panel, look.Panel, look.Line, look.Line, look.Text, look.OnAccent,
                     look.Panel, look.Window);
    palette.setColor(QPalette::Highlight, look.Accent);
    palette.setColor(QPalette::HighlightedText, look.OnAccent);
    palette.setColor(QPalette::Link, look.Accent);
    palette.setColor(QPalette::PlaceholderText, look.Dim);
    palette.setColor(QPalette::AlternateBase, look.Window);
    palette.setColor(QPalette::ToolTipBase, look.Panel);
    palette.setColor(QPalette::ToolTipText, look.Text);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, look.Wave);
    }
    return palette;
}

QString StyleSheetOf(const Look& look) {
    QFile file(":/ui/window.qss");
    if (!file.open(QIODevice::ReadOnly)) return {};
    QString sheet = QString::fromUtf8(file.readAll());
    using Named = std::pair<const char*, QColor>;
    const std::array names{Named{"@window", look.Window},
                           Named{"@panel", look.Panel},
                           Named{"@navigation", look.Navigation},
                           Named{"@line", look.Line},
                           Named{"@text", look.Text},
                           Named{"@dim", look.Dim},
                           Named{"@accent", look.Accent},
                           Named{"@onaccent", look.OnAccent},
                           Named{"@soft", look.Soft},
                           Named{"@good", look.Good},
                           Named{"@warning", look.Warning},
                           Named{"@wave", look.Wave}};
    for (const auto& [name, colour] : names) sheet.replace(name, colour.name());
    return sheet.replace("$mark", look.Dark ? "dark" : "light");
}

}  // namespace

const Look& PresentLook() {
    return QApplication::palette().color(QPalette::Window).lightness() < 128 ? Dark : Light;
}

const Look& BarLook() {
    return Dark;
}

namespace {

void DressIn(const Look& look, QWidget& window) {
    TakeInPictures();
    window.setPalette(PaletteOf(look));
    window.setStyleSheet(StyleSheetOf(look));
}

/// Changes the look of a window with the palette of the desktop, for as long as the window is there.
class Dresser : public QObject {
 public:
    explicit Dresser(QWidget& window) : QObject(&window), Window(window) {
        DressIn(PresentLook(), Window);
        Window.installEventFilter(this);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() != QEvent::ApplicationPaletteChange || std::exchange(Dressing, true)) return false;
        DressIn(PresentLook(), Window);
        Dressing = false;
        return false;
    }

 private:
    QWidget& Window;
    bool Dressing = false;
};

}  // namespace

void DressAsBar(QWidget& bar) {
    DressIn(BarLook(), bar);
}

void Dress(QWidget& window) {
    Make<Dresser>(window);
}

QFont ScaledFont(double scale, QFont::Weight weight) {
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setWeight(weight);
    return font;
}

NameColours ColoursOf(const QString& name) {
    uint32_t hash = 2166136261U;  // the same in every run, unlike the toolkit's own
    for (const QChar letter : name) hash = (hash ^ letter.unicode()) * 16777619U;
    return Chords[hash % Chords.size()];
}

}  // namespace Corvetape
