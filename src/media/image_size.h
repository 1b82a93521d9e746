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

/// The most scans of a JPEG that is decoded. Progressive files of the usual tools have about ten, but an
/// empty scan takes 30 bytes and the decoder still visits every block of the picture for it: tens of
/// thousands of them fit into a file of a megabyte, and would hold up the program for a minute.
inline constexpr uint64_t MostCoverScans = 100;

/// The most pixels that all scans of a JPEG visit together: 16 scans of the largest picture.
inline constexpr uint64_t MostScannedPixels = 16 * MostCoverPixels;

/// The most bytes of compressed text in a PNG that is decoded. Decoders unfold it a thousandfold before they
/// come to the picture: 120 chunks of 8 KB each took 25 s and 4.5 GB.
inline constexpr uint64_t MostCompressedText = 16ULL * 1024;

/// True if a decoder may see these bytes: the size is known, and neither it nor the work that the file makes
/// is above the limits.
bool MayBeDecoded(std::string_view bytes);

}  // namespace Corvetape
