#include "audio/texture_spread.h"

#include <cmath>

namespace Corvetape {

namespace {

/// Added to every variance: below this, differences are noise.
constexpr double LeastVariance = 0.08;

/// Replaces the lower triangle of a positive definite matrix by its Cholesky factor, with the inverse of the
/// diagonal in its place.
void Factorize(TextureTriangle& triangle) {
    size_t rowStart = 0;
    for (size_t row = 0; row < TextureSize; ++row) {
        size_t columnStart = 0;
        for (size_t column = 0; column <= row; ++column) {
            float sum = triangle[rowStart + column];
            for (size_t i = 0; i < column; ++i) sum -= triangle[rowStart + i] * triangle[columnStart + i];
            const bool diagonal = column == row;
            triangle[rowStart + column] =
                diagonal ? 1 / std::sqrt(sum) : sum * triangle[columnStart + column];
            columnStart += column + 1;
        }
        rowStart += row + 1;
    }
}

using Means = std::array<double, TextureSize>;

Means MeansOf(const TextureStretch& stretch) {
    Means means{};
    for (size_t i = 0; i < TextureSize; ++i) {
        means[i] = (stretch.End.Sound[i] - stretch.Begin.Sound[i]) / stretch.Slots;
    }
    return means;
}

}  // namespace

void TextureSums::Add(const Texture& texture) {
    size_t pair = 0;
    for (size_t row = 0; row < TextureSize; ++row) {
        const double value = texture[row];
        Sound[row] += value;
        for (size_t column = 0; column <= row; ++column, ++pair) Products[pair] += value * texture[column];
    }
}

TextureSides SidesOf(const TextureStretch& left, const TextureStretch& right, Loudnesses loudness) {
    const Means leftMean = MeansOf(left);
    const Means rightMean = MeansOf(right);
    const double leftShare = 1.0 / left.Slots;
    const double rightShare = 1.0 / right.Slots;
    TextureSides sides;
    Texture difference{};
    size_t pair = 0;
    for (size_t row = 0; row < TextureSize; ++row) {
        sides.Left[row] = static_cast<float>(leftMean[row]);
        sides.Right[row] = static_cast<float>(rightMean[row]);
        const bool silent = loudness == Loudnesses::Ignored && row == 0;
        difference[row] = silent ? 0 : static_cast<float>(rightMean[row] - leftMean[row]);
        for (size_t column = 0; column <= row; ++column, ++pair) {
            const double leftPart = (left.End.Products[pair] - left.Begin.Products[pair]) * leftShare -
                                    leftMean[row] * leftMean[column];
            const double rightPart = (right.End.Products[pair] - right.Begin.Products[pair]) * rightShare -
                                     rightMean[row] * rightMean[column];
            const double floor = row == column ? LeastVariance : 0;
            const bool counts = loudness == Loudnesses::Compared || column > 0;
            const double variance = counts ? (leftPart + rightPart) / 2 : 0;
            sides.Factor[pair] = static_cast<float>(variance + floor);
        }
    }
    Factorize(sides.Factor);
    Whiten(sides.Factor, difference);
    float distance = 0;
    for (const float part : difference) distance += part * part;
    sides.Shift = std::log1p(distance / 4) / TextureSize;
    return sides;
}

void Whiten(const TextureTriangle& factor, Texture& vector) {
    size_t at = 0;
    for (size_t row = 0; row < TextureSize; ++row) {
        float sum = vector[row];
        for (size_t i = 0; i < row; ++i) sum -= factor[at++] * vector[i];
        vector[row] = sum * factor[at++];
    }
}

}  // namespace Corvetape
