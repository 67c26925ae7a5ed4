#include "quick/page.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QPainter>
#include <QSet>
#include <QTimer>

bool test::until(const std::function<bool()>& condition) {
    const QDeadlineTimer patience(60000);
    QTimer look;  // so that waiting for events ends when there are none
    look.start(5);
    while (!condition()) {
        if (patience.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // Only a loop of the application's own deletes what is to be deleted later.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

test::Page::Page(const QString& body, const QSize& size,
                 QSurfaceFormat::OpenGLContextProfile profile)
    : quick_window(std::make_unique<QQuickWindow>()), frame_count(std::make_shared<int>(0)) {
    QQmlComponent component(&engine);
    component.setData(
        (QStringLiteral("import QtQuick 2.15; import org.atollia.reef 1.0; Item {") + body + "}")
            .toUtf8(),
        QUrl(QStringLiteral("page.qml")));
    root.reset(qobject_cast<QQuickItem*>(component.create()));
    EXPECT_TRUE(root) << qPrintable(component.errorString());
    if (!root)
        return;
    if (profile != QSurfaceFormat::NoProfile) {
        QSurfaceFormat format = quick_window->requestedFormat();
        format.setVersion(3, 3);
        format.setProfile(profile);
        quick_window->setFormat(format);
    }
    quick_window->resize(size);
    root->setSize(size);
    root->setParentItem(quick_window->contentItem());
    // The frame is counted when the page's own thread hears of it.
    QObject::connect(
        quick_window.get(), &QQuickWindow::frameSwapped, quick_window.get(),
        [count = frame_count] { ++*count; }, Qt::QueuedConnection);
    quick_window->show();
}

test::Page::~Page() {
    root.reset();
    quick_window.reset();
}

bool test::Page::waitFrames(int more) {
    const int wanted = frames() + more;
    return until([&] { return frames() >= wanted; });
}

QImage test::Page::picture() {
    const QImage grabbed = quick_window->grabWindow();
    QImage picture(grabbed.size(), QImage::Format_RGB32);
    // QImage would convert it with a pool of threads, which Qt 5.15 may let write to our stack.
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, grabbed);
    painter.end();
    return picture;
}

int test::colours(const QImage& picture) {
    QSet<QRgb> seen;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            seen.insert(picture.pixel(x, y));
    return seen.size();
}
