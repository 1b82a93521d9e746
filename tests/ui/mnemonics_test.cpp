// The keyboard reaches everything: letters with Alt, and Tab in the order in which a page is read.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <map>

#include "ui/mnemonics.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

TEST(Mnemonics, TakeTheFirstLetterOfAWordThatIsFree) {
    EXPECT_EQ(Marked("Save mixer settings", ""), "&Save mixer settings");
    EXPECT_EQ(Marked("Save mixer settings", "s"), "Save &mixer settings");
    EXPECT_EQ(Marked("Save mixer", "sm"), "S&ave mixer");
    EXPECT_EQ(Marked("Skip", "skip"), "Skip");
    EXPECT_EQ(Marked("&Skip", "s"), "&Skip");
    EXPECT_EQ(Marked("Folders && Files", "f"), "F&olders && Files");
    EXPECT_EQ(MarkedLetter("Folders && &Files"), 'f');
    EXPECT_TRUE(MarkedLetter("Folders && Files").isNull());
}

class KeyboardOf : public testing::TestWithParam<const char*> {};

QWidget* ShownPage(UiWorld& world, const std::string& tab) {
    world.Form().tbsMain.Select(tab);
    world.RunFor(1);
    QApplication::processEvents();
    return world.Window->findChild<QStackedWidget*>()->currentWidget();
}

/// Which texts have which letter on a page, and those without one.
std::map<QChar, QStringList> LettersOf(const QWidget& page) {
    std::map<QChar, QStringList> letters;
    for (const QWidget* widget : page.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&page)) continue;
        const auto* const button = qobject_cast<const QAbstractButton*>(widget);
        const auto* const label = qobject_cast<const QLabel*>(widget);
        const QString text = button ? button->text() : (label && label->buddy() ? label->text() : "");
        if (!text.isEmpty()) letters[MarkedLetter(text)] << text;
    }
    return letters;
}

TEST_P(KeyboardOf, EachTextOfAPageHasALetterOfItsOwn) {
    UiWorld world(GetParam());
    world.Window->show();
    for (const std::string& tab : world.TabKeys()) {
        for (const auto& [letter, texts] : LettersOf(*ShownPage(world, tab))) {
            EXPECT_FALSE(letter.isNull()) << tab << ": " << texts.join(", ").toStdString();
            EXPECT_EQ(texts.size(), 1) << tab << ": " << texts.join(", ").toStdString();
        }
    }
}

TEST_P(KeyboardOf, ATextThatChangesKeepsALetter) {
    UiWorld world(GetParam());
    world.Window->show();
    world.RunFor(5);
    auto* const button = world.Find<QPushButton>("cmdStartStop");
    const QString before = button->text();
    button->click();
    QApplication::processEvents();
    EXPECT_NE(button->text(), before);
    EXPECT_FALSE(MarkedLetter(button->text()).isNull()) << button->text().toStdString();
    for (const auto& [letter, texts] : LettersOf(*ShownPage(world, "TAB_RECORDING"))) {
        EXPECT_EQ(texts.size(), 1) << texts.join(", ").toStdString();
    }
}

/// By columns or by rows, but never up and to the left at once.
TEST_P(KeyboardOf, TabGoesThroughAPageInTheOrderInWhichItIsRead) {
    UiWorld world(GetParam());
    world.Window->show();
    for (const std::string& tab : world.TabKeys()) {
        QWidget* const page = ShownPage(world, tab);
        const auto counts = [page](const QWidget* widget) {
            return page->isAncestorOf(widget) && widget->isVisibleTo(page) && widget->isEnabled() &&
                   (widget->focusPolicy() & Qt::TabFocus) && !widget->inherits("QScrollArea");
        };
        QWidget* first = page->nextInFocusChain();
        QWidget* before = nullptr;
        for (QWidget* now = first; before == nullptr || now != first; now = now->nextInFocusChain()) {
            if (!counts(now)) {
                if (now->nextInFocusChain() == first) break;
                continue;
            }
            const QRect place(now->mapTo(page, QPoint()), now->size());
            if (before != nullptr) {
                const QRect earlier(before->mapTo(page, QPoint()), before->size());
                EXPECT_FALSE(place.bottom() <= earlier.top() && place.right() <= earlier.left())
                    << tab << ": " << before->objectName().toStdString() << " before "
                    << now->objectName().toStdString();
            }
            before = now;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, KeyboardOf, testing::Values("english", "german"));

}  // namespace
}  // namespace Corvetape::Test
