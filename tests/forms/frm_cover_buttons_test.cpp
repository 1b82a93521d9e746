#include "forms/frm_cover_buttons.h"

#include <gtest/gtest.h>

namespace Corvetape::Test {
namespace {

TEST(CoverBar, ShowsTheProgramsNameUntilThereIsATitle) {
    const frmCoverButtons bar;
    EXPECT_EQ(bar.Name(), "frmCoverButtons");
    EXPECT_EQ(bar.Find("lblArtist"), &bar.lblArtist);
    EXPECT_EQ(bar.Find("lblSong"), &bar.lblSong);
    EXPECT_EQ(bar.lblArtist.Caption(), "Corvetape");
    EXPECT_EQ(bar.lblSong.Caption(), "Corvetape");
}

}  // namespace
}  // namespace Corvetape::Test
