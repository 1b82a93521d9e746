#include "sim/sim_windows.h"

#include <algorithm>

namespace Corvetape {

uint64_t SimWindows::Add(const std::string& text, const std::string& windowClass) {
    Top.insert(Top.begin(), {++Made, text, windowClass});
    return Made;
}

uint64_t SimWindows::AddInside(uint64_t parent, const std::string& text, const std::string& windowClass) {
    Inside[parent].push_back({++Made, text, windowClass});
    return Made;
}

void SimWindows::Raise(uint64_t handle) {
    const auto found = std::ranges::find(Top, handle, &WindowInfo::Handle);
    if (found != Top.end()) std::rotate(Top.begin(), found, found + 1);
}

void SimWindows::SetText(uint64_t handle, const std::string& text) {
    if (WindowInfo* window = Find(handle)) window->Text = text;
}

void SimWindows::Close(uint64_t handle) {
    std::erase_if(Top, [&](const WindowInfo& each) { return each.Handle == handle; });
    Inside.erase(handle);
}

std::vector<WindowInfo> SimWindows::TopLevel() {
    return Shown ? Top : std::vector<WindowInfo>{};
}

std::vector<WindowInfo> SimWindows::Descendants(uint64_t handle) {
    const auto found = Inside.find(handle);
    return found == Inside.end() ? std::vector<WindowInfo>{} : found->second;
}

std::string SimWindows::Text(uint64_t handle) {
    const WindowInfo* window = Find(handle);
    return window ? window->Text : "";
}

WindowInfo* SimWindows::Find(uint64_t handle) {
    const auto found = std::ranges::find(Top, handle, &WindowInfo::Handle);
    if (found != Top.end()) return &*found;
    for (auto& [parent, windows] : Inside) {
        const auto inside = std::ranges::find(windows, handle, &WindowInfo::Handle);
        if (inside != windows.end()) return &*inside;
    }
    return nullptr;
}

}  // namespace Corvetape
