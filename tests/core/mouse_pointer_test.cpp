#include "core/mouse_pointer.h"

#include <gtest/gtest.h>

namespace Corvetape {
namespace {

TEST(MousePointer, IsBusyForTheScopeOfItsObject) {
    Desktop screen;
    {
        clsMousePointer pointer(screen);
        EXPECT_EQ(screen.Pointer(), MousePointer::Busy);
        pointer.SetMousePointer(MousePointer::Default);
        EXPECT_EQ(screen.Pointer(), MousePointer::Default);
    }
    EXPECT_EQ(screen.Pointer(), MousePointer::Default);
}

TEST(MousePointer, PutsBackTheOneFromBefore) {
    Desktop screen;
    const clsMousePointer outer(screen);
    { const clsMousePointer inner(screen); }
    EXPECT_EQ(screen.Pointer(), MousePointer::Busy) << "the outer wait goes on";
}

TEST(MousePointer, DoesNotBringBackAWaitThatHasEndedMeanwhile) {
    Desktop screen;
    screen.Pointer(MousePointer::Busy);  // a page loads
    {
        const clsMousePointer pointer(screen);
        screen.Pointer(MousePointer::Default);  // it has come
    }
    EXPECT_EQ(screen.Pointer(), MousePointer::Default);
}

}  // namespace
}  // namespace Corvetape
