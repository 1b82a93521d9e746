#pragma once

#include <cstddef>
#include <memory>
#include <span>

namespace Corvetape {

/// The power spectrum of 2048 real samples. What computes it is known to its source file alone.
///
/// All memory is taken when it is made. Each belongs to one thread at a time.
class Spectrum {
 public:
    static constexpr size_t Size = 2048;          ///< samples that go in
    static constexpr size_t Bins = Size / 2 + 1;  ///< powers that come out, from 0 Hz to half the sample rate

    Spectrum();
    ~Spectrum();
    Spectrum(const Spectrum&) = delete;
    Spectrum& operator=(const Spectrum&) = delete;

    /// The samples of the next spectrum. They keep what was written until it is written over.
    std::span<float, Size> Samples();

    /// The squared magnitude of each bin, not scaled: a sine of amplitude 1 without a window comes to
    /// (Size / 2)^2. Valid until the next call.
    std::span<const float, Bins> Power();

 private:
    struct Plan;
    std::unique_ptr<Plan> Planned;
};

}  // namespace Corvetape
