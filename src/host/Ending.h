#pragma once

#include <QObject>

#include <functional>

/// How the program ends from outside.
///
/// Signals that ask it to end (TERM, and INT and HUP unless they were ignored at the start) run
/// `stop` from the event loop; then the process dies by that same signal, because hosts read the
/// cause of death. A host may wait for it with the screen locked, so a timer ends the process when
/// that takes longer than 65 milliseconds, or half a second where sounds fade, or a second where
/// nobody waits. A lost X connection ends it at once, quietly, with status 0.
class Ending : public QObject {
public:
    /// `stop` must stop the drawing and close the sound. One object per process.
    explicit Ending(std::function<void()> stop);
    /// Nobody waits from here on: the program ends by itself.
    ~Ending() override;

    /// For `stop`: sounds are to fade, which takes as long as the mixer's next turn.
    static void soundsFade();
    /// The program ends by itself, or the window is its own: it may take a second.
    static void nobodyWaits();

private:
    std::function<void()> stop_drawing;
};

/// To be called before the toolkit starts: hosts may start us with those signals blocked, some send
/// others as messages of their own, and the toolkit comments on what is not worth a line. Until
/// there is an `Ending` the signals end the process at once; never does shared memory outlive it.
void prepareEnding();
