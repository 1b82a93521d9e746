#pragma once

#include <gtest/gtest.h>

#include <string>

#include "mixer/input_search.h"
#include "mixer/search_rig.h"

namespace Corvetape::Test {

/// A search on made-up inputs, with values of the user that it must put back.
class SearchTest : public testing::Test, protected SearchRig {
 protected:
    SearchTest() {
        Pause.LevelMultiplier = 300;
        Pause.SilenceAmplitude = 150;
        Pause.DetectSilenceByPeak = true;
        Pause.PauseBuffers = 10;
        Pause.EndOfSilenceAmplitude = 180;
        Signal.ActiveThreshold = 170;
    }

    bool UsersValuesAreBack() const {
        return Pause.LevelMultiplier == 300 && Pause.SilenceAmplitude == 150 && Pause.DetectSilenceByPeak &&
               Pause.PauseBuffers == 10 && Pause.EndOfSilenceAmplitude == 180 &&
               Signal.ActiveThreshold == 170;
    }

    InputSearch Search{{Mixers, Inputs, Pause, Signal, Media, Options, Wait}, Computer.Dialogs, Texts};
};

/// Inputs that are devices of their own.
class DeviceSearch : public SearchTest {
 protected:
    std::string Run() {
        EXPECT_TRUE(Inputs.FillInputDevices());
        return Search.SearchInputDevice();
    }
};

}  // namespace Corvetape::Test
