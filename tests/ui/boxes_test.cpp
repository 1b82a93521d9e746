#include "ui/boxes.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>

namespace Corvetape::Test {
namespace {

TEST(Boxes, AreClosedFromWithinWhicheverStandsOpen) {
    QWidget window;
    QMessageBox outer(&window);
    QMessageBox inner(&window);
    inner.addButton(QMessageBox::Yes);
    inner.addButton(QMessageBox::No);
    int answer = QMessageBox::Yes;
    QTimer::singleShot(0, &outer, [&] {
        QTimer::singleShot(0, &inner, [] { CloseBoxes(); });
        answer = inner.exec();
    });
    outer.exec();  // would wait for a user who never comes
    EXPECT_FALSE(outer.isVisible());
    EXPECT_FALSE(inner.isVisible());
    EXPECT_NE(answer, QMessageBox::Yes);
}

/// Opens a menu that is waited for, as the toolkit's own number boxes do.
TEST(Boxes, AMenuThatIsWaitedForIsClosedWithThem) {
    QMenu menu;
    menu.addAction("Something");
    QTimer::singleShot(0, &menu, [] { CloseBoxes(); });
    EXPECT_EQ(menu.exec(QPoint(10, 10)), nullptr);  // would wait for a user who never comes
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

}  // namespace
}  // namespace Corvetape::Test
