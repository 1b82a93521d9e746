#pragma once

#include <cstdint>
#include <optional>

#include "audio/cut_prior.h"
#include "audio/slot_features.h"

namespace Corvetape {

/// Finds somebody who speaks between two songs: a voice in the middle of the stereo image, with the pauses of
/// speech, between music that is wider. `change` is the slot of the change of title; `reach` are the edges,
/// counted from it, between which both ends of the talk have to be. The first edge of the result is where the
/// old song ends, the last one where the new song begins, both to a slot.
///
/// Of a station in mono nothing is found, and neither is a voice with music under it.
std::optional<EdgeRange> FindTalk(const FeatureHistory& history, int64_t change, EdgeRange reach);

}  // namespace Corvetape
