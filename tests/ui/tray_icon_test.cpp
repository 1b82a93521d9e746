#include "ui/tray_icon.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QTextDocument>
#include <string>
#include <vector>

#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

/// What the toolkit shows.
QSystemTrayIcon& Shown(const TrayIcon& icon) {
    return *icon.findChild<QSystemTrayIcon*>();
}

TEST(TrayIcon, ShowsNoTitleAsMarkup) {
    for (const char* title : {"<img src=\"/proc/self/fd/11\">", "&lt;b>", "<b>loud</b>:\nTea", "<?xml ?>"}) {
        EXPECT_FALSE(Qt::mightBeRichText(PlainTip(title))) << title;
    }
    EXPECT_EQ(PlainTip("I <3 you & me"), "I <3 you & me");
}

TEST(TrayIcon, ShowsTheAmpersandsOfANameOnce) {
    EXPECT_EQ(PlainTip("Marrow &&& Mint:\nTea"), "Marrow & Mint:\nTea");
}

TEST(TrayIcon, WithoutAnAreaForItItIsNotPresent) {
    frmMain form;
    TrayIcon icon(form);
    EXPECT_FALSE(icon.Present());
    icon.HostIs(true);
    EXPECT_TRUE(icon.Present());
    icon.HostIs(false);
    EXPECT_FALSE(icon.Present());
}

TEST(TrayIcon, ShowsWhatWasSaidBeforeItsPanelCame) {
    frmMain form;
    TrayIcon icon(form);
    icon.ShowState(2);
    icon.ShowTip("Marrow");
    icon.HostIs(true);
    EXPECT_EQ(Shown(icon).toolTip(), "Marrow");
    EXPECT_EQ(Shown(icon).icon().pixmap(32).toImage(), StateIcon(2).pixmap(32).toImage());
}

TEST(TrayIcon, BeginsWithTheNameOfTheProgramAsItsTip) {
    frmMain form;
    TrayIcon icon(form);
    icon.HostIs(true);
    EXPECT_EQ(Shown(icon).toolTip(), "Corvetape");
    icon.ShowTip("Marrow &&& Mint:\nTea\nCups");
    EXPECT_EQ(Shown(icon).toolTip(), "Marrow & Mint:\nTea\nCups");
}

TEST(TrayIcon, BringsTheWindowBackByADoubleClickAndNotByASingleOne) {
    frmMain form;
    int restored = 0;
    TrayIcon icon(form);
    icon.Restore.Connect([&restored] { ++restored; });
    icon.HostIs(true);
    QSystemTrayIcon* const shown = &Shown(icon);
    emit shown->activated(QSystemTrayIcon::Trigger);
    emit shown->activated(QSystemTrayIcon::Context);
    EXPECT_EQ(restored, 0);
    emit shown->activated(QSystemTrayIcon::DoubleClick);
    EXPECT_EQ(restored, 1);
}

TEST(TrayIcon, TakesTwoClicksForADoubleClickWhereTheHostReportsSingleOnesOnly) {
    frmMain form;
    int restored = 0;
    TrayIcon icon(form);
    icon.Restore.Connect([&restored] { ++restored; });
    icon.HostIs(true);
    QSystemTrayIcon* const shown = &Shown(icon);
    const int before = QApplication::doubleClickInterval();
    QApplication::setDoubleClickInterval(60'000);
    for (int i = 0; i < 3; ++i) emit shown->activated(QSystemTrayIcon::Trigger);
    EXPECT_EQ(restored, 1) << "the third click begins anew";
    QApplication::setDoubleClickInterval(0);
    emit shown->activated(QSystemTrayIcon::Trigger);
    EXPECT_EQ(restored, 1) << "too late for the one before";
    QApplication::setDoubleClickInterval(before);
}

/// The menu of the only icon there is.
QMenu* MenuOfTheIcon() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* const menu = qobject_cast<QMenu*>(widget);
        if (menu && menu->findChild<QAction*>("mnuTaskbarItem_10")) return menu;
    }
    return nullptr;
}

TEST(TrayMenu, HasItsItemsInTheirOrderAndTheyPressTheirControls) {
    UiWorld world;
    const TrayIcon icon(world.Form());
    QMenu* const menu = MenuOfTheIcon();
    ASSERT_NE(menu, nullptr);
    std::vector<std::string> texts;
    for (const QAction* action : menu->actions()) {
        texts.push_back(action->isSeparator() ? "-" : action->text().remove('&').toStdString());
    }
    EXPECT_EQ(texts,
              (std::vector<std::string>{"Restore", "Quick buttons", "-", "Quick recording", "-", "Quit"}));
    std::vector<int> pressed;
    for (const int index : {10, 15, 20, 90}) {
        world.Form().mnuTaskbarItem[static_cast<size_t>(index)].Click.Connect(
            [&pressed, index] { pressed.push_back(index); });
    }
    for (QAction* action : menu->actions()) action->trigger();
    EXPECT_EQ(pressed, (std::vector<int>{10, 15, 20, 90}));
}

TEST(TrayMenu, QuickButtonsShowsAndHidesTheBar) {
    UiWorld world;
    world.RunFor(3);
    const TrayIcon icon(world.Form());
    const int32_t before = world.Form().chkQuickButtons.Value();
    MenuOfTheIcon()->actions().at(1)->trigger();
    EXPECT_NE(world.Form().chkQuickButtons.Value(), before);
    MenuOfTheIcon()->actions().at(1)->trigger();
    EXPECT_EQ(world.Form().chkQuickButtons.Value(), before);
}

/// The share of a picture that is painted.
double PaintedShare(const QImage& picture) {
    int painted = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) painted += qAlpha(picture.pixel(x, y)) > 128 ? 1 : 0;
    }
    return painted / static_cast<double>(picture.width() * picture.height());
}

TEST(TrayIcon, ItsThreeStatesDifferInShapeAtAllSizes) {
    for (const int size : {16, 22, 32, 48, 64}) {
        std::vector<QImage> shapes;
        for (const int32_t state : {0, 1, 2}) {
            const QImage picture = StateIcon(state)
                                       .pixmap(QSize(size, size), 1.0)
                                       .toImage()
                                       .convertToFormat(QImage::Format_Alpha8);
            EXPECT_EQ(picture.width(), size);
            EXPECT_GT(PaintedShare(StateIcon(state).pixmap(QSize(size, size), 1.0).toImage()), 0.05);
            shapes.push_back(picture);
        }
        EXPECT_NE(shapes[0], shapes[1]) << size;
        EXPECT_NE(shapes[0], shapes[2]) << size;
        EXPECT_NE(shapes[1], shapes[2]) << size;
    }
}

}  // namespace
}  // namespace Corvetape::Test
