#include "platform/linux/sound/pulse_devices.h"

#include <algorithm>
#include <tuple>

namespace Corvetape {
namespace {

struct Source {
    WaveInDevice Device;
    std::string MonitorOf;
};

/// What the server has answered.
struct Listing {
    std::string DefaultSink;
    std::string DefaultSource;
    std::vector<Source> Sources;
};

const char* OrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

void ServerAnswer(pa_context*, const pa_server_info* info, void* user) {
    if (info == nullptr) return;
    auto& listing = *static_cast<Listing*>(user);
    listing.DefaultSink = OrEmpty(info->default_sink_name);
    listing.DefaultSource = OrEmpty(info->default_source_name);
}

void SourceAnswer(pa_context*, const pa_source_info* info, int end, void* user) {
    if (end != 0) return;
    auto& listing = *static_cast<Listing*>(user);
    Source source;
    source.Device.Id = OrEmpty(info->name);
    source.Device.Name = OrEmpty(info->description);
    if (source.Device.Name.empty()) source.Device.Name = source.Device.Id;
    source.MonitorOf = OrEmpty(info->monitor_of_sink_name);
    const bool isMonitor = info->monitor_of_sink != PA_INVALID_INDEX;
    source.Device.Kind = isMonitor ? WaveInKind::Monitor : WaveInKind::Input;
    listing.Sources.push_back(source);
}

void SinkAnswer(pa_context*, const pa_sink_info* info, int end, void* user) {
    if (end == 0) static_cast<std::vector<std::string>*>(user)->emplace_back(OrEmpty(info->name));
}

void MarkDefault(Listing& listing) {
    const auto mark = [&](auto isDefault) {
        const auto found = std::ranges::find_if(listing.Sources, isDefault);
        if (found == listing.Sources.end()) return false;
        found->Device.IsDefault = true;
        return true;
    };
    const bool marked =
        mark([&](const Source& source) {
            return source.Device.Kind == WaveInKind::Monitor && source.MonitorOf == listing.DefaultSink;
        }) ||
        mark([&](const Source& source) { return source.Device.Id == listing.DefaultSource; });
    if (!marked && !listing.Sources.empty()) listing.Sources.front().Device.IsDefault = true;
}

}  // namespace

WaveInList ListPulseDevices(PulseConnection& server) {
    Listing listing;
    WaveInList devices;
    if (!server.Await(pa_context_get_server_info(server.Context(), ServerAnswer, &listing)) ||
        !server.Await(pa_context_get_source_info_list(server.Context(), SourceAnswer, &listing))) {
        devices.Reason = server.Reason();
        return devices;
    }
    std::ranges::sort(listing.Sources, {}, [](const Source& source) {
        return std::tuple(source.Device.Kind != WaveInKind::Monitor, source.Device.Id);
    });
    MarkDefault(listing);
    for (const Source& source : listing.Sources) devices.push_back(source.Device);
    return devices;
}

WaveInList ListPulseDevices(const std::string& server, std::chrono::milliseconds limit) {
    PulseConnection connection(limit);
    if (connection.Connect(server)) return ListPulseDevices(connection);
    WaveInList none;
    none.Reason = connection.Reason();
    return none;
}

std::vector<std::string> ListPulseSinks(PulseConnection& server) {
    std::vector<std::string> names;
    if (!server.Await(pa_context_get_sink_info_list(server.Context(), SinkAnswer, &names))) return {};
    std::ranges::sort(names);
    return names;
}

}  // namespace Corvetape
