// The window is not too wide for a small screen, and no text in it is cut off.
#include <gtest/gtest.h>

#include "ui/ui_world.h"

namespace Corvetape::Test {
namespace {

/// The narrowest window that all pages fit into.
constexpr int NarrowestWidth = 976;

class Geometry : public testing::TestWithParam<const char*> {};

TEST_P(Geometry, AllPagesFitIntoANarrowWindow) {
    UiWorld world(GetParam());
    world.RunFor(5);
    EXPECT_LE(world.Window->minimumSizeHint().width(), NarrowestWidth);
}

INSTANTIATE_TEST_SUITE_P(Languages, Geometry, testing::Values("english", "german"));

}  // namespace
}  // namespace Corvetape::Test
