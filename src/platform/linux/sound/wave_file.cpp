#include "platform/linux/sound/wave_file.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace Corvetape {
namespace {

constexpr size_t MostChunks = 1024;  // a real file has a dozen
constexpr uint64_t LongestTags = uint64_t{1024} * 1024;
constexpr uint32_t Unknown32 = 0xFFFFFFFF;

uint32_t Number(const std::byte* bytes, size_t count) {
    uint32_t value = 0;
    for (size_t i = count; i-- > 0;) value = value << 8 | std::to_integer<uint32_t>(bytes[i]);
    return value;
}

uint64_t Number64(const std::byte* bytes) {
    return Number(bytes, 4) | uint64_t{Number(bytes + 4, 4)} << 32;
}

std::string_view Name(const std::byte* bytes) {
    return {reinterpret_cast<const char*>(bytes), 4};
}

/// One reading of a file's chunks.
class Reader {
 public:
    Reader(int openDescriptor, uint64_t sizeOfFile) : Descriptor(openDescriptor), FileSize(sizeOfFile) {}

    WaveFileState Run() {
        std::array<std::byte, 12> head{};
        if (ReadAt(Descriptor, 0, head) < head.size()) return WaveFileState::NotWave;
        const std::string_view form = Name(head.data());
        if ((form != "RIFF" && form != "RF64") || Name(head.data() + 8) != "WAVE") {
            return WaveFileState::NotWave;
        }
        uint64_t offset = head.size();
        for (size_t count = 0; count < MostChunks && offset + 8 <= FileSize; ++count) {
            std::array<std::byte, 8> chunk{};
            if (ReadAt(Descriptor, offset, chunk) < chunk.size()) break;
            const uint64_t body = offset + chunk.size();
            const uint64_t length = ChunkLength(chunk.data(), body);
            Take(Name(chunk.data()), body, length);
            offset = body + length + length % 2;
        }
        return Check();
    }

    WaveFileInfo Info;

 private:
    /// The length of a chunk, never past the end of the file.
    uint64_t ChunkLength(const std::byte* chunk, uint64_t body) const {
        const uint64_t rest = FileSize - body;
        uint64_t stated = Number(chunk + 4, 4);
        if (Name(chunk) == "data") {
            if (stated == Unknown32) stated = LongDataBytes.value_or(rest);
            if (stated == 0 && !ChunksFillTheRest(body)) return rest;
        }
        return std::min(stated, rest);
    }

    /// True if what follows an empty data chunk are further chunks up to the file's end, and not samples
    /// of a file whose length was never filled in.
    bool ChunksFillTheRest(uint64_t offset) const {
        for (size_t count = 0; count < MostChunks && offset + 8 <= FileSize; ++count) {
            std::array<std::byte, 8> chunk{};
            if (ReadAt(Descriptor, offset, chunk) < chunk.size()) return false;
            const std::string_view name = Name(chunk.data());
            const bool readable =
                std::ranges::all_of(name, [](char letter) { return letter >= ' ' && letter <= '~'; });
            if (!readable) return false;
            const uint64_t length = Number(chunk.data() + 4, 4);
            offset += chunk.size() + length + length % 2;
        }
        return offset == FileSize || offset == FileSize + 1;
    }

    void Take(std::string_view name, uint64_t body, uint64_t length) {
        if (name == "ds64" && length >= 16) {
            std::array<std::byte, 16> sizes{};
            if (ReadAt(Descriptor, body, sizes) == sizes.size()) {
                LongDataBytes = Number64(sizes.data() + 8);
            }
        } else if (name == "fmt " && !HasFormat) {
            HasFormat = true;
            FormatIsWhole = TakeFormat(body, length);
        } else if (name == "data" && !HasData) {
            HasData = true;
            Info.DataOffset = body;
            Info.DataBytes = length;
        } else if (name == "LIST" && length >= 4 && length <= LongestTags) {
            TakeTags(body, length);
        }
    }

    bool TakeFormat(uint64_t body, uint64_t length) {
        std::array<std::byte, 26> format{};
        const size_t wanted = static_cast<size_t>(std::min<uint64_t>(length, format.size()));
        if (wanted < 16 || ReadAt(Descriptor, body, std::span(format).first(wanted)) < wanted) return false;
        Coding = Number(format.data(), 2);
        if (Coding == 0xFFFE && wanted == format.size()) Coding = Number(format.data() + 24, 2);
        Info.Channels = static_cast<uint16_t>(Number(format.data() + 2, 2));
        Info.FramesPerSecond = Number(format.data() + 4, 4);
        const uint32_t blockAlign = Number(format.data() + 12, 2);
        const uint32_t bits = Number(format.data() + 14, 2);
        if (Coding != 1 && Coding != 3) return true;
        Info.IsFloat = Coding == 3;
        if (Info.Channels == 0 || bits == 0 || blockAlign % Info.Channels != 0) return false;
        const uint32_t bytes = blockAlign / Info.Channels;
        Info.BytesPerSample = static_cast<uint16_t>(bytes);
        if (Info.IsFloat) return bits == bytes * 8 && (bytes == 4 || bytes == 8);
        return bytes >= 1 && bytes <= 4 && bits <= bytes * 8 && bits + 8 > bytes * 8;
    }

    void TakeTags(uint64_t body, uint64_t length) {
        std::vector<std::byte> list(static_cast<size_t>(length));
        list.resize(ReadAt(Descriptor, body, list));
        if (list.size() < 4 || Name(list.data()) != "INFO") return;
        for (size_t at = 4; at + 8 <= list.size();) {
            const std::string_view name = Name(list.data() + at);
            const size_t stated = Number(list.data() + at + 4, 4);
            at += 8;
            const size_t count = std::min(stated, list.size() - at);
            std::string text(reinterpret_cast<const char*>(list.data() + at), count);
            text.resize(std::min(text.find('\0'), text.size()));
            if (name == "INAM") Info.Tags.Song = TagText(text);
            if (name == "IART") Info.Tags.Artist = TagText(text);
            if (name == "IPRD") Info.Tags.Album = TagText(text);
            at += count + count % 2;
        }
    }

    WaveFileState Check() {
        if (!HasFormat || !FormatIsWhole || !HasData) return WaveFileState::Broken;
        if (Coding != 1 && Coding != 3) return WaveFileState::OtherCoding;
        if (Info.FramesPerSecond == 0) return WaveFileState::Broken;
        Info.DataBytes -= Info.DataBytes % (uint64_t{Info.BytesPerSample} * Info.Channels);
        return WaveFileState::Usable;
    }

    int Descriptor;
    uint64_t FileSize;
    uint32_t Coding = 0;
    bool HasFormat = false;
    bool FormatIsWhole = false;
    bool HasData = false;
    std::optional<uint64_t> LongDataBytes;
};

bool IsUtf8(std::string_view text) {
    for (size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (length == 0 || lead > 0xF4 || i + length > text.size()) return false;
        for (size_t k = 1; k < length; ++k) {
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80) return false;
        }
        if (length > 2) {
            const auto second = static_cast<unsigned char>(text[i + 1]);
            if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0)) return false;
            if ((lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90)) return false;
        }
        i += length;
    }
    return true;
}

// Characters 0x80 to 0x9F of Windows-1252; the five that it leaves open stand for themselves.
constexpr std::array<uint16_t, 32> HighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

}  // namespace

std::string TagText(std::string text) {
    if (IsUtf8(text)) return text;
    std::string result;
    for (const char letter : text) {
        uint32_t code = static_cast<unsigned char>(letter);
        if (code >= 0x80 && code < 0xA0) code = HighControls[code - 0x80];
        if (code < 0x80) {
            result += letter;
        } else if (code < 0x800) {
            result += static_cast<char>(0xC0 | code >> 6);
            result += static_cast<char>(0x80 | (code & 0x3F));
        } else {
            result += static_cast<char>(0xE0 | code >> 12);
            result += static_cast<char>(0x80 | (code >> 6 & 0x3F));
            result += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return result;
}

size_t ReadAt(int descriptor, uint64_t offset, std::span<std::byte> bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t got = Uninterrupted([&] {
            return pread(descriptor, bytes.data() + done, bytes.size() - done,
                         static_cast<off_t>(offset + done));
        });
        if (got <= 0) break;
        done += static_cast<size_t>(got);
    }
    return done;
}

WaveFileReading ReadWaveFileInfo(int descriptor, uint64_t fileSize) {
    Reader reader(descriptor, fileSize);
    const WaveFileState state = reader.Run();
    return {state, reader.Info};
}

}  // namespace Corvetape
