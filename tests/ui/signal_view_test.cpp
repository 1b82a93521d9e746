// The picture of the signal: cheap to paint, and quiet to look at.
#include "ui/signal_view.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include "ui/look.h"
#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

constexpr int Wide = 800;  // three columns a pixel
constexpr int High = 120;
constexpr int FirstRow = 30;  // of those that only the bars are in
constexpr int LastRow = 90;

QImage Drawn(QWidget& view, const QRect& part) {
    QImage picture(view.size(), QImage::Format_RGB32);
    picture.fill(Qt::magenta);
    view.render(&picture, part.topLeft(), part);
    return picture;
}

/// A view of its own that the run of a world fills. Its song begins before all that it shows.
struct Signal {
    Signal() : View(*World.Ui) {
        View.resize(Wide, High);
        World.RunFor(40);
    }
    QImage Now() { return Drawn(View, View.rect()); }

    UiWorld World;
    SignalView View;
};

/// How many pixels the bars have moved to the left from one picture to another; nothing if they look
/// otherwise.
std::optional<int> MovedBy(const QImage& before, const QImage& now) {
    const auto same = [&](int way) {
        for (int y = FirstRow; y < LastRow; ++y) {
            // Without the newest bar, which still grew, and the frame.
            for (int x = way + 4; x < Wide - 8; ++x) {
                if (before.pixel(x, y) != now.pixel(x - way, y)) return false;
            }
        }
        return true;
    };
    for (int way = 0; way < Wide / 2; ++way) {
        if (same(way)) return way;
    }
    return std::nullopt;
}

TEST(SignalView, MovesByWholePixelsAndNeverLooksOtherwise) {
    Signal signal;
    const QImage before = signal.Now();
    signal.World.Computer.Loop.RunFor(std::chrono::milliseconds(700));
    const std::optional<int> shortly = MovedBy(before, signal.Now());
    signal.World.RunFor(9);
    const std::optional<int> later = MovedBy(before, signal.Now());
    ASSERT_TRUE(shortly && later);
    EXPECT_NEAR(*shortly, 0.7 * 20 / 3, 8);  // the trace is followed once a second here
    EXPECT_NEAR(*later, 9.7 * 20 / 3, 8);
    EXPECT_GT(*later, 50);
}

TEST(SignalView, ThePartThatMovesIsPaintedAloneAsItIsWithinTheWhole) {
    Signal signal;
    signal.World.Form().chkStartStop[0].Value(1);
    signal.World.RunFor(5);
    const QRect moving(1, Grid, Wide - 2, High - Grid - 18);
    const QImage whole = signal.Now();
    const QImage part = Drawn(signal.View, moving);
    EXPECT_EQ(part.copy(moving), whole.copy(moving));
    EXPECT_EQ(part.pixelColor(5, High - 5), QColor(Qt::magenta));  // the words below are not painted for it
}

TEST(SignalView, WhatIsKeptHasTheAccent) {
    Signal signal;
    const auto has = [](const QImage& picture, const QColor& colour) {
        for (int x = 4; x < Wide - 4; ++x) {
            if (picture.pixelColor(x, 56) == colour) return true;
        }
        return false;
    };
    EXPECT_FALSE(has(signal.Now(), PresentLook().Accent));
    EXPECT_TRUE(has(signal.Now(), PresentLook().Wave));
    signal.World.Form().chkStartStop[0].Value(1);
    EXPECT_TRUE(has(signal.Now(), PresentLook().Accent));
}

TEST(SignalView, WhatWasKeptHasTheAccentStill) {
    Signal signal;
    signal.World.Form().cmdQuickRecord.Press();
    while (signal.World.Songs.KeptSongs() == 0) signal.World.RunFor(1);
    signal.World.RunFor(10);
    ASSERT_FALSE(signal.World.Recorder->Values().Flags.RecordCurrentSong);
    const QImage picture = signal.Now();
    const auto shareOf = [&picture](const QColor& colour, int from, int to) {
        int count = 0;
        for (int x = from; x < to; ++x) count += picture.pixelColor(x, 56) == colour ? 1 : 0;
        return static_cast<double>(count) / (to - from);
    };
    // A pixel stands for 0.15 s: the song that plays now is at the right, the one that was kept before it.
    EXPECT_GT(shareOf(PresentLook().Accent, Wide - 300, Wide - 150), 0.3);
    EXPECT_EQ(shareOf(PresentLook().Wave, Wide - 300, Wide - 150), 0);
    EXPECT_EQ(shareOf(PresentLook().Accent, Wide - 40, Wide), 0);
    EXPECT_GT(shareOf(PresentLook().Wave, Wide - 40, Wide), 0.3);
}

}  // namespace
}  // namespace Corvetape::Test
