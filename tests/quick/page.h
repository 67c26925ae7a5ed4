// A window with a page of QML in it.
#pragma once

#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <functional>
#include <memory>

#include "quick/Reef.h"

namespace test {

/// Handles events until the condition holds; false when patience (60 seconds) runs out.
bool until(const std::function<bool()>& condition);

class Page {
public:
    /// `body` are the children of an item that fills the window. The window is shown.
    explicit Page(const QString& body, const QSize& size = {320, 240},
                  QSurfaceFormat::OpenGLContextProfile profile = QSurfaceFormat::NoProfile);
    ~Page();

    QQuickWindow& window() { return *quick_window; }
    /// The page's reef; null when there is none.
    Reef* reef() { return root ? root->findChild<Reef*>() : nullptr; }
    QQuickItem* item(const char* name) { return root->findChild<QQuickItem*>(QLatin1String(name)); }
    /// Frames that the window has shown since it was made.
    int frames() const { return *frame_count; }
    /// Waits for so many more frames.
    bool waitFrames(int more);
    /// What it shows, drawn anew.
    QImage picture();

private:
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> quick_window;
    std::unique_ptr<QQuickItem> root;
    std::shared_ptr<int> frame_count;
};

/// Colours that a picture has.
int colours(const QImage& picture);

}  // namespace test
