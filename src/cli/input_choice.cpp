#include "cli/input_choice.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "core/text/text.h"

namespace Corvetape {

namespace {

constexpr std::string_view FilePrefix = "file:";

std::optional<size_t> NumberIn(std::string_view words) {
    size_t number = 0;
    const auto [end, error] = std::from_chars(words.data(), words.data() + words.size(), number);
    if (error != std::errc() || end != words.data() + words.size()) return std::nullopt;
    return number;
}

template <typename Matches>
std::vector<size_t> All(std::span<const WaveInDevice> devices, Matches matches) {
    std::vector<size_t> found;
    for (size_t i = 0; i < devices.size(); ++i) {
        if (matches(devices[i])) found.push_back(i);
    }
    return found;
}

template <typename Matches>
std::optional<size_t> TheOnly(std::span<const WaveInDevice> devices, Matches matches) {
    const auto found = std::ranges::find_if(devices, matches);
    if (found == devices.end() || std::ranges::count_if(devices, matches) != 1) return std::nullopt;
    return static_cast<size_t>(found - devices.begin());
}

/// The inputs that words fit best: exactly, but for their case, or in a part.
std::vector<size_t> FindByName(std::string_view words, std::span<const WaveInDevice> devices) {
    const auto exact = [&](const WaveInDevice& device) { return device.Id == words || device.Name == words; };
    const auto similar = [&](const WaveInDevice& device) {
        return EqualIgnoringCase(device.Id, words) || EqualIgnoringCase(device.Name, words);
    };
    const auto holds = [&](const WaveInDevice& device) {
        return FindIgnoringCase(device.Name, words) != std::string::npos ||
               FindIgnoringCase(device.Id, words) != std::string::npos;
    };
    if (auto found = All(devices, exact); found.size() == 1) return found;
    if (auto found = All(devices, similar); found.size() == 1) return found;
    return All(devices, holds);
}

/// "2 Radio, 5 Web radio": number and name of each.
std::string Listed(std::span<const size_t> numbers, std::span<const WaveInDevice> devices) {
    std::string text;
    for (const size_t number : numbers) {
        text += (text.empty() ? "" : ", ") + std::to_string(number) + " " + devices[number].Name;
    }
    return text;
}

}  // namespace

WaveInDevice DemoInput() {
    return {"Demo radio (made-up music)", DemoInputId, WaveInKind::Demo};
}

InputChoice ChooseInput(std::string_view words, std::span<const WaveInDevice> devices) {
    InputChoice choice;
    if (words.starts_with(FilePrefix)) {
        choice.FilePath = words.substr(FilePrefix.size());
        if (choice.FilePath.empty()) choice.Error = "file: needs a path after it";
        return choice;
    }
    if (words.empty()) {
        choice.Device = TheOnly(devices, [](const WaveInDevice& device) { return device.IsDefault; });
        if (!choice.Device) {
            choice.Error = "there is no default input to record from; try --input demo or --input file:PATH";
        }
        return choice;
    }
    if (const auto number = NumberIn(words)) {
        if (*number < devices.size()) {
            choice.Device = number;
        } else {
            choice.Error = "there is no input " + std::string(words) + "; corvetape-cli devices lists them";
        }
        return choice;
    }
    const std::vector<size_t> found = FindByName(words, devices);
    if (found.size() == 1) {
        choice.Device = found.front();
    } else if (found.empty()) {
        choice.Error =
            "there is no input called '" + std::string(words) + "'; corvetape-cli devices lists them";
    } else {
        choice.Error = "'" + std::string(words) + "' fits several inputs: " + Listed(found, devices);
    }
    return choice;
}

const char* KindText(WaveInKind kind) {
    switch (kind) {
        case WaveInKind::Monitor:
            return "monitor";
        case WaveInKind::Input:
            return "input";
        case WaveInKind::File:
            return "file";
        case WaveInKind::Demo:
            return "demo";
    }
    return "";
}

}  // namespace Corvetape
