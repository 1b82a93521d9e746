// Sound files: what their headers say, the repair of those that a crash has left, and the tags that are
// written into them.
// Fields: tag, another tag, file.
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <string>

#include "audio/wav_file.h"
#include "core/text/text.h"
#include "fuzz/support/fuzz.h"
#include "platform/linux/sound/wave_file.h"
#include "sim/sim_files.h"

namespace Corvetape {

namespace {

using Fuzz::Require;

constexpr const char* Path = "/song.wav";

/// What the reader of songs says.
void CheckSong(SimFiles& disk, const std::string& bytes) {
    const auto info = ReadWavInfo(disk, Path);
    if (!info) return;
    Require(info->FileBytes == bytes.size(), "the length of the file is known");
    Require(info->DataStart >= 8 + 12 && info->DataStart <= bytes.size(), "audio begins in the file");
    size_t tagBytes = 0;
    for (const auto& [id, text] : info->Tags) {
        Require(id.size() == 4, "a tag has an identifier of four letters");
        tagBytes += text.size();
    }
    Require(tagBytes <= bytes.size() * 1000, "tags are no longer than their chunks");
}

/// What a repair changes.
void CheckRepair(SimFiles& disk, const std::string& bytes) {
    if (!RepairWavHeader(disk, Path)) {
        Require(disk.Content(Path) == bytes, "what is no song file stays as it is");
        return;
    }
    const std::string repaired = disk.Content(Path).value_or("");
    Require(repaired.size() == bytes.size(), "a repair keeps the length of the file");
    for (size_t i = 0; i < bytes.size(); ++i) {
        const bool size = (i >= 4 && i < 8) || (i >= WavHeaderBytes - 4 && i < WavHeaderBytes);
        Require(size || repaired[i] == bytes[i], "a repair changes the two sizes only");
    }
    Require(RepairWavHeader(disk, Path) && disk.Content(Path) == repaired, "a repair is made once");
}

/// What the reader of inputs says.
void CheckInput(const std::string& bytes) {
    const int file = memfd_create("fuzz", 0);
    Require(file >= 0 && write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
            "there is memory for the file");
    const WaveFileReading reading = ReadWaveFileInfo(file, bytes.size());
    close(file);
    if (reading.State != WaveFileState::Usable) return;
    const WaveFileInfo& info = reading.Info;
    Require(info.DataOffset <= bytes.size() && info.DataBytes <= bytes.size() - info.DataOffset,
            "the audio is in the file");
    Require(info.Channels > 0 && info.FramesPerSecond > 0 && info.BytesPerSample > 0,
            "the audio has a format");
    Require(info.DataBytes % (uint64_t{info.Channels} * info.BytesPerSample) == 0, "frames are whole");
    for (const std::string& text : {info.Tags.Artist, info.Tags.Song, info.Tags.Album}) {
        Require(Fuzz::IsUtf8(text) && text.size() <= 3 * bytes.size(), "a tag is UTF-8 of a limited length");
    }
}

void CheckTags(const std::string& first, const std::string& second) {
    SimFiles disk;
    WaveFormat format;
    const auto file = WavFile::Create(disk, Path, format);
    const std::array<Frame, 3> frames{};
    const std::array<InfoTag, 2> tags = {{{"IART", first}, {"INAM", second}}};
    Require(file && file->Write(frames) && file->FinishData() && file->WriteInfo(tags) &&
                file->FinishRiff() && file->Close(),
            "a song can be written");
    const auto info = ReadWavInfo(disk, Path);
    Require(info && info->DataBytes == sizeof(frames) && info->RiffBytes == info->FileBytes,
            "a finished song says how long it is");
    for (const auto& [id, text] : info->Tags) {
        const std::string& written = id == "IART" ? first : second;
        Require(text == CutText(written, MostTagBytes), "a tag is read as it was written");
    }
    Require(info->Tags.size() == 2, "both tags are there");
}

}  // namespace

void FuzzOne(Fuzz::Input input) {
    const std::string first(input.Field());
    const std::string second(input.Field());
    const std::string bytes(input.Rest());
    SimFiles disk;
    disk.Put(Path, bytes);
    CheckSong(disk, bytes);
    CheckRepair(disk, bytes);
    CheckInput(bytes);
    CheckTags(first, second);
}

}  // namespace Corvetape
