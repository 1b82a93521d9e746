#include "post/transfer/song_counter.h"

#include "core/text/numbers.h"

namespace Corvetape {

namespace {

constexpr const char* TotalName = "TotalCountOfSongs";

}  // namespace

void SongCounter::Load() {
    Count = RoundToInt32(NumberOf(Registry.ReadUserValue("", TotalName)));
}

int32_t SongCounter::Next() {
    const auto next = static_cast<int32_t>(static_cast<uint32_t>(Count) + 1);
    Count = Registry.RaiseUserNumber("", TotalName).value_or(next);
    return Count;
}

}  // namespace Corvetape
