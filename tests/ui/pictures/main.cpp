// Draws the pages of the window, light and dark, as they look in the middle of a recording of the demo radio,
// the floating bars, the dialogs, and the icons of the notification area:
//   ui-pictures FOLDER [LANGUAGE] [WIDTH [HEIGHT]]
#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QTimer>
#include <array>
#include <string>

#include "core/controls/message_texts.h"
#include "forms/dlg_language.h"
#include "forms/dlg_provider.h"
#include "post/options/language_choice.h"
#include "ui/cover_bar.h"
#include "ui/language_question.h"
#include "ui/provider_question.h"
#include "ui/quick_bar.h"
#include "ui/tray_icon.h"
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
    world.Recorder->Shown().Bars.Load({1920 * 15, 1080 * 15}, {1920 * 15, 1080 * 15});
    QuickBarWindow plain(*world.Ui, state.PlainBar, BarStyle::Composited);
    CoverBarWindow cover(*world.Ui, state.CoverBar, BarStyle::Composited);
    world.Recorder->Shown().Bars.PointerMoved();
    const std::array<QWidget*, 2> bars{&plain, &cover};
    for (QWidget* bar : bars) {
        bar->setWindowOpacity(1);
        bar->show();
        world.RunFor(1);
        QApplication::processEvents();
        bar->grab().save(folder + "/" + bar->objectName().toLower() + ending + ".png");
    }
}

/// Takes a picture of the box that stands open and closes it by its form.
void TakeAndClose(Form& form, const QString& path) {
    QTimer::singleShot(200, [&form, path] {
        if (QWidget* const box = QApplication::activeModalWidget()) box->grab().save(path);
        form.Visible(false);
    });
}

void DrawDialogs(UiWorld& world, const QString& folder, const QString& ending) {
    dlgProvider provider;
    world.Recorder->Shown().Texts.LocalizeControls(provider);
    provider.lblInfo.Caption(
        world.Recorder->Shown().Texts.FormatMsg(Message::SettingsForNewSource.Key, {"mpv"}));
    provider.cboProvider.AddItem("Radio Moonpier");
    provider.cboProvider.ListIndex(0);
    provider.Visible(true);
    TakeAndClose(provider, folder + "/dlgprovider" + ending + ".png");
    AskOver(world.Window.get(), provider);
    dlgLanguage language;
    LanguageChoice choice(language, world.Computer.Files, world.Computer.Dialogs,
                          world.Computer.Folders.Program, "english");
    TakeAndClose(language, folder + "/dlglanguage" + ending + ".png");
    AskForLanguage(language, choice);
}

/// The three states in the sizes that hosts ask for, on a light and on a dark panel.
void DrawTrayIcons(const QString& folder) {
    constexpr std::array sizes{16, 22, 32, 48, 64};
    QPixmap sheet(2 * 248, 3 * 80);
    QPainter painter(&sheet);
    for (int ground = 0; ground < 2; ++ground) {
        painter.fillRect(ground * 248, 0, 248, 240, ground == 0 ? QColor(238, 238, 238) : QColor(32, 32, 34));
        for (int state = 0; state < 3; ++state) {
            int left = ground * 248 + 16;
            for (const int size : sizes) {
                painter.drawPixmap(left, state * 80 + 40 - size / 2,
                                   StateIcon(state).pixmap(QSize(size, size), 1.0));
                left += size + 10;
            }
        }
    }
    painter.end();
    sheet.save(folder + "/tray.png");
}

int Run(const QStringList& words) {
    if (words.size() < 2) return 2;
    const QString language = words.value(2, "english");
    QDir().mkpath(words[1]);
    UseDesktopPalette(false);
    UiWorld world(language.toStdString());
    if (!world.Loaded) return 1;
    world.Computer.Files.SetFreeSpace("/", uint64_t{212} << 30U);
    for (const char* entry : {"Copper Engines - *", "Willow & the Weathercocks - *", "*Marmalade*"}) {
        world.Recorder->Shown().Lists.AddToWatchList(WatchListKind::Include, entry);
    }
    if (words.size() > 3) world.Window->resize(words[3].toInt(), words.value(4, "720").toInt());
    world.RunFor(30);
    world.Form().chkStartStop[1].Value(1);
    world.RunFor(170);
    world.Form().cmdStartStop.Press();
    world.RunFor(50);
    world.Form().cmdStartStop.Press();
    world.RunFor(120);
    Draw(world, words[1], "-light");
    DrawDialogs(world, words[1], "-light");
    UseDesktopPalette(true);
    QApplication::processEvents();
    Draw(world, words[1], "-dark");
    DrawDialogs(world, words[1], "-dark");
    DrawTrayIcons(words[1]);
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
