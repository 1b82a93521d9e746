#include "media/image_size.h"

#include <algorithm>
#include <cstddef>

namespace Corvetape {

namespace {

/// Reads numbers one after the other. Past the end everything is zero, and Good is false.
class Bytes {
 public:
    explicit Bytes(std::string_view text) : Text(text) {}

    bool Good() const { return IsGood; }
    size_t Place() const { return At; }

    void Skip(size_t count) {
        IsGood = IsGood && count <= Text.size() - At;
        if (IsGood) At += count;
    }

    uint32_t Byte() {
        const size_t place = At;
        Skip(1);
        return IsGood ? static_cast<unsigned char>(Text[place]) : 0;
    }

    uint32_t BigEndian(int count) {
        uint32_t value = 0;
        for (int i = 0; i < count; ++i) value = value << 8 | Byte();
        return value;
    }

    uint32_t LittleEndian(int count) {
        uint32_t value = 0;
        for (int i = 0; i < count; ++i) value |= Byte() << (8 * i);
        return value;
    }

 private:
    std::string_view Text;
    size_t At = 0;
    bool IsGood = true;
};

std::optional<ImageSize> Checked(const Bytes& bytes, ImageSize size) {
    if (!bytes.Good() || size.Width == 0 || size.Height == 0) return std::nullopt;
    return size;
}

constexpr std::string_view PngBegin = "\x89PNG\r\n\x1A\n";
constexpr std::string_view JpegBegin = "\xFF\xD8";
constexpr std::string_view ScanMarker = "\xFF\xDA";

/// The first chunk has to be the header.
std::optional<ImageSize> ReadPng(std::string_view text) {
    if (text.substr(PngBegin.size() + 4, 4) != "IHDR") return std::nullopt;
    Bytes bytes(text);
    bytes.Skip(PngBegin.size() + 8);
    const uint32_t width = bytes.BigEndian(4);
    const uint32_t height = bytes.BigEndian(4);
    return Checked(bytes, {width, height});
}

/// True for the markers of a frame: all of 0xC0 to 0xCF but those of tables.
bool IsFrameMarker(uint32_t marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

/// Walks the segments up to the frame header. Pictures inside of segments, as those of cameras, are passed
/// over with them.
std::optional<ImageSize> ReadJpeg(std::string_view text) {
    Bytes bytes(text);
    bytes.Skip(2);
    while (bytes.Good()) {
        if (bytes.Byte() != 0xFF) return std::nullopt;
        uint32_t marker = bytes.Byte();
        while (marker == 0xFF && bytes.Good()) marker = bytes.Byte();  // fill bytes
        const bool alone = marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
        if (alone) continue;
        if (marker == 0xD9 || marker == 0xDA) return std::nullopt;  // no frame header ahead of the picture
        const uint32_t length = bytes.BigEndian(2);
        if (length < 2) return std::nullopt;
        if (!IsFrameMarker(marker)) {
            bytes.Skip(length - 2);
            continue;
        }
        bytes.Skip(1);
        const uint32_t height = bytes.BigEndian(2);
        const uint32_t width = bytes.BigEndian(2);
        return Checked(bytes, {width, height});
    }
    return std::nullopt;
}

/// Bytes of a colour table by the flags that announce it.
size_t ColourTableBytes(uint32_t flags) {
    return (flags & 0x80) == 0 ? 0 : size_t{3} << ((flags & 7) + 1);
}

/// The screen, or the first picture on it if that is larger.
std::optional<ImageSize> ReadGif(std::string_view text) {
    Bytes bytes(text);
    bytes.Skip(6);
    ImageSize size{bytes.LittleEndian(2), 0};
    size.Height = bytes.LittleEndian(2);
    const uint32_t flags = bytes.Byte();
    bytes.Skip(2 + ColourTableBytes(flags));
    while (bytes.Good()) {
        const uint32_t kind = bytes.Byte();
        if (kind == ',') {
            const uint32_t left = bytes.LittleEndian(2);
            const uint32_t top = bytes.LittleEndian(2);
            size.Width = std::max(size.Width, left + bytes.LittleEndian(2));
            size.Height = std::max(size.Height, top + bytes.LittleEndian(2));
            return Checked(bytes, size);
        }
        if (kind != '!') return std::nullopt;
        bytes.Skip(1);
        for (uint32_t block = bytes.Byte(); block != 0 && bytes.Good(); block = bytes.Byte()) {
            bytes.Skip(block);
        }
    }
    return std::nullopt;
}

std::optional<ImageSize> ReadWebP(std::string_view text) {
    constexpr uint32_t sideMask = 0x3FFF;
    constexpr size_t chunkData = 20;  // after "RIFF", size, "WEBP", name of the chunk and its size
    const std::string_view chunk = text.substr(12, 4);
    Bytes bytes(text);
    bytes.Skip(chunkData);
    if (chunk == "VP8X") {
        bytes.Skip(4);
        const uint32_t width = bytes.LittleEndian(3) + 1;
        const uint32_t height = bytes.LittleEndian(3) + 1;
        return Checked(bytes, {width, height});
    }
    if (chunk == "VP8L") {
        if (bytes.Byte() != 0x2F) return std::nullopt;
        const uint32_t sides = bytes.LittleEndian(4);
        return Checked(bytes, {(sides & sideMask) + 1, (sides >> 14 & sideMask) + 1});
    }
    if (chunk != "VP8 ") return std::nullopt;
    bytes.Skip(3);
    if (bytes.BigEndian(3) != 0x9D012A) return std::nullopt;
    const uint32_t width = bytes.LittleEndian(2) & sideMask;
    const uint32_t height = bytes.LittleEndian(2) & sideMask;
    return Checked(bytes, {width, height});
}

/// Start markers of scans wherever they are: within a scan the byte after 0xFF is never that of a marker, and
/// the few that other segments may hold by chance stay far below the limit.
uint64_t CountScans(std::string_view text) {
    uint64_t count = 0;
    for (size_t at = text.find(ScanMarker); at != text.npos; at = text.find(ScanMarker, at + 1)) ++count;
    return count;
}

/// Compressed text begins with a keyword and its NUL; an international one has a flag after them.
bool IsCompressedText(std::string_view name, std::string_view content) {
    if (name == "zTXt") return true;
    const size_t keywordEnd = content.find('\0');
    return name == "iTXt" && keywordEnd < content.size() - 1 && content[keywordEnd + 1] != '\0';
}

/// Bytes of all chunks of compressed text.
uint64_t CompressedText(std::string_view text) {
    constexpr size_t nameBytes = 4;
    constexpr size_t checksumBytes = 4;
    uint64_t sum = 0;
    Bytes bytes(text);
    bytes.Skip(PngBegin.size());
    while (true) {
        const uint32_t length = bytes.BigEndian(4);
        const size_t at = bytes.Place();
        bytes.Skip(nameBytes);
        if (!bytes.Good()) return sum;
        const std::string_view content = text.substr(at + nameBytes, length);
        if (IsCompressedText(text.substr(at, nameBytes), content)) sum += length;
        bytes.Skip(size_t{length} + checksumBytes);
    }
}

}  // namespace

std::optional<ImageSize> ReadImageSize(std::string_view bytes) {
    constexpr size_t least = 20;  // shorter than any picture, and long enough to tell them apart
    if (bytes.size() < least) return std::nullopt;
    if (bytes.starts_with(PngBegin)) return ReadPng(bytes);
    if (bytes.starts_with(JpegBegin)) return ReadJpeg(bytes);
    if (bytes.starts_with("GIF87a") || bytes.starts_with("GIF89a")) return ReadGif(bytes);
    if (bytes.starts_with("RIFF") && bytes.substr(8, 4) == "WEBP") return ReadWebP(bytes);
    return std::nullopt;
}

bool MayBeDecoded(std::string_view bytes) {
    const std::optional<ImageSize> size = ReadImageSize(bytes);
    if (!size) return false;
    const uint64_t pixels = uint64_t{size->Width} * size->Height;
    if (pixels > MostCoverPixels) return false;
    if (bytes.starts_with(PngBegin)) return CompressedText(bytes) <= MostCompressedText;
    if (!bytes.starts_with(JpegBegin)) return true;
    const uint64_t scans = CountScans(bytes);
    return scans <= MostCoverScans && scans * pixels <= MostScannedPixels;
}

}  // namespace Corvetape
