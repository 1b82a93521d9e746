#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Corvetape {

/// Width and height of a picture in pixels.
struct ImageSize {
    uint32_t Width = 0;
    uint32_t Height = 0;

    bool operator==(const ImageSize&) const = default;
};

/// The largest picture that is decoded, in pixels: 64 MiB with four bytes for each. Covers are far smaller,
/// and a file of a few kilobytes can unfold to any size.
inline constexpr uint64_t MostCoverPixels = 16ULL * 1024 * 1024;

/// The size that a JPEG, PNG, GIF or WebP file announces, read from its header without decoding anything.
/// Nothing for other formats, for a header that is broken or cut off, and for a size of zero.
std::optional<ImageSize> ReadImageSize(std::string_view bytes);

/// True if a decoder may see these bytes: the size is known and not above the limit.
bool MayBeDecoded(std::string_view bytes);

}  // namespace Corvetape
