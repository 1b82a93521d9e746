#include "ui/tray_icon.h"

#include <gtest/gtest.h>

namespace Corvetape::Test {
namespace {

TEST(TrayIcon, ShowsTheAmpersandsOfANameOnce) {
    EXPECT_EQ(PlainTip("Marrow &&& Mint:\nTea"), "Marrow & Mint:\nTea");
}

TEST(TrayIcon, WithoutAnAreaForItItIsNotPresent) {
    frmMain form;
    const TrayIcon icon(form, [] {});
    EXPECT_FALSE(icon.Present());
}

}  // namespace
}  // namespace Corvetape::Test
