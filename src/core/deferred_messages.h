#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "core/controls/message_texts.h"

namespace Corvetape {

/// The messages that the watch over the disk space leaves for the end of the program.
constexpr bool IsDiskMessage(int32_t key) {
    return key == Message::EndedByDisk.Number() || key == Message::EndedByTempDisk.Number() ||
           key == Message::EndedByMusicDisk.Number();
}

/// Messages from deep inside a recording, which are reported when the program ends. 0 stands for no message.
struct DeferredMessages {
    int32_t PendingError = 0;      ///< key of the text
    std::string PendingErrorText;  ///< its first argument, a path or a description
    int32_t PendingErrorCode = 0;  ///< its second argument, a result code
    std::string
        PendingErrorReason;    ///< what stands for the code in the text: the code and the system's words
    bool ErrorLogged = false;  ///< the log has it since it happened
    int32_t PendingInfo = 0;   ///< key of a text without arguments

    /// The first error wins; later ones are dropped.
    void RaiseError(int32_t key, std::string text, int32_t code, std::string reason = {}) {
        if (PendingError != 0) return;
        PendingError = key;
        PendingErrorText = std::move(text);
        PendingErrorCode = code;
        PendingErrorReason = reason.empty() ? std::to_string(code) : std::move(reason);
    }

    /// The last information wins.
    void RaiseInfo(int32_t key) { PendingInfo = key; }
};

}  // namespace Corvetape
