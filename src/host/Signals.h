// Signals that ask a program to end.
#pragma once

#include <csignal>

constexpr int ENDING_SIGNALS[] = {SIGTERM, SIGINT, SIGHUP};

/// Has `handler`, or SIG_DFL, called for a signal from now on; system calls that it interrupts go
/// on. Async-signal-safe.
inline void handleSignal(int number, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

/// Whether nothing comes of a signal: whoever started us may want us to outlive terminals and their
/// keys. Async-signal-safe.
inline bool isIgnored(int number) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}
