// SPDX-License-Identifier: GPL-3.0-or-later
// The end of the program while METIS works.
#pragma once

#include <signal.h>

#include <system_error>
#include <thread>

#include "solver/base/control.h"

// METIS takes SIGTERM for a fault of its own and jumps to where the thread that gets it may never
// have been. While this stands a thread waits for the signal in place of all others.
class termwatch {
  public:
    termwatch() {
        sigemptyset(&watched);
        sigaddset(&watched, SIGTERM);
        sigaddset(&watched, wake);
        pthread_sigmask(SIG_BLOCK, &watched, &former);
        try {
            watcher = std::thread([this] {
                int number = 0;
                if (sigwait(&watched, &number) == 0 && number == SIGTERM) endstopped();
            });
        } catch (const std::system_error&) {
            // The machine gives no more threads; the signal waits until the order is there.
        }
    }
    ~termwatch() {
        if (watcher.joinable()) {
            pthread_kill(watcher.native_handle(), wake);
            watcher.join();
        }
        pthread_sigmask(SIG_SETMASK, &former, nullptr);
    }
    termwatch(const termwatch&) = delete;
    termwatch& operator=(const termwatch&) = delete;

  private:
    static const int wake = SIGUSR1;
    sigset_t watched, former;
    std::thread watcher;
};
