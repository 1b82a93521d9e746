#include "audio/spectrum.h"

#include <fftw3.h>

#include <algorithm>
#include <array>
#include <new>

namespace Corvetape {

struct Spectrum::Plan {
    Plan()
        : In(fftwf_alloc_real(Size)),
          Out(fftwf_alloc_complex(Bins)),
          // Estimated, not measured: a measured plan depends on how busy the machine is, and with it the last
          // digits of every result.
          Transform(In == nullptr || Out == nullptr
                        ? nullptr
                        : fftwf_plan_dft_r2c_1d(static_cast<int>(Size), In, Out, FFTW_ESTIMATE)) {
        if (Transform == nullptr) {
            Release();
            throw std::bad_alloc();
        }
        std::fill_n(In, Size, 0.0F);
    }
    ~Plan() {
        fftwf_destroy_plan(Transform);
        Release();
    }
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;

    void Release() {
        fftwf_free(In);
        fftwf_free(Out);
    }

    float* In;
    fftwf_complex* Out;
    fftwf_plan Transform;
    std::array<float, Bins> Powers{};
};

Spectrum::Spectrum() : Planned(std::make_unique<Plan>()) {}

Spectrum::~Spectrum() = default;

std::span<float, Spectrum::Size> Spectrum::Samples() {
    return std::span<float, Size>(Planned->In, Size);
}

std::span<const float, Spectrum::Bins> Spectrum::Power() {
    fftwf_execute(Planned->Transform);
    for (size_t bin = 0; bin < Bins; ++bin) {
        const float real = Planned->Out[bin][0];
        const float imaginary = Planned->Out[bin][1];
        Planned->Powers[bin] = real * real + imaginary * imaginary;
    }
    return Planned->Powers;
}

}  // namespace Corvetape
