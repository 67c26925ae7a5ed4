#pragma once

#include <QObject>

#include <functional>

/// TERM, INT and HUP end the program as *Quit* does, so that it remembers what it remembers and its
/// sounds fade; a second one ends it at once. Those that are ignored at the start stay ignored.
class EndOnSignals : public QObject {
public:
    /// `end` runs from the event loop. One object per process; without file descriptors for it, the
    /// signals keep their default action.
    explicit EndOnSignals(std::function<void()> end);
    ~EndOnSignals() override;
};
