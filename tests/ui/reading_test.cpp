// Who cannot see the window, or reads it in another language or at another size, finds the same in it.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSlider>
#include <QStackedWidget>

#include <QApplication>
#include <QDropEvent>
#include <ctime>

#include "ui/binders.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

class Reading : public testing::TestWithParam<const char*> {};

template <typename Visit>
void ForEachShown(UiWorld& world, Visit visit) {
    for (const std::string& key : world.TabKeys()) {
        world.Form().tbsMain.Select(key);
        world.RunFor(1);
        QApplication::processEvents();
        for (QWidget* widget : world.Window->findChildren<QWidget*>()) {
            if (widget->isVisibleTo(world.Window.get())) visit(key, widget);
        }
    }
}

TEST_P(Reading, EverythingThatTakesTheKeyboardHasANameForThoseWhoCannotSeeIt) {
    UiWorld world(GetParam());
    world.RunFor(5);
    ForEachShown(world, [](const std::string& key, QWidget* widget) {
        const bool control = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QLineEdit*>(widget) ||
                             qobject_cast<QComboBox*>(widget) || qobject_cast<QListView*>(widget) ||
                             qobject_cast<QPlainTextEdit*>(widget) || qobject_cast<QSlider*>(widget);
        if (!control || widget->objectName().isEmpty() || widget->objectName().startsWith("qt_")) return;
        QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(seen, nullptr);
        const QString name = seen->text(QAccessible::Name) + widget->toolTip();
        EXPECT_FALSE(name.trimmed().isEmpty()) << key << " " << widget->objectName().toStdString();
    });
}

/// The part of a page that can be seen: nothing scrolls to the side.
int WidthThatIsSeen(QWidget* widget, QWidget* window) {
    for (QWidget* above = widget->parentWidget(); above != nullptr; above = above->parentWidget()) {
        if (const auto* const area = qobject_cast<const QAbstractScrollArea*>(above)) {
            return area->viewport()->mapTo(window, QPoint()).x() + area->viewport()->width();
        }
    }
    return window->width();
}

TEST_P(Reading, NoTextIsCutOff) {
    UiWorld world(GetParam());
    world.RunFor(5);
    world.Window->resize(976, 720);
    ForEachShown(world, [](const std::string& key, QWidget* widget) {
        const auto* const button = qobject_cast<QAbstractButton*>(widget);
        const auto* const label = qobject_cast<QLabel*>(widget);
        const QString text = button ? button->text() : (label && !label->wordWrap() ? label->text() : "");
        // The message of the status line gives way to the others.
        if (text.isEmpty() || widget->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) return;
        EXPECT_GE(widget->width(), widget->fontMetrics().size(Qt::TextShowMnemonic, text).width())
            << key << " " << widget->objectName().toStdString() << ": " << text.toStdString();
        QWidget* const window = widget->window();
        EXPECT_LE(widget->mapTo(window, QPoint()).x() + widget->width(), WidthThatIsSeen(widget, window))
            << key << " " << widget->objectName().toStdString() << ": " << text.toStdString();
    });
}

/// Names of everything in the tree of the accessibility that takes the keyboard and has none, as roles.
void CollectNameless(QAccessibleInterface* node, int depth, std::vector<std::string>& found) {
    if (node == nullptr || depth > 40) return;
    const QAccessible::State state = node->state();
    const bool listEntry = node->role() == QAccessible::ListItem;
    if (state.focusable && !state.invisible && !state.disabled && !listEntry &&
        node->role() != QAccessible::Client && node->text(QAccessible::Name).trimmed().isEmpty()) {
        const QObject* const object = node->object();
        found.push_back(std::to_string(node->role()) + " " +
                        (object ? object->objectName().toStdString() : std::string("?")));
    }
    if (node->role() == QAccessible::List) return;
    for (int i = 0; i < node->childCount(); ++i) CollectNameless(node->child(i), depth + 1, found);
}

TEST_P(Reading, TheTreeOfTheAccessibilityNamesWhatTakesTheKeyboard) {
    UiWorld world(GetParam());
    world.Window->show();
    world.RunFor(5);
    for (const std::string& key : world.TabKeys()) {
        world.Form().tbsMain.Select(key);
        world.RunFor(1);
        QApplication::processEvents();
        std::vector<std::string> nameless;
        CollectNameless(QAccessible::queryAccessibleInterface(world.Window.get()), 0, nameless);
        EXPECT_EQ(nameless, std::vector<std::string>{}) << key;
    }
}

/// The role of the widget of a control, as the tree of the accessibility says it.
QAccessible::Role RoleOf(UiWorld& world, const char* name) {
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(world.Find<QWidget>(name));
    return seen != nullptr ? seen->role() : QAccessible::NoRole;
}

TEST(Roles, ControlsHaveTheRolesThatTheirUsersExpect) {
    UiWorld world;
    EXPECT_EQ(RoleOf(world, "cmdStartStop"), QAccessible::Button);
    EXPECT_EQ(RoleOf(world, "chkStartStop_0"), QAccessible::CheckBox);
    EXPECT_EQ(RoleOf(world, "optEncoder_1"), QAccessible::RadioButton);
    EXPECT_EQ(RoleOf(world, "txtLengthOfPause"), QAccessible::EditableText);
    EXPECT_EQ(RoleOf(world, "cmbInputDevices"), QAccessible::ComboBox);
    EXPECT_EQ(RoleOf(world, "lstWatch_0"), QAccessible::List);
    EXPECT_EQ(RoleOf(world, "vscMultiplier"), QAccessible::Slider);
    EXPECT_EQ(RoleOf(world, "songs"), QAccessible::List);
}

TEST(Roles, ARadioButtonIsReadAndPressedAsOne) {
    UiWorld world;
    const auto& formats = world.Form().optEncoder;
    const auto read = [&world](const char* name) {
        return QAccessible::queryAccessibleInterface(world.Find<QWidget>(name));
    };
    QAccessibleInterface* const mp3 = read("optEncoder_1");
    QAccessibleInterface* const none = read("optEncoder_0");
    ASSERT_EQ(formats.Selected(), 1);
    EXPECT_EQ(mp3->role(), QAccessible::RadioButton);
    EXPECT_TRUE(mp3->state().checkable);
    EXPECT_TRUE(mp3->state().checked);
    EXPECT_FALSE(none->state().checked);
    EXPECT_EQ(none->text(QAccessible::Name).toStdString(), formats[0].Caption());
    ASSERT_NE(none->actionInterface(), nullptr);
    none->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(formats.Selected(), 0);
    EXPECT_TRUE(none->state().checked);
    EXPECT_FALSE(mp3->state().checked);
}

TEST(Roles, TheListOfPagesIsReadAsTabsOfWhichOneIsSelected) {
    UiWorld world;
    const auto read = [&world](const char* name) {
        return QAccessible::queryAccessibleInterface(world.Find<QWidget>(name));
    };
    EXPECT_EQ(read("TAB_AUDIO")->role(), QAccessible::PageTab);
    EXPECT_EQ(read("TAB_AUDIO")->text(QAccessible::Name), "Audio Devices");
    EXPECT_FALSE(read("TAB_AUDIO")->state().selected);
    read("TAB_AUDIO")->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(world.Form().tbsMain.SelectedKey(), "TAB_AUDIO");
    EXPECT_TRUE(read("TAB_AUDIO")->state().selected);
    EXPECT_FALSE(read("TAB_RECORDING")->state().selected);
}

TEST(Scale, AtTwiceTheScaleNothingIsCutOffEither) {
    QProcess twice;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_SCALE_FACTOR", "2");
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    twice.setProcessEnvironment(environment);
    twice.setProcessChannelMode(QProcess::MergedChannels);
    twice.start(QCoreApplication::applicationFilePath(), {"--gtest_filter=*Reading.NoTextIsCutOff*"});
    ASSERT_TRUE(twice.waitForFinished(120'000));
    const QByteArray said = twice.readAll();
    EXPECT_EQ(twice.exitCode(), 0) << said.toStdString();
    EXPECT_TRUE(said.contains("[  PASSED  ] 2 tests.")) << said.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Languages, Reading, testing::Values("english", "german"));

/// What this process has used of the processors: other programs do not count.
double ProcessorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

TEST(LongLists, AreSearchedByTypingWithoutAPause) {
    UiWorld world;
    std::vector<ListItem> items;
    for (int i = 0; i < 100'000; ++i) items.push_back({"Song " + std::to_string(i + 100'000)});
    items[77'777].Text = "Zebra";
    world.Form().lstWatch[1].Items(std::move(items));
    auto* const list = world.Find<QListView>("lstWatch_1");
    ASSERT_EQ(list->model()->rowCount(), 100'000);
    const double begun = ProcessorSeconds();
    list->keyboardSearch("Zeb");
    EXPECT_EQ(list->currentIndex().row(), 77'777);
    // A song may not wait for it: the buffers of the input last for 1.5 s.
    EXPECT_LT(ProcessorSeconds() - begun, 1.5);
}

TEST(LongLists, AreSelectedAndEmptiedWithoutAPause) {
    UiWorld world;
    std::vector<ListItem> items;
    for (int i = 0; i < 100'000; ++i) items.push_back({"Song " + std::to_string(i + 100'000)});
    world.Form().lstWatch[1].Items(std::move(items));
    auto* const list = world.Find<QListView>("lstWatch_1");
    const double begun = ProcessorSeconds();
    list->selectAll();
    EXPECT_EQ(world.Form().lstWatch[1].SelCount(), 100'000);
    world.Find<QAbstractButton>("cmdDeleteFromWatchList_1")->click();
    EXPECT_EQ(list->model()->rowCount(), 0);
    EXPECT_LT(ProcessorSeconds() - begun, 1.5);
}

TEST(Lists, AreEditedFromTheKeyboardAlone) {
    UiWorld world;
    auto* const field = world.Find<QLineEdit>("txtWatch_1");
    auto* const list = world.Find<QListView>("lstWatch_1");
    const auto press = [](QWidget* widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(widget, &event);
    };
    const auto entries = [&world] { return world.Form().lstWatch[1].Items().size(); };
    press(field, Qt::Key_Return);
    EXPECT_EQ(entries(), 0U) << "nothing to add";
    field->insert("Rain");
    world.Form().txtWatch[1].Text("Rain");
    press(field, Qt::Key_Return);
    ASSERT_EQ(entries(), 1U);
    EXPECT_TRUE(field->text().isEmpty());
    press(list, Qt::Key_Delete);
    EXPECT_EQ(entries(), 1U) << "nothing is selected";
    list->setCurrentIndex(list->model()->index(0, 0));
    emit list->doubleClicked(list->currentIndex());
    EXPECT_EQ(field->text(), "Rain") << "a copy to be changed";
    press(list, Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(entries(), 1U);
    press(list, Qt::Key_Delete);
    EXPECT_EQ(entries(), 0U);
}

TEST(Dropping, MusicFilesAreAddedAndWithCtrlTakenOff) {
    UiWorld world;
    world.Form().tbsMain.Select("TAB_EXCLUDE");
    auto* const view = world.Find<QListView>("lstWatch_1");
    const auto drop = [&](Qt::KeyboardModifiers keys) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile("/music/Rain.mp3"), QUrl::fromLocalFile("/music/notes.txt")});
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(view->viewport(), &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(view->viewport(), &event);
    };
    drop(Qt::NoModifier);
    ASSERT_EQ(world.Form().lstWatch[1].Items().size(), 1U);
    EXPECT_EQ(world.Form().lstWatch[1].Items()[0].Text, "Rain");
    drop(Qt::ControlModifier);
    EXPECT_TRUE(world.Form().lstWatch[1].Items().empty());
}

TEST(Dropping, NeverMovesTheFilesWhateverTheirSourceProposes) {
    UiWorld world;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/music/Rain.mp3")});
    auto* const place = world.Find<QListView>("lstWatch_0")->viewport();
    QDragEnterEvent enter(QPoint(5, 5), Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton,
                          Qt::ShiftModifier);
    QApplication::sendEvent(place, &enter);
    QDropEvent event(QPointF(5, 5), Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton,
                     Qt::ShiftModifier);
    event.setDropAction(Qt::MoveAction);
    QApplication::sendEvent(place, &event);
    EXPECT_EQ(world.Form().lstWatch[0].Items().size(), 1U);
    EXPECT_EQ(event.dropAction(), Qt::CopyAction);
}

TEST(Dropping, TheAddressOfAPageIsNoFile) {
    UiWorld world;
    QMimeData data;
    data.setUrls({QUrl("http://radio.invalid/Rain.mp3")});
    auto* const place = world.Find<QListView>("lstWatch_0")->viewport();
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(place, &enter);
    EXPECT_FALSE(enter.isAccepted());
}

TEST(Dropping, OtherThingsAreRefused) {
    UiWorld world;
    QMimeData data;
    data.setText("Rain");
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(world.Find<QListView>("lstWatch_0")->viewport(), &enter);
    EXPECT_FALSE(enter.isAccepted());
}

}  // namespace
}  // namespace Corvetape::Test
