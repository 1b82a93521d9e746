// The floating bars as windows, and the keys that all windows share.
#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QDeadlineTimer>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QToolButton>

#include "ui/cover_bar.h"
#include "ui/quick_bar.h"
#include "ui/text_keys.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

struct Bars {
    Bars() {
        world.RunFor(5);
        State& state = world.Recorder->Values();
        world.Recorder->Shown().Bars.Load({1920 * 15, 1080 * 15}, {1920 * 15, 1080 * 15});
        plain = std::make_unique<QuickBarWindow>(*world.Ui, state.PlainBar, BarStyle::Plain);
        cover = std::make_unique<CoverBarWindow>(*world.Ui, state.CoverBar, BarStyle::Plain);
    }

    UiWorld world;
    std::unique_ptr<QuickBarWindow> plain;
    std::unique_ptr<CoverBarWindow> cover;
};

void PressKey(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(widget, &event);
}

TEST(Bars, FollowTheirForms) {
    Bars bars;
    EXPECT_TRUE(bars.cover->isVisible());
    EXPECT_FALSE(bars.plain->isVisible());
    EXPECT_EQ(bars.cover->size(), QSize(106, 107));
    bars.cover->move(20, 30);
    bars.world.Recorder->Shown().Bars.SwitchDesign();
    EXPECT_FALSE(bars.cover->isVisible());
    EXPECT_TRUE(bars.plain->isVisible());
    EXPECT_EQ(bars.plain->pos(), bars.cover->pos());
    bars.plain->move(40, 50);
    EXPECT_EQ(bars.world.Recorder->Values().PlainBar.Place().Left, 600);
    EXPECT_EQ(bars.world.Recorder->Values().PlainBar.Place().Top, 750);
}

TEST(Bars, TheFrameOfAPlainOneIsWithinTheScreen) {
    Bars bars;
    bars.world.Recorder->Shown().Bars.SwitchDesign();
    bars.plain->move(100'000, 0);
    bars.plain->hide();
    bars.plain->show();
    const QRect screen = bars.plain->screen()->virtualGeometry();
    ASSERT_GT(bars.plain->frameGeometry().width(), bars.plain->width());
    ASSERT_FALSE(screen.contains(bars.plain->frameGeometry()));
    const QDeadlineTimer limit(5000);
    while (!screen.contains(bars.plain->frameGeometry()) && !limit.hasExpired()) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    EXPECT_TRUE(screen.contains(bars.plain->frameGeometry()));
    EXPECT_EQ(bars.world.Recorder->Values().PlainBar.Place().Left, bars.plain->x() * 15);
}

TEST(Bars, TheWordsOfThePlainOneAreLightOnDark) {
    Bars bars;
    bars.world.Recorder->Shown().Bars.SwitchDesign();
    for (const char* name : {"lblSongAge", "lblTitle"}) {
        const auto* const label = bars.plain->findChild<QLabel*>(name);
        EXPECT_GT(label->palette().color(label->foregroundRole()).lightness(), 200) << name;
    }
}

TEST(Bars, TheirButtonsAreNamedAndPressTheirControls) {
    Bars bars;
    for (const char* name :
         {"cmdStartStop", "cmdSkipThisRecording", "cmdQuickRecord", "cmdMinMax", "cmdSwitchDesign"}) {
        const auto* const button = bars.plain->findChild<QPushButton*>(name);
        ASSERT_NE(button, nullptr) << name;
        EXPECT_FALSE(button->accessibleName().isEmpty() && button->toolTip().isEmpty()) << name;
    }
    bars.plain->findChild<QPushButton*>("cmdStartStop")->click();
    EXPECT_EQ(bars.world.Form().chkStartStop[0].Value(), 1);
    bars.cover->findChild<QToolButton*>("imgStop")->click();
    EXPECT_EQ(bars.world.Form().chkStartStop[0].Value(), 0);
    bars.plain->findChild<QPushButton*>("cmdMinMax")->click();
    EXPECT_FALSE(bars.world.Window->isVisible());
    bars.plain->findChild<QPushButton*>("cmdMinMax")->click();
    EXPECT_TRUE(bars.world.Window->isVisible());
}

TEST(Bars, AreClosedByTheCheckBox) {
    Bars bars;
    bars.cover->close();
    EXPECT_EQ(bars.world.Form().chkQuickButtons.Value(), 1);
    EXPECT_FALSE(bars.cover->isVisible());
    auto* const button = bars.world.Find<QToolButton>("chkQuickButtons");
    EXPECT_FALSE(button->isChecked());
    button->click();
    EXPECT_TRUE(bars.cover->isVisible());
    EXPECT_TRUE(button->isChecked());
}

TEST(Bars, ShowTheSong) {
    Bars bars;
    bars.world.RunFor(20);
    const QString song = bars.cover->findChild<QLabel*>("lblSong")->text();
    EXPECT_EQ(song.toStdString(), bars.world.Form().txtSong.Text());
    EXPECT_TRUE(bars.plain->windowTitle().contains(song));
}

TEST(Keys, EachWindowAsksForItsPage) {
    Bars bars;
    auto& pages = bars.world.Pages;
    bars.world.Form().tbsMain.Select("TAB_PAUSE");
    PressKey(bars.world.Find<QWidget>("txtLengthOfPause"), Qt::Key_F1);
    EXPECT_EQ(pages.Page, "pauserecognition.htm");
    EXPECT_TRUE(pages.Online);
    PressKey(bars.world.Window.get(), Qt::Key_F1, Qt::AltModifier);
    EXPECT_FALSE(pages.Online);
    PressKey(bars.world.Window.get(), Qt::Key_F3);
    EXPECT_EQ(pages.Page, "search.htm");
    EXPECT_FALSE(bars.world.Recorder->Values().Lifecycle.WizardRequested);
    PressKey(bars.cover.get(), Qt::Key_F12, Qt::AltModifier);
    EXPECT_EQ(pages.Page, "quickbuttons.htm");
    EXPECT_TRUE(pages.Online);
    PressKey(bars.plain.get(), Qt::Key_F2);
    EXPECT_EQ(pages.Page, "wizard.htm");
    EXPECT_TRUE(bars.world.Recorder->Values().Lifecycle.WizardRequested);
}

/// Counts the keys that reach a widget.
class KeyCounter : public QObject {
 public:
    using QObject::QObject;
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        Keys += event->type() == QEvent::KeyPress ? 1 : 0;
        return false;
    }
    int Keys = 0;
};

TEST(Keys, ThoseOfTheHelpDoNotReachTheFieldThatHasTheKeyboard) {
    UiWorld world;
    auto* const field = world.Find<QWidget>("txtLengthOfPause");
    KeyCounter counter;
    field->installEventFilter(&counter);
    for (const int key : {Qt::Key_F1, Qt::Key_F2, Qt::Key_F3, Qt::Key_F12}) PressKey(field, key);
    EXPECT_EQ(counter.Keys, 0);
    PressKey(field, Qt::Key_F5);
    EXPECT_EQ(counter.Keys, 1);
}

TEST(Keys, CtrlTabGoesRoundThroughTheTabs) {
    UiWorld world;
    TabStrip& tabs = world.Form().tbsMain;
    const auto press = [&world](const QKeySequence& keys) {
        for (QShortcut* shortcut : world.Window->findChildren<QShortcut*>()) {
            if (shortcut->key() == keys) emit shortcut->activated();
        }
    };
    tabs.Select("TAB_ABOUT");
    press(Qt::CTRL | Qt::Key_Tab);
    EXPECT_EQ(tabs.SelectedKey(), "TAB_RECORDING");
    press(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab);
    EXPECT_EQ(tabs.SelectedKey(), "TAB_ABOUT");
    press(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab);
    EXPECT_EQ(tabs.SelectedKey(), "TAB_EXCLUDE");
}

/// The song that plays gets a blue picture of this size.
void FetchBluePicture(UiWorld& world, int side) {
    const std::string address = "http://cover/" + std::to_string(side);
    QImage picture(side, side, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < side; ++y) {
        // With some disorder: what is too small is taken for a placeholder.
        for (int x = 0; x < side; ++x) picture.setPixel(x, y, random.generate() | 0xff0000ffU);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    world.Web.Bodies[address] = bytes.toStdString();
    world.Recorder->Shown().Covers.LoadImage(address);
    world.Computer.Loop.RunFor(std::chrono::milliseconds(400));
    QApplication::processEvents();
}

TEST(CoverBar, ThePictureGoesWithTheTitleAndComesBackWithIt) {
    Bars bars;
    FetchBluePicture(bars.world, 200);
    const auto blue = [](QWidget& widget) {
        const QColor colour = widget.grab().toImage().pixelColor(53, 53);
        return colour.blue() > 245 && colour.red() < 245;  // an empty place may be white
    };
    auto* const page = bars.world.Find<QWidget>("picCover");
    EXPECT_TRUE(blue(*bars.cover));
    EXPECT_TRUE(blue(*page));
    MediaState& media = bars.world.Recorder->Values().Media;
    const STATIONANDSONGDATA playing = std::exchange(media.CurrentMedia, {});
    EXPECT_FALSE(blue(*bars.cover));
    EXPECT_FALSE(blue(*page));
    media.CurrentMedia = playing;
    EXPECT_TRUE(blue(*bars.cover));
}

TEST(CoverBar, APictureOfItsSizeFillsItAndASmallerOneIsInItsMiddle) {
    const auto corner = [](int side) {
        Bars bars;  // of its own, since the next look at the source takes the picture away
        FetchBluePicture(bars.world, side);
        const QImage shown = bars.cover->grab().toImage();
        EXPECT_GT(shown.pixelColor(53, 53).blue(), 245) << side;
        return shown.pixelColor(1, 53).blue() > 245;
    };
    EXPECT_FALSE(corner(100));
    EXPECT_TRUE(corner(106)) << "as wide as the bar";
    EXPECT_TRUE(corner(200));
}

TEST(CoverBar, TheRightButtonOpensItsMenuUnlessShiftIsHeld) {
    Bars bars;
    const auto click = [&bars](Qt::MouseButton button, Qt::KeyboardModifiers keys) {
        const QPointF place(50, 50);
        QMouseEvent release(QEvent::MouseButtonRelease, place, bars.cover->mapToGlobal(place), button,
                            Qt::NoButton, keys);
        QApplication::sendEvent(bars.cover.get(), &release);
        QWidget* const menu = QApplication::activePopupWidget();
        const std::string opened = menu ? menu->objectName().toStdString() : "";
        if (menu) menu->close();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(bars.cover->findChild<QMenu*>(), nullptr) << "a closed menu goes";
        return opened;
    };
    EXPECT_EQ(click(Qt::RightButton, Qt::NoModifier), "mnuContext");
    EXPECT_EQ(click(Qt::RightButton, Qt::ShiftModifier), "");
    EXPECT_EQ(click(Qt::LeftButton, Qt::NoModifier), "");
}

TEST(CoverBar, MayGoWhileItsMenuIsOpen) {
    Bars bars;
    const QPointF place(50, 50);
    QMouseEvent release(QEvent::MouseButtonRelease, place, bars.cover->mapToGlobal(place), Qt::RightButton,
                        Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(bars.cover.get(), &release);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    bars.cover.reset();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST(Keys, TheTextAboutTheKeysActsLikeF12) {
    UiWorld world;
    world.Form().tbsMain.Select("TAB_ABOUT");
    world.Find<QPushButton>("txtlblF1")->click();
    EXPECT_EQ(world.Pages.Page, "about.htm");
    EXPECT_TRUE(world.Pages.Online);
}

TEST(Maximising, FlipsTheBarAndKeepsTheSize) {
    Bars bars;
    const QSize before = bars.world.Window->size();
    bars.world.Window->setWindowState(Qt::WindowMaximized);
    QApplication::processEvents();
    EXPECT_FALSE(bars.world.Window->isMaximized());
    EXPECT_EQ(bars.world.Window->size(), before);
    EXPECT_EQ(bars.world.Form().chkQuickButtons.Value(), 1);
    bars.world.Form().chkMaximizeButton.Press();
    bars.world.Window->setWindowState(Qt::WindowMaximized);
    QApplication::processEvents();
    EXPECT_TRUE(bars.world.Window->isMaximized());
    EXPECT_EQ(bars.world.Form().chkQuickButtons.Value(), 1);
}

TEST(Minimising, WithoutAnIconOnlyMinimises) {
    UiWorld world;
    world.Window->showMinimized();
    QApplication::processEvents();
    EXPECT_TRUE(world.Window->isMinimized());
    EXPECT_TRUE(world.Form().Visible());
}

}  // namespace
}  // namespace Corvetape::Test
