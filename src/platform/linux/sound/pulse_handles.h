#pragma once

#include <pulse/pulseaudio.h>

#include <memory>

namespace Corvetape {

/// Owners of libpulse's objects. A context or stream that goes calls nobody any more.
struct PulseDeleter {
    void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
    void operator()(pa_context* context) const {
        pa_context_set_state_callback(context, nullptr, nullptr);
        pa_context_disconnect(context);
        pa_context_unref(context);
    }
    void operator()(pa_stream* stream) const {
        pa_stream_set_state_callback(stream, nullptr, nullptr);
        pa_stream_set_read_callback(stream, nullptr, nullptr);
        pa_stream_set_moved_callback(stream, nullptr, nullptr);
        pa_stream_set_suspended_callback(stream, nullptr, nullptr);
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
    void operator()(pa_operation* operation) const {
        pa_operation_cancel(operation);
        pa_operation_unref(operation);
    }
};

using PulseLoop = std::unique_ptr<pa_mainloop, PulseDeleter>;
using PulseContext = std::unique_ptr<pa_context, PulseDeleter>;
using PulseStream = std::unique_ptr<pa_stream, PulseDeleter>;
using PulseOperation = std::unique_ptr<pa_operation, PulseDeleter>;

}  // namespace Corvetape
