#include "platform/linux/sound/pulse_connection.h"

namespace Corvetape {

PulseConnection::PulseConnection(std::chrono::milliseconds limit) : Loop(pa_mainloop_new()) {
    GiveTime(limit);
    if (Loop) Server.reset(pa_context_new(pa_mainloop_get_api(Loop.get()), "Corvetape"));
}

std::unique_ptr<PulseConnection> PulseConnection::To(const std::string& server,
                                                     std::chrono::milliseconds limit) {
    auto made = std::make_unique<PulseConnection>(limit);
    if (!made->Server) return nullptr;
    const char* const address = server.empty() ? nullptr : server.c_str();
    if (pa_context_connect(made->Context(), address, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) return nullptr;
    while (pa_context_get_state(made->Context()) != PA_CONTEXT_READY) {
        if (!made->Step()) return nullptr;
    }
    return made;
}

void PulseConnection::GiveTime(std::chrono::milliseconds limit) {
    Deadline = std::chrono::steady_clock::now() + limit;
}

/// Handles what comes next. False if nothing more will come in time.
bool PulseConnection::Step() {
    const auto left = Deadline - std::chrono::steady_clock::now();
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(left).count();
    if (microseconds <= 0 || !PA_CONTEXT_IS_GOOD(pa_context_get_state(Server.get()))) return false;
    return pa_mainloop_prepare(Loop.get(), static_cast<int>(microseconds)) >= 0 &&
           pa_mainloop_poll(Loop.get()) >= 0 && pa_mainloop_dispatch(Loop.get()) >= 0;
}

bool PulseConnection::Await(pa_operation* question) {
    const PulseOperation kept(question);
    if (!kept) return false;
    while (pa_operation_get_state(kept.get()) == PA_OPERATION_RUNNING) {
        if (!Step()) return false;
    }
    return pa_operation_get_state(kept.get()) == PA_OPERATION_DONE;
}

}  // namespace Corvetape
