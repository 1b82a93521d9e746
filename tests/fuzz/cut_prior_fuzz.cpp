// What was learned of a source, read from its file.
#include <cmath>

#include "audio/cut_prior.h"
#include "fuzz/support/fuzz.h"

namespace Corvetape {

using Fuzz::Require;

void FuzzOne(Fuzz::Input input) {
    auto prior = CutPrior::FromText(input.Rest());
    if (!prior) return;
    const auto again = CutPrior::FromText(prior->Text());
    Require(again && again->Text() == prior->Text(), "what was written is read as it was");
    prior->LearnCorrection(-20);
    double sum = 0;
    for (const EdgeRow& row : prior->Expected()) {
        for (const float chance : row) {
            Require(chance > 0, "nothing is ruled out");
            sum += chance;
        }
    }
    Require(std::abs(sum - 1) < 1e-3, "chances add up to 1");
}

}  // namespace Corvetape
