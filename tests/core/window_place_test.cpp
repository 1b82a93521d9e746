#include "core/window_place.h"

#include <gtest/gtest.h>

#include <array>

namespace Corvetape::Test {
namespace {

constexpr TwipSize Bar{1000, 500};
constexpr TwipSize Screen{20'000, 10'000};

TEST(StoredBarPosition, IsTakenWhereTheBarIsWhollyOnTheScreen) {
    EXPECT_EQ(StoredBarPosition("300;200;0;0", Bar, Screen), (WindowPosition{300, 200}));
    EXPECT_EQ(StoredBarPosition("300;200", Bar, Screen), (WindowPosition{300, 200}));
    EXPECT_EQ(StoredBarPosition("19000;9500", Bar, Screen), (WindowPosition{19'000, 9500}));
    EXPECT_FALSE(StoredBarPosition("19001;200", Bar, Screen));
    EXPECT_FALSE(StoredBarPosition("300;9501", Bar, Screen));
    EXPECT_FALSE(StoredBarPosition("-300;200", Bar, Screen));
    EXPECT_FALSE(StoredBarPosition("300;-200", Bar, Screen));
    EXPECT_FALSE(StoredBarPosition("2147483647;200", Bar, Screen));
}

TEST(StoredBarPosition, ZeroStandsForNone) {
    EXPECT_FALSE(StoredBarPosition("0;0", Bar, Screen));
    EXPECT_FALSE(StoredBarPosition("0;200", Bar, Screen));
    EXPECT_FALSE(StoredBarPosition("300;0", Bar, Screen));
    EXPECT_FALSE(StoredBarPosition("", Bar, Screen));
    EXPECT_FALSE(StoredBarPosition("300", Bar, Screen));
}

TEST(DefaultBarPositions, ThePlainBarIsInTheTopRightCorner) {
    EXPECT_EQ(DefaultPlainBarPosition(Bar, Screen), (WindowPosition{19'000, 0}));
}

TEST(DefaultBarPositions, WhereTheMainWindowIsFromTheLeftPlaysNoPartForTheCoverBar) {
    const WindowPosition at = DefaultCoverBarPosition(Bar, {4000, 700, 9000, 6000});
    EXPECT_EQ(at, (WindowPosition{8500, 1200}));
    EXPECT_EQ(DefaultCoverBarPosition(Bar, {0, 700, 9000, 6000}), at);
}

TEST(BesideMainWindow, ABarThatCoversTheWindowGoesToItsRight) {
    const WindowPlace window{4000, 700, 9000, 6000};
    const WindowPosition at = DefaultCoverBarPosition(Bar, window);
    const WindowPosition beside = BesideMainWindow(at, Bar, window, Screen);
    EXPECT_GE(beside.Left, window.Left + window.Width);
    EXPECT_LE(beside.Left + Bar.Width, Screen.Width);
    EXPECT_EQ(beside.Top, at.Top);
}

TEST(BesideMainWindow, ToItsLeftWhereTheScreenEndsAtItsRight) {
    const WindowPlace window{Screen.Width - 9000, 700, 9000, 6000};
    const WindowPosition at{window.Left + 100, 1200};
    const WindowPosition beside = BesideMainWindow(at, Bar, window, Screen);
    EXPECT_GE(beside.Left, 0);
    EXPECT_LE(beside.Left + Bar.Width, window.Left);
}

TEST(BesideMainWindow, StaysWithoutRoomAndWhereItCoversNothing) {
    const WindowPosition over{500, 1200};
    EXPECT_EQ(BesideMainWindow(over, Bar, {0, 0, Screen.Width, Screen.Height}, Screen), over);
    EXPECT_EQ(BesideMainWindow(over, Bar, {500 + Bar.Width, 700, 9000, 6000}, Screen), over)
        << "its neighbour";
    EXPECT_EQ(BesideMainWindow(over, Bar, {0, 1200 + Bar.Height, 9000, 6000}, Screen), over) << "below it";
}

TEST(DisplayScaling, DoesNothingOnTheDisplayOfTheDesign) {
    const DisplayScale scale = DisplayScaleOf(12, 12);
    EXPECT_TRUE(scale.IsDesign());
    EXPECT_EQ(ScaledPlace({101, 102, 1200, 303}, scale), (WindowPlace{101, 102, 1200, 303}));
    EXPECT_EQ(ScaledFontSize(8, scale), 8);
}

TEST(DisplayScaling, KeepsThePixelsOfTheDesign) {
    const DisplayScale scale = DisplayScaleOf(15, 18);
    EXPECT_EQ(ScaledPlace({120, 100, 1200, 600}, scale), (WindowPlace{150, 150, 1500, 900}));
    EXPECT_FLOAT_EQ(ScaledFontSize(8, scale), 12);
}

TEST(DisplayScaling, LeavesTheFrameOfAWindowAsItIs) {
    const TwipSize size = ScaledFormSize({1300, 900}, {1200, 600}, DisplayScaleOf(15, 15));
    EXPECT_EQ(size.Width, 100 + 1500);
    EXPECT_EQ(size.Height, 300 + 750);
}

TEST(DisplayScaling, ScalesAFormWhereItStands) {
    Form form("frmAny", "Any");
    form.Place({300, 450, 1300, 900});
    ScaleFormToDisplay(form, {1200, 600}, DisplayScaleOf(15, 15));
    EXPECT_EQ(form.Place(), (WindowPlace{300, 450, 100 + 1500, 300 + 750}));
    ScaleFormToDisplay(form, {1500, 750}, DisplayScaleOf(12, 12));
    EXPECT_EQ(form.Place(), (WindowPlace{300, 450, 100 + 1500, 300 + 750}));
}

TEST(AnswerTo, AMinimisedWindowHidesOnlyWhereAnIconBringsItBack) {
    EXPECT_EQ(AnswerTo(WindowState::Minimised, true, false), WindowAnswer::HideToTray);
    EXPECT_EQ(AnswerTo(WindowState::Minimised, false, false), WindowAnswer::Stay);
    EXPECT_EQ(AnswerTo(WindowState::Normal, true, true), WindowAnswer::Stay);
}

TEST(AnswerTo, TheButtonThatMaximisesFlipsTheBarUnlessTheUserWantsALargeWindow) {
    EXPECT_EQ(AnswerTo(WindowState::Maximised, true, false), WindowAnswer::FlipQuickBar);
    EXPECT_EQ(AnswerTo(WindowState::Maximised, true, true), WindowAnswer::Stay);
}

TEST(StoredPosition, MovesTheWindowToLeftAndTop) {
    EXPECT_EQ(StoredPosition("300;300;9000;7000"), (WindowPosition{300, 300}));
    EXPECT_EQ(StoredPosition("-1;5;1;1"), (WindowPosition{-1, 5}));
}

TEST(StoredPosition, WithoutACommonBitTheWindowStays) {
    EXPECT_EQ(StoredPosition("0;500;9000;7000"), std::nullopt);
    EXPECT_EQ(StoredPosition("4096;3072;9000;7000"), std::nullopt);
}

TEST(StoredPosition, OfAWindowWithoutWidthOrHeightIsNone) {
    EXPECT_EQ(StoredPosition("300;300;0;7000"), std::nullopt);
    EXPECT_EQ(StoredPosition("300;300;9000;0"), std::nullopt);
    EXPECT_EQ(StoredPosition("300;300;9000;x"), std::nullopt);
}

TEST(StoredPosition, FewerThanFourPiecesAreNoPosition) {
    EXPECT_EQ(StoredPosition(""), std::nullopt);
    EXPECT_EQ(StoredPosition("300;300;9000"), std::nullopt);
    EXPECT_EQ(StoredPosition("a;b;c;d"), std::nullopt);
    EXPECT_EQ(StoredPosition("300;300;1;1;1"), (WindowPosition{300, 300}));
}

constexpr WindowPlace Main{0, 450, 19200, 14550};
constexpr WindowPlace RightOfIt{19200, 0, 15000, 15000};

WindowPosition Within(WindowPosition at) {
    return WithinReach(at, 15000, std::array{Main, RightOfIt});
}

TEST(Reach, APlaceOfWhichAPieceOfTheTitleIsSeenStays) {
    for (const WindowPosition at : {WindowPosition{200, 450}, {-13560, 900}, {18000, 14520}, {32760, 0}}) {
        EXPECT_EQ(Within(at), at) << at.Left << ";" << at.Top;
    }
}

TEST(Reach, ATitleThatNoScreenShowsIsBroughtBack) {
    EXPECT_EQ(Within({-15, -300}), (WindowPosition{0, 450})) << "above the upper edge";
    EXPECT_EQ(Within({300, 14535}), (WindowPosition{300, 14520})) << "below the lower edge";
    EXPECT_EQ(Within({-13575, 900}), (WindowPosition{0, 900})) << "left of all screens";
    EXPECT_EQ(Within({40000, 900}), (WindowPosition{4200, 900})) << "on a screen that was taken away";
    EXPECT_EQ(Within({INT32_MIN, INT32_MAX}), (WindowPosition{0, 14520}));
    EXPECT_EQ(Within({INT32_MAX, INT32_MIN}), (WindowPosition{4200, 450}));
}

TEST(Reach, AWindowWiderThanTheScreenBeginsAtItsLeftEdge) {
    EXPECT_EQ(WithinReach({90, 90}, 30000, std::array{Main}), (WindowPosition{0, 450}));
}

TEST(Reach, WithoutScreensNothingIsMoved) {
    EXPECT_EQ(WithinReach({-15, -300}, 15000, {}), (WindowPosition{-15, -300}));
}

}  // namespace
}  // namespace Corvetape::Test
