#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/wave_in.h"

namespace Corvetape {

/// One device of a machine as if it were the only one, so that a command line records from what it named
/// and from nothing else.
class ChosenInput : public WaveIn {
 public:
    /// `inner` outlives it.
    ChosenInput(WaveIn& inner, std::string id) : Inner(inner), Id(std::move(id)) {}

    WaveInList Devices() override {
        WaveInList all = Inner.Devices();
        for (size_t i = 0; i < all.size(); ++i) {
            if (all[i].Id != Id) continue;
            Number = i;
            return std::vector<WaveInDevice>{all[i]};
        }
        all.clear();
        return all;
    }

    OpenedWaveIn Open(size_t device, const WaveFormat& format, BufferReturn mode,
                      WaveInEvents events) override {
        if (device != 0) return nullptr;
        return Inner.Open(Number, format, mode, std::move(events));
    }

 private:
    WaveIn& Inner;
    std::string Id;
    size_t Number = 0;
};

}  // namespace Corvetape
