#include "cli/interrupt.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace Corvetape {

namespace {

// A signal handler can reach nothing but objects of static storage.
volatile std::sig_atomic_t interruptWanted = 0;
int wakePipe[2] = {-1, -1};

void Note(int signal) {
    interruptWanted = 1;
    const char byte = 0;
    // A full pipe wakes its reader just as well.
    if (write(wakePipe[1], &byte, 1) < 0) interruptWanted = 1;
    std::signal(signal, SIG_DFL);
}

}  // namespace

Interrupt::Interrupt() {
    interruptWanted = 0;
    if (pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0) wakePipe[0] = wakePipe[1] = -1;
    std::signal(SIGINT, Note);
    std::signal(SIGTERM, Note);
}

Interrupt::~Interrupt() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    for (int& end : wakePipe) {
        if (end >= 0) close(end);
        end = -1;
    }
}

bool Interrupt::Wanted() {
    return interruptWanted != 0;
}

int Interrupt::Descriptor() {
    return wakePipe[0];
}

}  // namespace Corvetape
