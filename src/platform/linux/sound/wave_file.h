#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "platform/linux/files/descriptor.h"
#include "platform/sound_source.h"

namespace Corvetape {

/// What a WAV file says of itself, checked against what is really there.
struct WaveFileInfo {
    uint16_t Channels = 0;
    uint32_t FramesPerSecond = 0;
    uint16_t BytesPerSample = 0;  ///< 1 (unsigned), 2, 3, 4; of a float 4 or 8
    bool IsFloat = false;
    uint64_t DataOffset = 0;
    uint64_t DataBytes = 0;  ///< that are in the file, in whole frames
    SourceMedia Tags;
};

enum class WaveFileState {
    Usable,
    NotWave,      ///< another kind of file
    OtherCoding,  ///< a WAV file whose samples are not plain numbers
    Broken,
};

struct WaveFileReading {
    WaveFileState State = WaveFileState::NotWave;
    WaveFileInfo Info;
};

/// Reads the chunks of a WAV or RF64 file of `fileSize` bytes. A length that was never filled in (0 or all
/// ones) or that passes the end of the file counts up to the end: such files come from recorders that
/// were interrupted. Nothing in the file can make it read outside or take much memory.
WaveFileReading ReadWaveFileInfo(int descriptor, uint64_t fileSize);

/// Fills `bytes` from `offset` on and returns how many it could fill; fewer only at the file's end or after
/// an error.
size_t ReadAt(int descriptor, uint64_t offset, std::span<std::byte> bytes);

/// A text of a tag as UTF-8: as it is if it is valid, else taken as Windows-1252.
std::string TagText(std::string text);

}  // namespace Corvetape
