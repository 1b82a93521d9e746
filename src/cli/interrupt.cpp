#include "cli/interrupt.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace Corvetape {

namespace {

// A signal handler can reach nothing but objects of static storage.
volatile std::sig_atomic_t interruptWanted = 0;
int wakePipe[2] = {-1, -1};

void Note() {
    interruptWanted = 1;
    const char byte = 0;
    // A full pipe wakes its reader just as well.
    if (write(wakePipe[1], &byte, 1) < 0) interruptWanted = 1;
}

void OnSignal(int signal) {
    const int before = errno;
    Note();
    std::signal(signal, signal == SIGHUP ? SIG_IGN : SIG_DFL);
    errno = before;
}

}  // namespace

Interrupt::Interrupt() {
    interruptWanted = 0;
    if (pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0) wakePipe[0] = wakePipe[1] = -1;
    std::signal(SIGINT, OnSignal);
    std::signal(SIGTERM, OnSignal);
    HangupBefore = std::signal(SIGHUP, OnSignal);
    if (HangupBefore == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
}

Interrupt::~Interrupt() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    std::signal(SIGHUP, HangupBefore);
    for (int& end : wakePipe) {
        if (end >= 0) close(end);
        end = -1;
    }
}

bool Interrupt::Wanted() {
    return interruptWanted != 0;
}

void Interrupt::Want() {
    Note();
}

int Interrupt::Descriptor() {
    return wakePipe[0];
}

}  // namespace Corvetape
