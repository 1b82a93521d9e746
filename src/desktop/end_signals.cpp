#include "desktop/end_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace Corvetape {

namespace {

constexpr int Requests[] = {SIGTERM, SIGINT, SIGHUP};

// A signal handler can reach nothing but objects of static storage.
int wakePipe[2] = {-1, -1};

void OnSignal(int /*signal*/) {
    const int before = errno;
    const char byte = 0;
    // A full pipe wakes its reader just as well.
    if (write(wakePipe[1], &byte, 1) < 0) errno = before;
    errno = before;
}

}  // namespace

EndSignals::EndSignals() {
    if (pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
    Wake = std::make_unique<QSocketNotifier>(wakePipe[0], QSocketNotifier::Read);
    for (const int request : Requests) std::signal(request, OnSignal);
}

EndSignals::~EndSignals() {
    if (!Wake) return;
    for (const int request : Requests) std::signal(request, SIG_DFL);
    Wake.reset();
    for (int& end : wakePipe) {
        close(end);
        end = -1;
    }
}

void EndSignals::Take() {
    char bytes[16];
    while (read(wakePipe[0], bytes, sizeof bytes) > 0) continue;
}

}  // namespace Corvetape
