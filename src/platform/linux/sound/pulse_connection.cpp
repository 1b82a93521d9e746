#include "platform/linux/sound/pulse_connection.h"

#include "platform/program_name.h"

namespace Corvetape {

PulseConnection::PulseConnection(std::chrono::milliseconds limit) : Loop(pa_mainloop_new()) {
    GiveTime(limit);
    if (Loop) Server.reset(pa_context_new(pa_mainloop_get_api(Loop.get()), ProgramTitle));
}

bool PulseConnection::Connect(const std::string& server) {
    if (!Server) return false;
    const char* const address = server.empty() ? nullptr : server.c_str();
    if (pa_context_connect(Context(), address, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) return false;
    while (pa_context_get_state(Context()) != PA_CONTEXT_READY) {
        if (!Step()) return false;
    }
    return true;
}

std::unique_ptr<PulseConnection> PulseConnection::To(const std::string& server,
                                                     std::chrono::milliseconds limit) {
    auto made = std::make_unique<PulseConnection>(limit);
    return made->Connect(server) ? std::move(made) : nullptr;
}

std::string PulseConnection::Reason() const {
    if (std::chrono::steady_clock::now() >= Deadline) return pa_strerror(PA_ERR_TIMEOUT);
    const int error = Server ? pa_context_errno(Server.get()) : PA_ERR_INTERNAL;
    return pa_strerror(error != PA_OK ? error : PA_ERR_UNKNOWN);
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
