#pragma once

#include <QSocketNotifier>
#include <memory>

namespace Corvetape {

/// Requests of the system to end, as by `kill` or the end of a session: they come to the loop like any other
/// event. One at a time in a process.
class EndSignals {
 public:
    EndSignals();
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    /// Activated when a request has come; `Take` makes it ready for the next one. Null if there is no memory
    /// or no descriptor for it: the system then ends the process as usual.
    QSocketNotifier* Notifier() { return Wake.get(); }

    static void Take();

 private:
    std::unique_ptr<QSocketNotifier> Wake;
};

}  // namespace Corvetape
