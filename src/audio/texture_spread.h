#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "audio/slot_features.h"

namespace Corvetape {

inline constexpr size_t TexturePairs = TextureSize * (TextureSize + 1) / 2;

/// A lower triangle by rows: a covariance, or its Cholesky factor with the inverse of its diagonal.
using TextureTriangle = std::array<float, TexturePairs>;

/// Sums over the textures of all slots up to a place.
struct TextureSums {
    std::array<double, TextureSize> Sound{};
    std::array<double, TexturePairs> Products{};

    void Add(const Texture& texture);
};

/// Slots between two places, one or more.
struct TextureStretch {
    const TextureSums& Begin;  ///< of what is before them
    const TextureSums& End;    ///< of these as well
    int32_t Slots = 1;
};

/// What lies on the two sides of a join: means, and the factor of the covariance that both share.
struct TextureSides {
    Texture Left{};
    Texture Right{};
    TextureTriangle Factor{};
    float Shift = 0;  ///< how far the means are apart, for the measure of their spread
};

/// Whether music that gets louder has changed.
enum class Loudnesses : uint8_t { Compared, Ignored };

/// Measures two stretches of sound against the spread that both have.
TextureSides SidesOf(const TextureStretch& left, const TextureStretch& right,
                     Loudnesses loudness = Loudnesses::Compared);

/// Solves L y = v in place.
void Whiten(const TextureTriangle& factor, Texture& vector);

}  // namespace Corvetape
