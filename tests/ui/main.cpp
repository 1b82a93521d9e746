#include <gtest/gtest.h>

#include <QApplication>

int main(int count, char** words) {
    qputenv("QT_QPA_PLATFORM", "offscreen");  // no test opens a window on somebody's screen
    const QApplication application(count, words);
    testing::InitGoogleTest(&count, words);
    return RUN_ALL_TESTS();
}
