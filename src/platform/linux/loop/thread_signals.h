#pragma once

#include <pthread.h>

#include <csignal>

namespace Corvetape {

/// Keeps all signals away from the calling thread. Threads beside the main one begin with it: signals belong
/// to the main thread.
inline void LeaveSignalsToTheMainThread() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

}  // namespace Corvetape
