#pragma once

#include <cstddef>

#include "core/program_requests.h"
#include "post/encoders/encoder_tools.h"

namespace Corvetape {

struct EncoderPage;
struct LifecycleFlags;
class SettingsStore;

/// Binds the controls of the target format to their settings, which are written at once. Choosing a quality
/// chooses its encoder.
class EncoderChoice {
 public:
    /// All of them must outlive it. Connects to the controls.
    EncoderChoice(EncoderPage& page, Settings& settings, SettingsStore& store, LifecycleFlags& flags,
                  ProgramRequests& requests);
    EncoderChoice(const EncoderChoice&) = delete;
    EncoderChoice& operator=(const EncoderChoice&) = delete;

    /// Enables the formats that can be made here, and disables the others. What is chosen stays chosen.
    void EnableFound(const FoundTools& found);

 private:
    void ChooseEncoder(size_t encoder);
    void ChooseQuality(size_t encoder);
    void GetEncoder(size_t index);

    EncoderPage& Page;
    Settings& Options;
    SettingsStore& Store;
    LifecycleFlags& Flags;
    ProgramRequests& Requests;
};

}  // namespace Corvetape
