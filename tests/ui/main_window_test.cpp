#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "ui/look.h"
#include "ui/navigation.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

/// Counts the windows that come up beside those of the program.
class WindowWatch : public QObject {
 public:
    bool eventFilter(QObject* object, QEvent* event) override {
        const auto* const widget = qobject_cast<QWidget*>(object);
        if (event->type() == QEvent::Show && widget && widget->isWindow() &&
            !qobject_cast<const QMainWindow*>(widget))
            Others << widget->objectName();
        return false;
    }

    QStringList Others;
};

TEST(MainWindow, IsTheOnlyOneThatAStartShows) {
    WindowWatch watch;
    qApp->installEventFilter(&watch);
    UiWorld world;
    world.Window->show();
    EXPECT_EQ(watch.Others.join(", ").toStdString(), "");
}

TEST(MainWindow, SaysWhatIsDoneWithTheSongThatPlays) {
    UiWorld world("english", {}, {}, 20);
    ASSERT_TRUE(world.Loaded);
    world.RunFor(10);
    const auto* const state = world.Find<QLabel>("lblPresentState");
    EXPECT_EQ(state->text(), "Listening - nothing is kept");
    world.Find<QPushButton>("cmdStartStop")->click();
    EXPECT_EQ(world.Form().chkStartStop[0].Value(), 1);
    EXPECT_EQ(state->text(), "Recording - this song had already begun");
    world.RunFor(70);
    EXPECT_EQ(state->text(), "Recording - kept from its beginning");
    world.Find<QPushButton>("cmdSkipThisRecording")->click();
    world.RunFor(1);
    EXPECT_EQ(state->text(), "Waiting for the next song");
}

TEST(MainWindow, TheFirstSongIsKeptFromItsBeginningIfThatWasHeard) {
    UiWorld world;  // the radio begins with a pause
    world.RunFor(20);
    world.Find<QPushButton>("cmdStartStop")->click();
    EXPECT_EQ(world.Find<QLabel>("lblPresentState")->text(), "Recording - kept from its beginning");
}

TEST(MainWindow, ListsEachSongWithWhatBecameOfIt) {
    UiWorld world;
    world.RunFor(5);
    world.Form().chkStartStop[1].Value(1);
    world.RunFor(200);
    const auto* const list = world.Find<QListView>("songs");
    ASSERT_GE(list->model()->rowCount(), 2);
    const QString oldest =
        list->model()->index(list->model()->rowCount() - 1, 0).data(Qt::AccessibleTextRole).toString();
    EXPECT_TRUE(oldest.contains("not wanted")) << oldest.toStdString();
    const QString next =
        list->model()->index(list->model()->rowCount() - 2, 0).data(Qt::AccessibleTextRole).toString();
    EXPECT_TRUE(next.contains("whole") && next.contains("MP3 made")) << next.toStdString();
}

TEST(MainWindow, ASongThatIsNotKeptBecauseOfTheListSaysSo) {
    UiWorld world;
    world.Form().txtWatch[1].Text("*");
    world.Form().cmdAddToWatchList[1].Press();
    world.Form().chkStartStop[0].Value(1);
    world.RunFor(130);
    const auto* const list = world.Find<QListView>("songs");
    ASSERT_GE(list->model()->rowCount(), 1);
    const QString newest = list->model()->index(0, 0).data(Qt::AccessibleTextRole).toString();
    EXPECT_TRUE(newest.contains("on the list")) << newest.toStdString();
}

TEST(MainWindow, ShowsArtistAndTitleOfWhatPlays) {
    UiWorld world;
    world.RunFor(20);
    EXPECT_FALSE(world.Form().txtSong.Text().empty());
    EXPECT_EQ(world.Find<QLineEdit>("txtSong")->text().toStdString(), world.Form().txtSong.Text());
    EXPECT_EQ(world.Find<QLineEdit>("txtArtist")->text().toStdString(), world.Form().txtArtist.Text());
}

TEST(MainWindow, NamesThePlayerAndNotTheKindOfSource) {
    UiWorld world;
    world.RunFor(2);
    EXPECT_EQ(world.Find<QLabel>("lblPlayer")->text(), "Demo radio");
    EXPECT_TRUE(world.Find<QLabel>("lblProvider_0")->isHidden());
}

TEST(MainWindow, ShowsNothingInThePlaceOfASourceThatIsNotThere) {
    UiWorld world;
    world.RunFor(2);
    world.Form().chkStationDataEnable.Value(0);
    world.RunFor(2);
    EXPECT_TRUE(world.Find<QLabel>("lblProvider_0")->isHidden());
    EXPECT_TRUE(world.Find<QLabel>("lblPlayer")->isHidden());
}

TEST(MainWindow, SaysTheLevelAndTheRoomOnTheDiskWhereThereIsSpaceForThem) {
    UiWorld world;
    world.Computer.Files.SetFreeSpace("/", uint64_t{425} << 29U);
    world.Window->resize(1100, 720);
    world.RunFor(20);
    auto* const figures = world.Find<QLabel>("lblLevelAndRoom");
    const QString text = figures->text();
    const QRegularExpression expected(QString::fromUtf8("^−\\d+ dB  ·  (\\d+ GB) free, (\\d+ h)$"));
    const QRegularExpressionMatch match = expected.match(text);
    ASSERT_TRUE(match.hasMatch()) << text.toStdString();
    EXPECT_EQ(match.captured(1), "212 GB");
    // Without the two limits of 300 MB, at 44.1 kHz.
    EXPECT_EQ(match.captured(2), "358 h");
    EXPECT_FALSE(figures->isHidden());
    world.Window->show();
    world.Window->resize(1, 1);
    QApplication::processEvents();
    EXPECT_TRUE(figures->isHidden() || figures->width() >= figures->sizeHint().width());
}

TEST(MainWindow, SaysThresholdsInDecibelsToo) {
    UiWorld world;
    world.Form().txtSilenceAmplitude.Text("100");
    EXPECT_EQ(world.Find<QLabel>("txtSilenceAmplitude_dB")->text(), QString::fromUtf8("−50 dB"));
    world.Form().txtSilenceAmplitude.Text("32768");
    EXPECT_EQ(world.Find<QLabel>("txtSilenceAmplitude_dB")->text(), "0 dB");
    world.Form().txtSilenceAmplitude.Text("0");
    EXPECT_EQ(world.Find<QLabel>("txtSilenceAmplitude_dB")->text(), QString::fromUtf8("−∞ dB"));
    for (const char* none : {"-1", "x", ""}) {
        world.Form().txtSilenceAmplitude.Text(none);
        EXPECT_EQ(world.Find<QLabel>("txtSilenceAmplitude_dB")->text(), "") << none;
    }
}

TEST(MainWindow, SaysWhatABracketWithoutItsEndMeans) {
    UiWorld world;
    const auto* const hint = world.Find<QLabel>("txtWatch_1_hint");
    ASSERT_NE(hint, nullptr);
    EXPECT_TRUE(hint->isHidden());
    world.Form().txtWatch[1].Text("[[[");
    EXPECT_FALSE(hint->isHidden());
    EXPECT_EQ(hint->text(), "There is no \"]\" after this \"[\": it stands for itself.");
    world.Form().txtWatch[1].Text("[ab]*");
    EXPECT_TRUE(hint->isHidden());
}

TEST(MainWindow, BringsUpTheTabsByTheirButtonsAndKeys) {
    UiWorld world;
    TabStrip& tabs = world.Form().tbsMain;
    world.Find<QToolButton>("TAB_PAUSE")->click();
    EXPECT_EQ(tabs.SelectedKey(), "TAB_PAUSE");
    tabs.Select("TAB_ABOUT");
    EXPECT_TRUE(world.Find<QToolButton>("TAB_ABOUT")->isChecked());
    SelectNeighbour(tabs, 1);
    EXPECT_EQ(tabs.SelectedKey(), "TAB_RECORDING");
    SelectNeighbour(tabs, -1);
    EXPECT_EQ(tabs.SelectedKey(), "TAB_ABOUT");
}

TEST(MainWindow, FollowsThePaletteOfTheDesktop) {
    const QPalette before = QApplication::palette();
    UiWorld world;
    QApplication::setPalette(QPalette(Qt::white, QColor(30, 30, 30)));
    QApplication::processEvents();
    EXPECT_TRUE(PresentLook().Dark);
    EXPECT_LT(world.Window->palette().color(QPalette::Window).lightness(), 128);
    QApplication::setPalette(QPalette(Qt::black, QColor(240, 240, 240)));
    QApplication::processEvents();
    EXPECT_GT(world.Window->palette().color(QPalette::Window).lightness(), 128);
    QApplication::setPalette(before);
}

/// Sets the palette of the desktop for a scope.
class DesktopPalette {
 public:
    explicit DesktopPalette(const QColor& window) { Set(window); }
    ~DesktopPalette() { QApplication::setPalette(Before); }
    DesktopPalette(const DesktopPalette&) = delete;
    DesktopPalette& operator=(const DesktopPalette&) = delete;

    static void Set(const QColor& window) {
        QApplication::setPalette(QPalette(window, window));
        QApplication::processEvents();
    }

 private:
    const QPalette Before = QApplication::palette();
};

const QColor LightDesktop(240, 240, 240);
const QColor DarkDesktop(30, 30, 30);

/// Each page in the middle of a recording, in the colours that the desktop has at the end.
std::vector<QImage> PagesIn(const QColor& atFirst, const QColor& atTheEnd) {
    const DesktopPalette palette(atFirst);
    UiWorld world;
    world.RunFor(5);
    world.Form().chkStartStop[1].Value(1);
    world.RunFor(160);
    std::vector<QImage> pages;
    for (const std::string& key : world.TabKeys()) {
        world.Form().tbsMain.Select(key);
        DesktopPalette::Set(atFirst);
        world.Window->grab();  // so that it is laid out
        DesktopPalette::Set(atTheEnd);
        pages.push_back(world.Window->grab().toImage());
    }
    return pages;
}

TEST(MainWindow, NothingKeepsTheColoursOfAnEarlierPalette) {
    const std::vector<QImage> followed = PagesIn(LightDesktop, DarkDesktop);
    const std::vector<QImage> dark = PagesIn(DarkDesktop, DarkDesktop);
    ASSERT_EQ(followed.size(), dark.size());
    for (size_t page = 0; page < dark.size(); ++page) {
        EXPECT_EQ(followed[page], dark[page]) << "page " << page;
        if (followed[page] == dark[page]) continue;
        followed[page].save(QString("followed-%1.actual").arg(page), "PNG");
        dark[page].save(QString("dark-%1.actual").arg(page), "PNG");
    }
}

TEST(MainWindow, ABoxThatIsOpenFollowsThePaletteToo) {
    const DesktopPalette palette(LightDesktop);
    QDialog box;
    Dress(box);
    EXPECT_GT(box.palette().color(QPalette::Window).lightness(), 128);
    DesktopPalette::Set(DarkDesktop);
    EXPECT_LT(box.palette().color(QPalette::Window).lightness(), 128);
}

TEST(MainWindow, ThePageOfTheRecordingIsUpToDateWhenItIsSeenAgain) {
    UiWorld world;
    world.RunFor(5);
    TabStrip& tabs = world.Form().tbsMain;
    tabs.Select("TAB_AUDIO");
    world.Form().chkStartStop[0].Value(1);
    tabs.Select("TAB_RECORDING");
    EXPECT_TRUE(world.Find<QLabel>("lblPresentState")->text().startsWith("Recording"));
}

TEST(MainWindow, NothingInItCanBePressedWhileTheProgramIsBusyWithASearch) {
    UiWorld world;
    world.RunFor(5);
    const auto* const record = world.Find<QPushButton>("cmdStartStop");
    world.Form().Enabled(false);
    EXPECT_FALSE(record->isEnabled());
    EXPECT_TRUE(world.Window->isEnabled());  // for the boxes that belong to it
    world.Form().Enabled(true);
    EXPECT_TRUE(record->isEnabled());
}

TEST(MainWindow, ComesBackWhereItWas) {
    UiWorld world;
    world.Window->show();
    world.Window->move(60, 40);
    world.Window->hide();
    world.Window->move(5, 7);  // as a desktop does that takes it for a new one
    world.Form().Visible(true);
    EXPECT_TRUE(world.Window->isVisible());
    EXPECT_EQ(world.Window->pos(), QPoint(60, 40));
}

TEST(MainWindow, IsClosedByTheProgramAlone) {
    UiWorld world;
    world.RunFor(5);
    world.Form().chkDelayUnload.Value(1);
    world.Form().chkStartStop[0].Value(1);
    world.Window->show();
    EXPECT_FALSE(world.Window->close());
    EXPECT_TRUE(world.Recorder->Running());
    EXPECT_TRUE(world.Window->close());
    EXPECT_FALSE(world.Recorder->Running());
}

double Contrast(const QColor& first, const QColor& second) {
    const auto light = [](const QColor& colour) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    };
    const double a = light(first) + 0.05;
    const double b = light(second) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

TEST(MainWindow, ItsTextsCanBeReadInBothPalettes) {
    const QPalette before = QApplication::palette();
    for (const QColor paper : {QColor(30, 30, 30), QColor(240, 240, 240)}) {
        QApplication::setPalette(QPalette(paper, paper));
        const Look& look = PresentLook();
        for (const QColor& ink : {look.Text, look.Dim, look.Accent, look.Good, look.Warning}) {
            EXPECT_GE(Contrast(ink, look.Window), 4.5) << ink.name().toStdString();
            EXPECT_GE(Contrast(ink, look.Panel), 4.5) << ink.name().toStdString();
        }
        EXPECT_GE(Contrast(look.OnAccent, look.Accent), 4.5);
    }
    QApplication::setPalette(before);
}

}  // namespace
}  // namespace Corvetape::Test
