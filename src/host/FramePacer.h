#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <cstdint>
#include <functional>

#include "framework/FrameRate.h"

class KDEFrame;

/// What a host asks of a scene beside what its frame asks.
struct SCENE_CALLS {
    std::function<void(int width, int height)> set_view_size;  ///< pixels; its context is current
    std::function<void()> skip_unseen_time;                    ///< before a frame
    std::function<void(bool drawing)> drawing;                 ///< it goes on, or is held back
};

/// Lets at most so many frames per second through, evenly: a frame that comes late does not push
/// back the ones after it. Times in milliseconds on any clock that does not go backwards.
class FrameLimit {
public:
    explicit FrameLimit(double framesPerSecond);

    /// True when a frame may be drawn now; counts it as drawn.
    bool due(std::int64_t now);
    double rate() const { return frames_per_second; }

private:
    double frames_per_second;
    double period;
    double next;
};

/// What the X server says about the window drawn into.
struct SHOWN_STATE {
    bool viewable = true;   ///< it and all its ancestors are mapped
    bool obscured = false;  ///< other windows cover all of it
    bool asleep = false;    ///< the monitor is in standby or off

    bool seen() const { return viewable && !obscured && !asleep; }
};

/// Holds back ticks of a frame's timer, so that nothing is drawn that nobody sees: no more often
/// than the limit above, and not at all while the window is unmapped or covered or the monitor
/// sleeps; the scene learns of such times. Otherwise its motion follows the clock and does not
/// change.
///
/// The frame sizes its scene once. When its window changes later, this tells the scene the new size
/// before the next frame.
class FramePacer : public QObject, private QAbstractNativeEventFilter {
public:
    /// `wanted`: frames per second at most, 0 for the limit above.
    FramePacer(KDEFrame& frame, int wanted, SCENE_CALLS calls);
    ~FramePacer() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, long* result) override;
    bool mayDraw();
    /// Whether the window is there to be painted; loads the scene first if that is still to do.
    bool readyToPaint();
    bool windowIsViewable() const;
    void start();
    void followSize();
    void followRefreshRate();
    void askServer();

    KDEFrame& paced;
    SCENE_CALLS scene;
    int wanted_rate;
    bool started;   ///< the first frame has been let through
    bool software;  ///< the renderer draws on the processor; known from then on
    bool held;  ///< drawing has been held back since the last frame, because nobody would see it
    FrameLimit limit;
    SHOWN_STATE state;
    std::int64_t next_question;  ///< when to ask the server again, milliseconds
};
