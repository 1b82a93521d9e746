#include "platform/linux/sound/pulse_devices.h"

#include <algorithm>

#include "platform/linux/sound/pulse_handles.h"

namespace Corvetape {
namespace {

/// The questions of one listing and what has been answered.
struct Listing {
    struct Source {
        WaveInDevice Device;
        std::string MonitorOf;
    };

    pa_context* Context = nullptr;
    PulseOperation ServerQuestion;
    PulseOperation SourceQuestion;
    std::string DefaultSink;
    std::string DefaultSource;
    std::vector<Source> Sources;
    bool ServerAnswered = false;
    bool SourcesAnswered = false;
    bool Failed = false;

    bool Over() const { return Failed || (ServerAnswered && SourcesAnswered); }
};

const char* OrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

void ServerAnswer(pa_context*, const pa_server_info* info, void* user) {
    auto& listing = *static_cast<Listing*>(user);
    if (info == nullptr) {
        listing.Failed = true;
        return;
    }
    listing.DefaultSink = OrEmpty(info->default_sink_name);
    listing.DefaultSource = OrEmpty(info->default_source_name);
    listing.ServerAnswered = true;
}

void SourceAnswer(pa_context*, const pa_source_info* info, int end, void* user) {
    auto& listing = *static_cast<Listing*>(user);
    if (end != 0) {
        listing.SourcesAnswered = end > 0;
        listing.Failed = listing.Failed || end < 0;
        return;
    }
    Listing::Source source;
    source.Device.Id = OrEmpty(info->name);
    source.Device.Name = OrEmpty(info->description);
    if (source.Device.Name.empty()) source.Device.Name = source.Device.Id;
    source.MonitorOf = OrEmpty(info->monitor_of_sink_name);
    const bool isMonitor = info->monitor_of_sink != PA_INVALID_INDEX;
    source.Device.Kind = isMonitor ? WaveInKind::Monitor : WaveInKind::Input;
    listing.Sources.push_back(source);
}

void StateChanged(pa_context* context, void* user) {
    auto& listing = *static_cast<Listing*>(user);
    const pa_context_state_t state = pa_context_get_state(context);
    if (!PA_CONTEXT_IS_GOOD(state)) listing.Failed = true;
    if (state != PA_CONTEXT_READY) return;
    listing.ServerQuestion.reset(pa_context_get_server_info(context, ServerAnswer, user));
    listing.SourceQuestion.reset(pa_context_get_source_info_list(context, SourceAnswer, user));
}

std::vector<WaveInDevice> InOrder(Listing& listing) {
    const auto rank = [&](const Listing::Source& source) {
        if (source.Device.Kind != WaveInKind::Monitor)
            return source.Device.Id == listing.DefaultSource ? 2 : 3;
        return source.MonitorOf == listing.DefaultSink ? 0 : 1;
    };
    std::ranges::stable_sort(listing.Sources, {}, rank);
    std::vector<WaveInDevice> devices;
    for (const Listing::Source& source : listing.Sources) devices.push_back(source.Device);
    if (!devices.empty()) devices.front().IsDefault = true;
    return devices;
}

}  // namespace

std::vector<WaveInDevice> ListPulseDevices(const std::string& server, std::chrono::milliseconds limit) {
    using Steady = std::chrono::steady_clock;
    const Steady::time_point end = Steady::now() + limit;
    Listing listing;
    const PulseLoop loop(pa_mainloop_new());
    if (!loop) return {};
    const PulseContext context(pa_context_new(pa_mainloop_get_api(loop.get()), "Corvetape"));
    if (!context) return {};
    pa_context_set_state_callback(context.get(), StateChanged, &listing);
    const char* const address = server.empty() ? nullptr : server.c_str();
    if (pa_context_connect(context.get(), address, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) return {};
    while (!listing.Over()) {
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - Steady::now()).count();
        if (left <= 0 || pa_mainloop_prepare(loop.get(), static_cast<int>(left)) < 0) break;
        if (pa_mainloop_poll(loop.get()) < 0 || pa_mainloop_dispatch(loop.get()) < 0) break;
    }
    listing.ServerQuestion.reset();
    listing.SourceQuestion.reset();
    if (!listing.ServerAnswered || !listing.SourcesAnswered) return {};
    return InOrder(listing);
}

}  // namespace Corvetape
