#pragma once

#include <cstdint>
#include <functional>
#include <string>

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
    EncoderChoice(EncoderPage& page, Settings& settings, SettingsStore& store, LifecycleFlags& flags);
    EncoderChoice(const EncoderChoice&) = delete;
    EncoderChoice& operator=(const EncoderChoice&) = delete;

    /// Enables the formats that can be made here, and disables the others. What is chosen stays chosen.
    void EnableFound(const FoundTools& found);

    /// Opens a page of the assistant that tells where to get an encoder.
    std::function<void(const std::string& page)> SetUrl;

 private:
    void ChooseEncoder(size_t encoder);
    void ChooseQuality(size_t encoder);
    void GetEncoder(size_t index);

    EncoderPage& Page;
    Settings& Options;
    SettingsStore& Store;
    LifecycleFlags& Flags;
};

}  // namespace Corvetape
