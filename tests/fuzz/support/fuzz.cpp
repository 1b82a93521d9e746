#include "fuzz/support/fuzz.h"

#include <cstdio>
#include <cstdlib>

#include "core/text/text.h"

namespace Corvetape::Fuzz {

void Require(bool holds, const char* rule) {
    if (holds) return;
    std::fprintf(stderr, "broken rule: %s\n", rule);
    std::abort();
}

Input::Input(std::span<const uint8_t> bytes)
    : Left(reinterpret_cast<const char*>(bytes.data()), bytes.size()) {}

std::string_view Input::Field() {
    constexpr char separator = '\x1f';
    const size_t end = Left.find(separator);
    const std::string_view field = Left.substr(0, end);
    Left.remove_prefix(end == std::string_view::npos ? Left.size() : end + 1);
    return field;
}

std::string_view Input::Rest() {
    const std::string_view rest = Left;
    Left = {};
    return rest;
}

uint32_t Input::Number() {
    const std::string_view field = Field();
    uint32_t number = 0;
    for (const char byte : field.substr(0, 2)) number = number << 8U | static_cast<uint8_t>(byte);
    return number;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const size_t length = CharacterLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

bool IsFileName(std::string_view text) {
    constexpr std::string_view forbidden("/\\\0", 3);
    return !text.empty() && text.size() <= 255 && text != "." && text != ".." &&
           text.find_first_of(forbidden) == std::string_view::npos;
}

}  // namespace Corvetape::Fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Corvetape::FuzzOne(Corvetape::Fuzz::Input({data, size}));
    return 0;
}
