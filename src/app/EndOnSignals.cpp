#include "app/EndOnSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <csignal>
#include <utility>

#include "host/Signals.h"

namespace {

int wakeup[2] = {-1, -1};

/// Async-signal-safe. The pipe takes this much: nothing else is ever written.
void onSignal(int) {
    for (const int number : ENDING_SIGNALS)
        if (!isIgnored(number))
            handleSignal(number, SIG_DFL);
    const char byte = 0;
    if (write(wakeup[1], &byte, 1) < 0)
        return;
}

}  // namespace

EndOnSignals::EndOnSignals(std::function<void()> end) {
    if (pipe2(wakeup, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto* notifier = new QSocketNotifier(wakeup[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [notifier, end = std::move(end)] {
        notifier->setEnabled(false);
        // What the person did before counts.
        QCoreApplication::processEvents();
        end();
    });
    for (const int number : ENDING_SIGNALS)
        if (!isIgnored(number))
            handleSignal(number, onSignal);
}

EndOnSignals::~EndOnSignals() {
    for (const int number : ENDING_SIGNALS)
        if (!isIgnored(number))
            handleSignal(number, SIG_DFL);
    for (int& end : wakeup)
        if (end >= 0)
            close(std::exchange(end, -1));
}
