#include "live/soak/truth.h"

#include <algorithm>
#include <cstring>

namespace Corvetape {

namespace {

uint64_t KeyOf(Frame first, Frame second) {
    uint64_t key = 0;
    std::memcpy(&key, &first, sizeof(first));
    std::memcpy(reinterpret_cast<std::byte*>(&key) + sizeof(first), &second, sizeof(second));
    return key;
}

}  // namespace

Truth::Truth(uint64_t frames) : Kept(frames) {
    for (uint64_t frame = 0; frame + 1 < frames; frame += AnchorDistance) {
        if (Radio::Sounds(frame)) Anchors[KeyOf(Radio::At(frame), Radio::At(frame + 1))] = frame;
    }
}

void Truth::Take(std::span<const Frame> kept) {
    for (size_t at = 0; at < kept.size();) {
        if (kept[at] == Frame{}) {
            ++SilentFrames;
            ++at;
        } else {
            at = Place(kept, at);
        }
    }
}

/// Puts the sound from `from` on to its place, as far as it goes without a break. One after it.
size_t Truth::Place(std::span<const Frame> kept, size_t from) {
    const size_t limit = std::min(kept.size(), from + 2 * AnchorDistance);
    for (size_t at = from; at + 1 < limit; ++at) {
        const auto anchor = Anchors.find(KeyOf(kept[at], kept[at + 1]));
        if (anchor == Anchors.end() || anchor->second < at - from) continue;
        uint64_t frame = anchor->second - (at - from);
        for (; from < at && kept[from] != Radio::At(frame); ++from, ++frame) ++ForeignFrames;
        for (; from < kept.size() && frame < Kept.size() && kept[from] == Radio::At(frame); ++from, ++frame) {
            Keep(frame);
        }
        return std::max(from, at);
    }
    ++ForeignFrames;
    return from + 1;
}

void Truth::Keep(uint64_t frame) {
    if (!Radio::Sounds(frame)) return;
    ++(Kept[frame] ? TwiceFrames : KeptFrames);
    Kept[frame] = true;
}

uint64_t Truth::FirstKept() const {
    return static_cast<uint64_t>(std::ranges::find(Kept, true) - Kept.begin());
}

std::vector<Stretch> Truth::Missing(uint64_t end) const {
    std::vector<Stretch> missing;
    for (uint64_t frame = FirstKept(); frame < std::min<uint64_t>(end, Kept.size()); ++frame) {
        if (Kept[frame] || !Radio::Sounds(frame)) continue;
        if (missing.empty() || missing.back().End != frame) missing.push_back({frame, frame});
        missing.back().End = frame + 1;
    }
    return missing;
}

Stretch Truth::GapAround(uint64_t frame) const {
    Stretch gap{std::min<uint64_t>(frame, Kept.size()), std::min<uint64_t>(frame, Kept.size())};
    while (gap.Begin > 0 && !Kept[gap.Begin - 1]) --gap.Begin;
    while (gap.End < Kept.size() && !Kept[gap.End]) ++gap.End;
    return gap;
}

}  // namespace Corvetape
