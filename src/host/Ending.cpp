#include "host/Ending.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <sys/shm.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <utility>

#include "host/Signals.h"

namespace {

// In milliseconds. The kernel needs its own time afterwards.
constexpr long PATIENCE_OF_A_HOST = 65;
// Enough for the next turn of the mixer.
constexpr long PATIENCE_FOR_SOUNDS = 500;
// And for what the device has then.
constexpr long PATIENCE = 1000;

int wakeup[2] = {-1, -1};
timer_t backstop;
volatile std::sig_atomic_t stoppable = 0;  ///< The event loop will hear of a signal.
volatile std::sig_atomic_t received = 0;
volatile std::sig_atomic_t patience = PATIENCE_OF_A_HOST;

/// Async-signal-safe.
void startBackstop() {
    const long limit = patience;
    const itimerspec timer = {{0, 0}, {limit / 1000, limit % 1000 * 1'000'000}};
    timer_settime(backstop, 0, &timer, nullptr);
}

void beMorePatient(long milliseconds) {
    patience = static_cast<std::sig_atomic_t>(milliseconds);
    if (received)
        startBackstop();
}

/// Removes the System V shared memory that this process has made for pictures and that nothing
/// would take away after it: the driver marks it to go with its last user only some time after it
/// has made it, on a busy machine a long time. System calls alone, so async-signal-safe.
void removeSharedMemory() {
    shm_info summary = {};
    shmid_ds segment = {};
    const int last = shmctl(0, SHM_INFO, reinterpret_cast<shmid_ds*>(&summary));
    for (int i = 0; i <= last; ++i) {
        const int id = shmctl(i, SHM_STAT, &segment);
        if (id >= 0 && segment.shm_cpid == getpid() && segment.shm_perm.__key == IPC_PRIVATE)
            shmctl(id, IPC_RMID, nullptr);
    }
}

/// Async-signal-safe.
void dieBy(int number) {
    removeSharedMemory();
    std::signal(number, SIG_DFL);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, number);
    std::raise(number);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

void onSignal(int number) {
    if (received)
        return;
    received = number;
    if (!stoppable) {
        dieBy(number);
        return;
    }
    startBackstop();
    const char byte = 0;
    // Nothing is lost when the pipe is full or closed: the timer runs.
    if (write(wakeup[1], &byte, 1) < 0)
        return;
}

void onBackstop(int) { dieBy(received); }

/// The end that hosts ask for is never ignored.
bool counts(int number) { return number == SIGTERM || !isIgnored(number); }

int onLostConnection(Display*) { _exit(0); }

void onMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    // The toolkit says this just before it exits with an error of its own.
    if (message.startsWith(QLatin1String("The X11 connection broke")))
        _exit(0);
    // Looked for at the start, whether needed or not; many hosts do not pass the variable.
    if (message.startsWith(QLatin1String("QStandardPaths: ")))
        return;
    // One line for a settings file that cannot be read, not one for each of its lines.
    static bool settings_told = false;
    if (context.category && std::strcmp(context.category, "kf.config.core") == 0 &&
        std::exchange(settings_told, true))
        return;
    std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
}

}  // namespace

Ending::Ending(std::function<void()> stop) : stop_drawing(std::move(stop)) {
    XSetIOErrorHandler(onLostConnection);

    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGALRM;
    if (pipe2(wakeup, O_CLOEXEC | O_NONBLOCK) != 0 ||
        timer_create(CLOCK_MONOTONIC, &event, &backstop) != 0)
        return;  // the signals end the process at once
    auto* notifier = new QSocketNotifier(wakeup[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        stop_drawing();
        dieBy(received);
    });
    handleSignal(SIGALRM, onBackstop);
    stoppable = 1;
}

Ending::~Ending() { nobodyWaits(); }

void Ending::soundsFade() { beMorePatient(PATIENCE_FOR_SOUNDS); }

void Ending::nobodyWaits() { beMorePatient(PATIENCE); }

void prepareEnding() {
    qInstallMessageHandler(onMessage);
    sigset_t set;
    sigemptyset(&set);
    for (const int number : ENDING_SIGNALS)
        sigaddset(&set, number);
    sigaddset(&set, SIGALRM);
    for (const int number : ENDING_SIGNALS)
        if (counts(number))
            handleSignal(number, onSignal);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    std::signal(SIGUSR1, SIG_IGN);  // some lockers tell their savers news this way
    std::signal(SIGPIPE, SIG_IGN);  // whoever reads our messages may leave
}
