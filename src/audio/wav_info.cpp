// Reading what a WAV file says of itself, and putting right what a crash has left.
#include <algorithm>
#include <utility>

#include "audio/wav_file.h"

namespace Corvetape {

namespace {

constexpr uint64_t MostListBytes = 1U << 20U;
constexpr int32_t MostChunks = 1'000;  // a file of so many chunks is not music

uint32_t NumberAt(std::string_view bytes, size_t at, size_t width) {
    uint32_t number = 0;
    for (size_t i = width; i-- > 0;) number = number << 8U | static_cast<uint8_t>(bytes[at + i]);
    return number;
}

/// Exactly so many bytes; nothing if they are not there.
std::optional<std::string> ReadExactly(Files& disk, const std::string& path, uint64_t offset, size_t count) {
    auto bytes = disk.ReadPart(path, offset, count);
    if (!bytes || bytes->size() != count) return std::nullopt;
    return std::move(*bytes);
}

WaveFormat FormatIn(std::string_view chunk) {
    WaveFormat format;
    format.wFormatTag = static_cast<uint16_t>(NumberAt(chunk, 0, 2));
    format.nChannels = static_cast<uint16_t>(NumberAt(chunk, 2, 2));
    format.nSamplesPerSec = NumberAt(chunk, 4, 4);
    format.nAvgBytesPerSec = NumberAt(chunk, 8, 4);
    format.nBlockAlign = static_cast<uint16_t>(NumberAt(chunk, 12, 2));
    format.wBitsPerSample = static_cast<uint16_t>(NumberAt(chunk, 14, 2));
    return format;
}

void ReadTags(std::string_view list, WavInfo& info) {
    if (!list.starts_with("INFO")) return;
    list.remove_prefix(4);
    while (list.size() >= 8) {
        const size_t size = NumberAt(list, 4, 4);
        if (size > list.size() - 8) return;
        info.Tags.emplace_back(list.substr(0, 4), list.substr(8, size));
        list.remove_prefix(std::min(list.size(), 8 + size + size % 2));
    }
}

}  // namespace

std::optional<WavInfo> ReadWavInfo(Files& disk, const std::string& path) {
    const auto fileBytes = disk.FileSize(path);
    const auto riff = ReadExactly(disk, path, 0, 12);
    if (!fileBytes || !riff || !riff->starts_with("RIFF") || riff->substr(8) != "WAVE") return std::nullopt;

    WavInfo info;
    info.FileBytes = *fileBytes;
    info.RiffBytes = uint64_t{NumberAt(*riff, 4, 4)} + 8;
    bool formatSeen = false;
    uint64_t at = riff->size();
    for (int32_t chunk = 0; chunk < MostChunks; ++chunk) {
        const bool inside = info.DataStart == 0 || at < info.RiffBytes;
        const auto head = inside ? ReadExactly(disk, path, at, 8) : std::nullopt;
        if (!head) break;
        const uint32_t size = NumberAt(*head, 4, 4);
        at += head->size();
        // What follows the audio cannot say how it is to be read.
        if (head->starts_with("fmt ") && size >= 16 && !formatSeen && info.DataStart == 0) {
            const auto format = ReadExactly(disk, path, at, 16);
            if (!format) return std::nullopt;
            info.Format = FormatIn(*format);
            formatSeen = true;
        } else if (head->starts_with("data") && info.DataStart == 0) {
            info.DataStart = at;
            info.DataBytes = size;
        } else if (head->starts_with("LIST") && size <= MostListBytes) {
            if (const auto list = ReadExactly(disk, path, at, size)) ReadTags(*list, info);
        }
        at += uint64_t{size} + size % 2;
    }
    if (!formatSeen || info.DataStart == 0) return std::nullopt;
    return info;
}

bool RepairWavHeader(Files& disk, const std::string& path) {
    const auto info = ReadWavInfo(disk, path);
    if (!info || info->DataStart != WavHeaderBytes || info->Format.nBlockAlign != sizeof(Frame)) return false;

    // Tags after the audio, complete or begun, show that the audio was complete when they were written.
    const uint64_t dataEnd = WavHeaderBytes + info->DataBytes;
    if (disk.ReadPart(path, dataEnd, 4) == "LIST") return true;

    const uint64_t frames = (info->FileBytes - WavHeaderBytes) / sizeof(Frame);
    const uint64_t dataBytes = std::min(frames * sizeof(Frame), MostWavDataBytes);
    if (info->DataBytes == dataBytes && info->RiffBytes == WavHeaderBytes + dataBytes) return true;
    const auto text = [](uint64_t size) {
        std::string bytes;
        for (uint32_t i = 0; i < 4; ++i) bytes += static_cast<char>(size >> (8 * i) & 0xFFU);
        return bytes;
    };
    return disk.Patch(path, 4, text(WavHeaderBytes - 8 + dataBytes)) &&
           disk.Patch(path, WavHeaderBytes - 4, text(dataBytes));
}

}  // namespace Corvetape
