// The reef as an item of Qt Quick: `Reef` of the module org.atollia.reef.
#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QQuickFramebufferObject>
#include <QTimer>
#include <memory>

#include "quick/ReefWishes.h"

class WindowCover;

/// A setting as a property, kept in its range. One signal tells of them all: settings change
/// rarely, and several at once.
#define REEF_SETTING(NAME, RECORD, FIELD, LOW, HIGH)                       \
    Q_PROPERTY(int NAME READ NAME WRITE set_##NAME NOTIFY settingsChanged) \
public:                                                                    \
    int NAME() const { return wishes.RECORD.FIELD; }                       \
    void set_##NAME(int value) { change(wishes.RECORD.FIELD, value, LOW, HIGH); }
#define REEF_FLAG(NAME, FIELD)                                              \
    Q_PROPERTY(bool NAME READ NAME WRITE set_##NAME NOTIFY settingsChanged) \
public:                                                                     \
    bool NAME() const { return wishes.settings.FIELD; }                     \
    void set_##NAME(bool value) { change(wishes.settings.FIELD, value); }

/// Draws the living reef into the page, at most once per refresh of the monitor, at most 30 times a
/// second with a software renderer. The picture stands still while `running` is false; nothing is
/// drawn while the item or its window is not visible or, on X, other windows cover that one; time
/// that nobody saw does not pass. Until the scene has been loaded, and where it cannot be drawn
/// (`problem` says why), a still picture of it shows.
///
/// The scene lives on the thread that renders the window; the item tells it its wishes while that
/// thread and its own meet.
class Reef : public QQuickFramebufferObject {
    Q_OBJECT
    // What lives on the reef; see SaverSettings.
    REEF_SETTING(boidModel, settings, boidmodel, 0, 1)
    REEF_SETTING(boidCount, settings, boidcount, 0, 20)
    REEF_FLAG(fishRed, fish_red)
    REEF_FLAG(fishBlue, fish_blue)
    REEF_FLAG(fishStripe, fish_stripe)
    REEF_FLAG(fishYellBlu, fish_yell_blu)
    REEF_FLAG(fishDot, fish_dot)
    REEF_FLAG(fishBigGrey, fish_big_grey)
    REEF_FLAG(fishBigRed, fish_big_red)
    REEF_FLAG(fishManta, fish_manta)
    REEF_FLAG(birdGull, bird_gull)
    REEF_SETTING(fishCount, settings, fishcount, 0, 10)
    REEF_SETTING(cameraPos, settings, camerapos, 0, 3)
    REEF_SETTING(cameraSpeed, settings, cameraspeed, 1, 9)
    REEF_SETTING(cameraFixTop, settings, camerafix_top, 1, 60)
    REEF_SETTING(cameraFixBottom, settings, camerafix_bottom, 5, 60)
    REEF_SETTING(skyType, settings, skytype, 0, 1)
    // See EXTRA_SETTINGS.
    REEF_SETTING(proportions, extras, proportions, 0, 1)
    REEF_SETTING(dayTime, extras, daytime, 0, 1)
    REEF_SETTING(latitude, extras, latitude, -90, 90)
    REEF_SETTING(volume, extras, volume, 0, 100)
    REEF_SETTING(quietFrom, extras, quiet_from, 0, 23)
    REEF_SETTING(quietTo, extras, quiet_to, 0, 23)

    /// Time passes and the picture moves.
    Q_PROPERTY(bool running READ running WRITE setRunning NOTIFY runningChanged)
    /// Without sound; of the reefs in a process that are not muted, one sounds.
    Q_PROPERTY(bool muted READ muted WRITE setMuted NOTIFY mutedChanged)
    /// Pictures a second at most, 0 for as many as suit the renderer.
    Q_PROPERTY(qreal maximumFrameRate READ maximumFrameRate WRITE setMaximumFrameRate NOTIFY
                   maximumFrameRateChanged)
    /// Per pixel, for smooth edges: 0 to 16, -1 for as many as suit the renderer.
    Q_PROPERTY(int samples READ samples WRITE setSamples NOTIFY samplesChanged)
    /// The part of width and height that the picture is drawn with before it is enlarged: 0.4 to 1,
    /// 0 for what a software renderer can afford; graphics hardware can afford all of it.
    Q_PROPERTY(qreal renderScale READ renderScale WRITE setRenderScale NOTIFY renderScaleChanged)
    /// That part as it is now.
    Q_PROPERTY(qreal currentScale READ currentScale NOTIFY currentScaleChanged)
    /// Pictures drawn in the last second; 0 while none are.
    Q_PROPERTY(qreal frameRate READ frameRate NOTIFY frameRateChanged)
    /// Why the reef stands still, or what of it is missing, in one line; empty while nothing is
    /// wrong.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

public:
    explicit Reef(QQuickItem* parent = nullptr);
    ~Reef() override;

    Renderer* createRenderer() const override;

    bool running() const { return wishes.running; }
    void setRunning(bool running);
    bool muted() const { return wishes.muted; }
    void setMuted(bool muted);
    qreal maximumFrameRate() const { return wishes.maximum_frame_rate; }
    void setMaximumFrameRate(qreal rate);
    int samples() const { return wishes.samples; }
    void setSamples(int samples);
    qreal renderScale() const { return wishes.render_scale; }
    void setRenderScale(qreal scale);
    qreal currentScale() const { return current_scale; }
    qreal frameRate() const { return frame_rate; }
    QString problem() const { return problem_line; }

signals:
    void settingsChanged();
    void runningChanged();
    void mutedChanged();
    void maximumFrameRateChanged();
    void samplesChanged();
    void renderScaleChanged();
    void currentScaleChanged();
    void frameRateChanged();
    void problemChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    friend class ReefRenderer;

    void change(bool& field, bool value);
    void change(int& field, int value, int low, int high);
    /// Whether pictures follow each other.
    bool moving() const;
    /// Called when something may have changed what moving() says.
    void movingChanged();
    /// Has the X server tell when other windows cover the item's.
    void watchCover();
    /// Has the next picture drawn as soon as it is due.
    void drawWhenDue();
    /// What the renderer tells of itself with every frame.
    struct FRAME {
        bool software;
        qreal scale;
        QString lacking;  ///< a file of the data that cannot be loaded; empty: none
    };
    void countFrame(const FRAME& frame);
    void tellProblem(const QString& line);
    /// The reef cannot be drawn at all.
    void standStill(const QString& reason);
    /// In the thread that renders, while the item's own waits: why its context does not do.
    QString whatIsWrongHere() const;
    QSGNode* stillPicture(QSGNode* old);
    /// Lets the reef come through the still picture before it a little more.
    void fadeStill(QSGNode* reef);

    REEF_WISHES wishes;
    std::unique_ptr<WindowCover> cover;  ///< of the item's window; null before it is exposed
    QString problem_line;
    bool hopeless = false;     ///< it cannot be drawn at all
    bool still_shown = false;  ///< the paint node is that of the still picture
    bool seen_still = false;   ///< a page has shown the still picture
    int fading = 0;            ///< pictures of the reef until the still one is gone
    bool interrupted = false;  ///< pictures did not follow each other since the last one
    bool was_moving = false;
    bool sounds = false;    ///< its scene is the one that is heard
    bool software = false;  ///< drawn on the processor
    QElapsedTimer clock;
    QTimer due;                 ///< until the next picture
    QTimer stalled;             ///< until the frame rate counts as 0
    double next_frame = 0;      ///< on the clock, milliseconds
    double counting_since = 0;  ///< on the clock, milliseconds
    int counted = 0;            ///< frames since then
    qreal frame_rate = 0;
    qreal current_scale = 1;
};
