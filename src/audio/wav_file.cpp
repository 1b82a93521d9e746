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

/// What a file answers that was closed before.
FileResult Closed() {
    return {"write", "", std::make_error_code(std::errc::bad_file_descriptor)};
}

}  // namespace

Opened<WavFile> WavFile::Create(Files& disk, const std::string& path, const WaveFormat& format) {
    Opened<File> output = disk.CreateNew(path);
    if (!output) return output.Failure;
    if (FileResult written = output->Write(MakeHeader(format, 0, 0)); !written) {
        output.reset();
        disk.Delete(path);  // it holds no audio; what counts is why it could not be begun
        return written;
    }
    return std::make_unique<WavFile>(std::move(output), format);
}

WavFile::WavFile(std::unique_ptr<File> output, const WaveFormat& format)
    : Output(std::move(output)), AudioFormat(format) {}

WavFile::~WavFile() {
    if (Output && BytesInHeader != BytesWritten()) UpdateHeader();  // nobody is left to report a failure to
}

FileResult WavFile::Write(std::span<const Frame> frames) {
    DropAhead();
    const std::span<const std::byte> bytes = std::as_bytes(frames);
    if (FileResult written = Append(bytes); !written) {
        if (Output)
            UpdateHeader();  // as far as it goes: what was written before stays within reach of players
        return written;
    }
    AudioBytes += bytes.size();
    UpdateHeaderSometimes();
    return {};
}

FileResult WavFile::WriteAhead(std::span<const Frame> frames) {
    const std::span<const std::byte> bytes = std::as_bytes(frames);
    FileResult written = Append(bytes);
    AheadBroken = !written;
    if (AheadBroken) return written;
    BytesAhead += bytes.size();
    UpdateHeaderSometimes();
    return {};
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
FileResult WavFile::Append(std::span<const std::byte> bytes) {
    if (!Output) return Closed();
    FileResult result;
    if (!AtEnd) result = MoveTo(WavHeaderBytes + BytesWritten());
    if (result) result = Output->Write(bytes);
    AtEnd = static_cast<bool>(result);
    return result;
}

/// An update that fails is tried again after the next buffer; the close reports it if it never works.
void WavFile::UpdateHeaderSometimes() {
    if (BytesWritten() < BytesInHeader + uint64_t{SecondsBetweenUpdates} * AudioFormat.nAvgBytesPerSec) {
        return;
    }
    UpdateHeader();
    Output->SyncSoon();
}

FileResult WavFile::MoveTo(uint64_t position) {
    FileResult moved = Output->Seek(position);
    AtEnd = static_cast<bool>(moved);
    return moved;
}

FileResult WavFile::TakeOff(uint64_t bytes) {
    DropAhead();
    if (!Output) return Closed();
    const uint64_t left = AudioBytes - std::min(bytes, AudioBytes);
    FileResult moved = MoveTo(WavHeaderBytes + left);
    if (moved) AudioBytes = left;
    return moved;
}

FileResult WavFile::UpdateHeader() {
    AtEnd = false;
    const uint64_t bytes = BytesWritten();
    const Header header = MakeHeader(AudioFormat, bytes, TagBytes);
    FileResult result = Output->Seek(RiffSizeAt);
    if (result) result = Output->Write(std::span(header).subspan(RiffSizeAt));
    if (result) BytesInHeader = bytes;
    return result;
}

FileResult WavFile::FinishData() {
    DropAhead();
    return Output ? UpdateHeader() : Closed();
}

FileResult WavFile::WriteInfo(std::span<const InfoTag> tags) {
    std::string list = "INFO";
    for (const InfoTag& tag : tags) list += TagChunk(tag);
    const std::string chunk = "LIST" + SizeText(list.size()) + list;
    if (!Output) return Closed();
    FileResult result = MoveTo(WavHeaderBytes + AudioBytes);
    if (result) result = Output->Write(std::as_bytes(std::span(chunk)));
    if (result) TagBytes = chunk.size();
    return result;
}

FileResult WavFile::FinishRiff() {
    if (!Output) return Closed();
    FileResult result = UpdateHeader();
    Output->SyncSoon();
    return result;
}

FileResult WavFile::Close() {
    if (!Output) return {};
    FileResult result = Output->Close();
    Output.reset();
    return result;
}

}  // namespace Corvetape
