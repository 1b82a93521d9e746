#include "ui/boxes.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace Corvetape::Test
