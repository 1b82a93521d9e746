#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/linux/sound/pulse_handles.h"

namespace Corvetape {

/// A connection to the sound server for questions that are waited for. It waits no longer than until its
/// deadline, and after that gives up everything at once; the server is never started.
class PulseConnection {
 public:
    /// Not connected; To makes one that is.
    explicit PulseConnection(std::chrono::milliseconds limit);

    /// Connects to the server at `server` (empty: the user's own). False if none answers before the deadline.
    bool Connect(const std::string& server);

    /// The same in one. Null if none answers within `limit`.
    static std::unique_ptr<PulseConnection> To(const std::string& server, std::chrono::milliseconds limit);

    pa_context* Context() const { return Server.get(); }

    /// Sets the deadline anew, for what is asked from now on.
    void GiveTime(std::chrono::milliseconds limit);

    /// Waits until a question has been answered, its callback having run. False if it was not asked at all or
    /// is not answered in time, or if the server goes; nobody is called back any more then.
    bool Await(pa_operation* question);

    /// Why the last question, or the connection, came to nothing: the server's own words.
    std::string Reason() const;

 private:
    bool Step();

    PulseLoop Loop;
    PulseContext Server;  // goes before its loop
    std::chrono::steady_clock::time_point Deadline;
};

}  // namespace Corvetape
