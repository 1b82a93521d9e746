#include "cli/recut_choice.h"

#include <gtest/gtest.h>

#include "sim/sim_files.h"

namespace Corvetape {
namespace {

TEST(FindSongs, OfSongsOfOneNameAPathMeansTheOneThatHasItsFile) {
    SimFiles disk;
    KeptMargins replaced;
    replaced.Base = "one";
    replaced.MusicFile = "/music/Ann - One.mp3";
    KeptMargins newer = replaced;
    newer.Base = "two";
    newer.MusicKnown = true;
    const auto found = FindSongs(disk, {replaced, newer}, "/music/Ann - One.mp3");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].Base, "two");
    EXPECT_EQ(FindSongs(disk, {replaced, newer}, "Ann - One").size(), 2U);
    EXPECT_EQ(FindSongs(disk, {replaced, newer}, "one").size(), 1U) << "the other one has a name of its own";
}

}  // namespace
}  // namespace Corvetape
