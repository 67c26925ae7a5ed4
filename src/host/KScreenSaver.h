#pragma once

#include <QAbstractNativeEventFilter>
#include <QWidget>

/// A widget that fills the window of another client and follows its size; savers derive from it.
/// It lets every input through to that client, and ends the program when the window goes away.
///
/// For the id of a root window it lies below all other windows of that screen; for 0 it is an
/// ordinary window that the caller sizes and shows, closed by q, Escape or the window manager; F11
/// and a double click make it fill the screen and undo that.
class KScreenSaver : public QWidget, private QAbstractNativeEventFilter {
public:
    explicit KScreenSaver(WId id = 0);
    ~KScreenSaver() override;

    void setBackgroundColor(const QColor& colour);
    /// Paints the whole widget in the background colour.
    void erase();
    /// Makes `widget` a child that fills this one. It keeps its owner and is not shown. The
    /// X server tells us how much of it is visible.
    void embed(QWidget* widget);
    /// Only for a window of our own.
    void setFullScreen(bool full);
    /// Takes a window of our own from the screen; a host's is for the host to take away.
    void leaveScreen();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, long* result) override;
    void enterWindow(WId id);
    void coverRoot(const QRect& screen);
    void hostGone();
    bool fillsScreen() const;

    WId host;                           ///< the window we watch; 0 when there is none
    QWindow* foreign;                   ///< the toolkit's name for it, owned
    QWidget* embedded;                  ///< not owned
    QRect normal;                       ///< where our own window was before it filled the screen
    QMetaObject::Connection following;  ///< to the size of the screen that it fills
};
