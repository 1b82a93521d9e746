#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audio/slot_features.h"
#include "support/made_radio.h"

namespace Corvetape::Bench {

/// What the search for a boundary knows of a made-up radio: features and level of each slot of 50 ms.
struct MeasuredRadio {
    std::vector<SlotFeatures> Slots;
    std::vector<int32_t> Levels;  ///< peaks, 0 to 32768
    std::vector<RadioJoin> Joins;
};

/// Measures a radio as its station sends it. Nothing of it is there if ffmpeg or its encoder is missing.
MeasuredRadio MeasureRadio(const MadeRadio& radio, StationSound station, const WorkFolder& work);

/// Keeps what was measured in a file, which this program alone reads. False if the disk refuses.
bool Keep(const MeasuredRadio& radio, const std::string& path);

/// Reads such a file; `kind` is that of its joins. Without slots if it is not there or was written by a
/// program whose features have another size.
MeasuredRadio ReadMeasured(const std::string& path, const JoinKind& kind);

}  // namespace Corvetape::Bench
