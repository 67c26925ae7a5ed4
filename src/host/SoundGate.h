#pragma once

#include <xcb/xcb.h>

#include <QAbstractNativeEventFilter>

#include "system/SoundFade.h"

/// Decides when this process is heard: while it draws, and while no other saver of this person on
/// this display is. That one owns a selection of the X server; the next one takes it over when it
/// ends or stops drawing. Whatever the mixer plays passes here; one object per process, made before
/// the sounds start, on the toolkit's thread.
class SoundGate : private QAbstractNativeEventFilter {
public:
    SoundGate();
    ~SoundGate() override;
    SoundGate(const SoundGate&) = delete;
    SoundGate& operator=(const SoundGate&) = delete;

    /// Drawing goes on or stops.
    void setDrawing(bool drawing);
    /// Silence for the rest, from the mixer's next turn on.
    void fadeOut() { fade.open(false); }
    /// Nobody hears us: silence has been mixed, or no device plays.
    bool silent() const;
    /// Waits for that, but no longer than this.
    void waitForSilence(int milliseconds) const;
    /// Fades, and leaves the rest to the device, which has up to 370 milliseconds of sound that is
    /// still to be heard: a process of its own, without a display, holds the device open for it and
    /// ends. This one may end at once afterwards, but must not close the device. Returns when the
    /// device has taken the fade, after 400 milliseconds at the latest.
    void leaveToDevice();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, long* result) override;
    void claim();
    void release();

    xcb_connection_t* connection;
    xcb_atom_t selection;
    xcb_window_t own;      ///< owns the selection; 0 while we do not ask for it
    xcb_window_t watched;  ///< another saver's that does; 0 when we do
    bool drawing;
    SoundFade fade;
};

/// The sound library's own messages about machines without a sound card are not printed any more.
void quietSoundLibrary();
