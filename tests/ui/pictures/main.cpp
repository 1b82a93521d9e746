// Draws the pages of the window, light and dark, as they look in the middle of a recording of the demo radio:
//   ui-pictures FOLDER [LANGUAGE] [WIDTH]
#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QPixmap>
#include <array>
#include <string>

#include "ui/cover_bar.h"
#include "ui/quick_bar.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

void UseDesktopPalette(bool dark) {
    const QColor paper = dark ? QColor(40, 40, 42) : QColor(240, 240, 240);
    QApplication::setPalette(QPalette(dark ? Qt::white : Qt::black, paper));
}

void Draw(UiWorld& world, const QString& folder, const QString& ending) {
    for (const std::string& key : world.TabKeys()) {
        world.Form().tbsMain.Select(key);
        world.RunFor(1);
        QApplication::processEvents();
        const QString name = QString::fromStdString(key).mid(4).toLower();
        world.Window->grab().save(folder + "/" + name + ending + ".png");
    }
    world.Form().tbsMain.Select("TAB_RECORDING");
}

/// Both bars over a ground that nothing is known of, as a compositor shows them.
void DrawBars(UiWorld& world, const QString& folder, const QString& ending) {
    State& state = world.Recorder->Values();
    world.Recorder->Shown().Bars.Load({1920 * 15, 1080 * 15});
    QuickBarWindow plain(*world.Ui, state.PlainBar, BarStyle::Composited);
    CoverBarWindow cover(*world.Ui, state.CoverBar, BarStyle::Composited);
    world.Recorder->Shown().Bars.PointerMoved();
    const std::array<QWidget*, 2> bars{&plain, &cover};
    for (QWidget* bar : bars) {
        bar->setWindowOpacity(1);
        bar->show();
        world.RunFor(1);
        bar->grab().save(folder + "/" + bar->objectName().toLower() + ending + ".png");
    }
}

int Run(const QStringList& words) {
    if (words.size() < 2) return 2;
    const QString language = words.value(2, "english");
    QDir().mkpath(words[1]);
    UseDesktopPalette(false);
    UiWorld world(language.toStdString());
    if (!world.Loaded) return 1;
    if (words.size() > 3) world.Window->resize(words[3].toInt(), world.Window->height());
    world.RunFor(30);
    world.Form().chkStartStop[1].Value(1);
    world.RunFor(170);
    world.Form().cmdStartStop.Press();
    world.RunFor(50);
    world.Form().cmdStartStop.Press();
    world.RunFor(120);
    Draw(world, words[1], "-light");
    UseDesktopPalette(true);
    QApplication::processEvents();
    Draw(world, words[1], "-dark");
    DrawBars(world, words[1], "");
    return 0;
}

}  // namespace
}  // namespace Corvetape::Test

int main(int count, char** words) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, words);
    return Corvetape::Test::Run(QApplication::arguments());
}
