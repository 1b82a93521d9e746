#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Corvetape::Fuzz {

/// Ends the process with the rule that was broken, which is a finding, unless it holds.
void Require(bool holds, const char* rule);

/// The bytes of one run, taken apart into fields. A field ends at the character 31, which no text of ours
/// means anything by; the last one asked for by Rest takes all that is left. Missing fields are empty.
class Input {
 public:
    explicit Input(std::span<const uint8_t> bytes);

    std::string_view Field();
    std::string_view Rest();

    /// A field as a number by its first two bytes, 0 to 65535; 0 if it is empty.
    uint32_t Number();

    bool Empty() const { return Left.empty(); }

 private:
    std::string_view Left;
};

/// True if a text holds nothing but whole characters of UTF-8.
bool IsUtf8(std::string_view text);

/// True if a text can be one name in a folder: not empty, no separator, no NUL, neither "." nor "..", at
/// most 255 bytes.
bool IsFileName(std::string_view text);

}  // namespace Corvetape::Fuzz

namespace Corvetape {

/// One run: whatever the bytes are, the rules of the target hold. Each target has one.
void FuzzOne(Fuzz::Input input);

}  // namespace Corvetape
