#include "recording/buffer_watch.h"

#include <string>
#include <utility>

#include "core/controls/message_texts.h"

namespace Corvetape {

void BufferWatch::Tick() {
    Form.lblMaxBuffers.Caption(std::to_string(MaxBuffersUsed));
    if (int64_t{MaxBuffersUsed} + 1 < Options.RecordingBuffers) return;
    // Late is not lost: the sound server keeps what nobody has fetched yet.
    const bool lost = std::exchange(LostWhenReported, Signal.FramesLost) != Signal.FramesLost;
    Say.WriteAndShow(ReportKind::Error,
                     Say.Text(lost ? Message::SoundIsMissing.Key : Message::SoundCameLate.Key,
                              {std::to_string(MaxBuffersUsed)}));
    MaxBuffersUsed = 0;
}

}  // namespace Corvetape
