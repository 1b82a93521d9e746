#include "audio/certainty_words.h"

#include <array>

namespace Corvetape {

namespace {

constexpr std::array<Certainty, 3> Steps = {Certainty::Unsure, Certainty::Likely, Certainty::Sure};

}  // namespace

std::string_view WordOf(Certainty certainty) {
    switch (certainty) {
        case Certainty::None:
            return {};
        case Certainty::Unsure:
            return "unsure";
        case Certainty::Likely:
            return "likely";
        case Certainty::Sure:
            return "sure";
    }
    return {};
}

Certainty CertaintyFrom(std::string_view word) {
    for (const Certainty step : Steps) {
        if (word == WordOf(step)) return step;
    }
    return Certainty::None;
}

}  // namespace Corvetape
