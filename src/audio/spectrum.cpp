#include "audio/spectrum.h"

#include <kiss_fftr.h>

#include <array>
#include <new>
#include <vector>

namespace Corvetape {

struct Spectrum::Plan {
    Plan() : In(Size), Out(Bins), Transform(kiss_fftr_alloc(static_cast<int>(Size), 0, nullptr, nullptr)) {
        if (Transform == nullptr) throw std::bad_alloc();
    }
    ~Plan() { kiss_fftr_free(Transform); }
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;

    std::vector<float> In;
    std::vector<kiss_fft_cpx> Out;
    kiss_fftr_cfg Transform;
    std::array<float, Bins> Powers{};
};

Spectrum::Spectrum() : Planned(std::make_unique<Plan>()) {}

Spectrum::~Spectrum() = default;

std::span<float, Spectrum::Size> Spectrum::Samples() {
    return std::span<float, Size>(Planned->In.data(), Size);
}

std::span<const float, Spectrum::Bins> Spectrum::Power() {
    kiss_fftr(Planned->Transform, Planned->In.data(), Planned->Out.data());
    for (size_t bin = 0; bin < Bins; ++bin) {
        const kiss_fft_cpx value = Planned->Out[bin];
        Planned->Powers[bin] = value.r * value.r + value.i * value.i;
    }
    return Planned->Powers;
}

}  // namespace Corvetape
