#include "audio/wav_file.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "core/text/text.h"

namespace Corvetape {

namespace {

constexpr uint32_t SecondsBetweenUpdates = 5;
constexpr size_t RiffSizeAt = 4;
constexpr size_t DataSizeAt = 40;

using Header = std::array<std::byte, WavHeaderBytes>;

template <typename Number>
void PutNumber(std::byte* to, Number number) {
    for (size_t i = 0; i < sizeof(Number); ++i) {
        to[i] = static_cast<std::byte>(static_cast<uint32_t>(number) >> (8 * i) & 0xFFU);
    }
}

void PutText(std::byte* to, std::string_view text) {
    std::memcpy(to, text.data(), text.size());
}

Header MakeHeader(const WaveFormat& format, uint64_t dataBytes, uint64_t tagBytes) {
    Header header{};
    std::byte* const at = header.data();
    PutText(at, "RIFF");
    PutNumber(at + RiffSizeAt, static_cast<uint32_t>(WavHeaderBytes - 8 + dataBytes + tagBytes));
    PutText(at + 8, "WAVEfmt ");
    PutNumber(at + 16, uint32_t{16});
    PutNumber(at + 20, format.wFormatTag);
    PutNumber(at + 22, format.nChannels);
    PutNumber(at + 24, format.nSamplesPerSec);
    PutNumber(at + 28, format.nAvgBytesPerSec);
    PutNumber(at + 32, format.nBlockAlign);
    PutNumber(at + 34, format.wBitsPerSample);
    PutText(at + 36, "data");
    PutNumber(at + DataSizeAt, static_cast<uint32_t>(dataBytes));
    return header;
}

std::string SizeText(size_t size) {
    std::string text(sizeof(uint32_t), '\0');
    for (size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>(size >> (8 * i) & 0xFFU);
    return text;
}

std::string TagChunk(const InfoTag& tag) {
    const std::string_view text = CutText(tag.Text, MostTagBytes);
    std::string chunk = std::string(tag.Id) + SizeText(text.size());
    chunk += text;
    if (text.size() % 2 != 0) chunk += '\0';
    return chunk;
}

}  // namespace

std::unique_ptr<WavFile> WavFile::Create(Files& disk, const std::string& path, const WaveFormat& format) {
    std::unique_ptr<File> output = disk.CreateNew(path);
    if (!output) return nullptr;
    if (!output->Write(MakeHeader(format, 0, 0))) {
        output.reset();
        disk.Delete(path);  // it holds no audio; what it fails for was told already
        return nullptr;
    }
    return std::make_unique<WavFile>(std::move(output), format);
}

WavFile::WavFile(std::unique_ptr<File> output, const WaveFormat& format)
    : Output(std::move(output)), AudioFormat(format) {}

WavFile::~WavFile() {
    if (Output && BytesInHeader != BytesWritten()) UpdateHeader();  // nobody is left to tell of a failure
}

bool WavFile::Write(std::span<const Frame> frames) {
    DropAhead();
    const std::span<const std::byte> bytes = std::as_bytes(frames);
    if (!Append(bytes)) {
        if (Output)
            UpdateHeader();  // as far as it goes: what was written before stays within reach of players
        return false;
    }
    AudioBytes += bytes.size();
    UpdateHeaderSometimes();
    return true;
}

bool WavFile::WriteAhead(std::span<const Frame> frames) {
    const std::span<const std::byte> bytes = std::as_bytes(frames);
    AheadBroken = !Append(bytes);
    if (AheadBroken) return false;
    BytesAhead += bytes.size();
    UpdateHeaderSometimes();
    return true;
}

void WavFile::Count(uint64_t bytes) {
    const uint64_t counted = std::min(bytes, BytesAhead);
    AudioBytes += counted;
    BytesAhead -= counted;
}

void WavFile::DropAhead() {
    if (BytesAhead == 0 && !AheadBroken) return;
    BytesAhead = 0;
    AheadBroken = false;
    AtEnd = false;
    if (!Output) return;
    Output->CutBack(WavHeaderBytes + AudioBytes);  // what stays is overwritten, or not played
    if (BytesInHeader > AudioBytes) UpdateHeader();
}

/// Writes where the written audio ends.
bool WavFile::Append(std::span<const std::byte> bytes) {
    if (!Output || (!AtEnd && !MoveTo(WavHeaderBytes + BytesWritten()))) return false;
    AtEnd = Output->Write(bytes);
    return AtEnd;
}

/// An update that fails is tried again after the next buffer; the close reports it if it never works.
void WavFile::UpdateHeaderSometimes() {
    if (BytesWritten() < BytesInHeader + uint64_t{SecondsBetweenUpdates} * AudioFormat.nAvgBytesPerSec) {
        return;
    }
    UpdateHeader();
    Output->SyncSoon();
}

bool WavFile::MoveTo(uint64_t position) {
    AtEnd = Output->Seek(position);
    return AtEnd;
}

bool WavFile::TakeOff(uint64_t bytes) {
    DropAhead();
    const uint64_t left = AudioBytes - std::min(bytes, AudioBytes);
    if (!Output || !MoveTo(WavHeaderBytes + left)) return false;
    AudioBytes = left;
    return true;
}

bool WavFile::UpdateHeader() {
    AtEnd = false;
    const uint64_t bytes = BytesWritten();
    const Header header = MakeHeader(AudioFormat, bytes, TagBytes);
    if (!Output->Seek(RiffSizeAt) || !Output->Write(std::span(header).subspan(RiffSizeAt))) return false;
    BytesInHeader = bytes;
    return true;
}

bool WavFile::FinishData() {
    DropAhead();
    return Output && UpdateHeader();
}

bool WavFile::WriteInfo(std::span<const InfoTag> tags) {
    std::string list = "INFO";
    for (const InfoTag& tag : tags) list += TagChunk(tag);
    const std::string chunk = "LIST" + SizeText(list.size()) + list;
    if (!Output || !MoveTo(WavHeaderBytes + AudioBytes)) return false;
    if (!Output->Write(std::as_bytes(std::span(chunk)))) return false;
    TagBytes = chunk.size();
    return true;
}

bool WavFile::FinishRiff() {
    if (!Output) return false;
    const bool good = UpdateHeader();
    Output->SyncSoon();
    return good;
}

bool WavFile::Close() {
    if (!Output) return true;
    const bool good = Output->Close();
    Output.reset();
    return good;
}

}  // namespace Corvetape
