#include "app/ReefWindow.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QDialog>
#include <QMenu>
#include <QMouseEvent>
#include <QQuickItem>
#include <QSettings>
#include <cmath>

#include "app/SavedSettings.h"
#include "quick/Reef.h"
#include "quick/ReefTexts.h"

namespace {

constexpr QSize FIRST_SIZE(960, 600);
constexpr QSize SMALLEST_SIZE(160, 100);
constexpr int POINTER_SECONDS = 3;
/// A pointer that lies still sends small movements all the same; a hand moves it farther, pixels.
constexpr double REAL_MOVEMENT = 8;

constexpr char SIZE_KEY[] = "window/size";

/// Sizes of windows are no settings of the reef and have a file of their own.
QSettings memory() { return QSettings(QStringLiteral("Orvo"), QStringLiteral("atollia")); }

}  // namespace

ReefWindow::ReefWindow(PURPOSE what_for) : purpose(what_for), the_reef(nullptr) {
    setTitle(QStringLiteral("Atollia"));
    setColor(Qt::black);
    setResizeMode(SizeRootObjectToView);
    setSource(QUrl(QStringLiteral("qrc:/atollia/Page.qml")));
    the_reef = rootObject()->findChild<Reef*>();
    applySavedSettings(*the_reef);
    // An idle picture and a background come unasked.
    if (purpose != PURPOSE::LOOKING)
        the_reef->setMuted(true);
    connect(
        this, &QQuickWindow::sceneGraphError, this,
        [this](QQuickWindow::SceneGraphError, const QString& message) {
            // Without the formats that were asked for.
            emit failed(message.section('\n', 0, 0).section(QLatin1String(" for format "), 0, 0));
        });
    idle.setSingleShot(true);
    idle.setInterval(POINTER_SECONDS * 1000);
    connect(&idle, &QTimer::timeout, this, [this] { setCursor(Qt::BlankCursor); });
    if (purpose == PURPOSE::UNTIL_INPUT)
        setCursor(Qt::BlankCursor);
    setMinimumSize(SMALLEST_SIZE);
}

ReefWindow::~ReefWindow() = default;

void ReefWindow::showRemembered() {
    normal_size = memory().value(QLatin1String(SIZE_KEY), FIRST_SIZE).toSize();
    resize(normal_size.expandedTo(SMALLEST_SIZE));
    show();
}

void ReefWindow::end() {
    if (purpose == PURPOSE::LOOKING && normal_size.isValid())
        memory().setValue(QLatin1String(SIZE_KEY), normal_size);
    QCoreApplication::quit();
}

bool ReefWindow::event(QEvent* event) {
    if (purpose == PURPOSE::UNTIL_INPUT) {
        switch (event->type()) {
            case QEvent::KeyPress:
            case QEvent::MouseButtonPress:
            case QEvent::Wheel:
            case QEvent::TouchBegin:
            case QEvent::TabletPress:
                end();
                return true;
            case QEvent::MouseMove: {
                const QPointF place = static_cast<QMouseEvent*>(event)->screenPos();
                if (!first_place)
                    first_place = place;
                const QPointF way = place - *first_place;
                if (std::hypot(way.x(), way.y()) > REAL_MOVEMENT)
                    end();
                return true;
            }
            default:
                break;
        }
    } else if (purpose == PURPOSE::LOOKING) {
        switch (event->type()) {
            case QEvent::KeyPress:
                handleKey(static_cast<QKeyEvent*>(event)->key());
                return true;
            case QEvent::MouseButtonDblClick:
                if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
                    toggleFullScreen();
                return true;
            case QEvent::MouseButtonPress:
                if (static_cast<QMouseEvent*>(event)->button() == Qt::RightButton)
                    showMenu(static_cast<QMouseEvent*>(event)->globalPos());
                break;
            case QEvent::MouseMove:
            case QEvent::Enter:
                unsetCursor();
                idle.start();
                break;
            case QEvent::Resize:
                if (windowStates() == Qt::WindowNoState)
                    normal_size = size();
                break;
            default:
                break;
        }
    }
    const bool handled = QQuickView::event(event);
    if (event->type() == QEvent::Close)
        end();
    return handled;
}

void ReefWindow::handleKey(int key) {
    switch (key) {
        case Qt::Key_F11:
        case Qt::Key_F:
            toggleFullScreen();
            break;
        case Qt::Key_Escape:
            if (windowStates() & Qt::WindowFullScreen)
                toggleFullScreen();
            else
                end();
            break;
        case Qt::Key_Q:
            end();
            break;
        case Qt::Key_0:
        case Qt::Key_1:
        case Qt::Key_2:
        case Qt::Key_3:
            the_reef->set_cameraPos(key - Qt::Key_0);
            break;
        case Qt::Key_S:
            the_reef->set_skyType(1 - the_reef->skyType());
            break;
        case Qt::Key_M:
            the_reef->setMuted(!the_reef->muted());
            break;
        case Qt::Key_P:
        case Qt::Key_Space:
            the_reef->setRunning(!the_reef->running());
            break;
        case Qt::Key_Menu:
            showMenu(mapToGlobal(QPoint(width() / 2, height() / 2)));
            break;
        default:
            break;
    }
}

void ReefWindow::toggleFullScreen() {
    if (windowStates() & Qt::WindowFullScreen)
        showNormal();
    else
        showFullScreen();
}

void ReefWindow::buildMenu() {
    menu = std::make_unique<QMenu>();
    const ReefTexts texts;
    auto* views = menu->addMenu(texts.text("camera"));
    auto* view_group = new QActionGroup(menu.get());
    const char* const names[] = {"automatic", "top", "middle", "bottom"};
    for (int i = 0; i < 4; ++i) {
        QAction* action =
            views->addAction(texts.text(names[i]), [this, i] { the_reef->set_cameraPos(i); });
        action->setShortcut(Qt::Key_0 + i);
        action->setCheckable(true);
        action->setActionGroup(view_group);
        connect(menu.get(), &QMenu::aboutToShow, action,
                [this, action, i] { action->setChecked(the_reef->cameraPos() == i); });
    }
    // Each with its key, how to read it and how to change it.
    const struct {
        const char* text;
        int key;
        std::function<bool()> is_on;
    } switches[] = {
        {"cloudless", Qt::Key_S, [this] { return the_reef->skyType() == 1; }},
        {"sound", Qt::Key_M, [this] { return !the_reef->muted(); }},
        {"pause", Qt::Key_P, [this] { return !the_reef->running(); }},
        {"fullscreen", Qt::Key_F11, [this] { return windowStates() & Qt::WindowFullScreen; }},
    };
    for (const auto& one : switches) {
        QAction* action =
            menu->addAction(texts.text(one.text), [this, key = one.key] { handleKey(key); });
        action->setShortcut(one.key);
        action->setCheckable(true);
        connect(menu.get(), &QMenu::aboutToShow, action,
                [action, is_on = one.is_on] { action->setChecked(is_on()); });
    }
    menu->addSeparator();
    menu->addAction(texts.text("settings"), [this] { editSettings(); });
    menu->addAction(texts.text("quit"), [this] { end(); })->setShortcut(Qt::Key_Q);
}

void ReefWindow::showMenu(const QPoint& place) {
    if (!menu)
        buildMenu();
    unsetCursor();
    idle.stop();
    // Compositors place a menu at the window that it belongs to.
    menu->winId();
    menu->windowHandle()->setTransientParent(this);
    menu->popup(place);
}

void ReefWindow::editSettings() {
    const std::unique_ptr<QDialog> dialog = makeSettingsDialog();
    dialog->winId();
    dialog->windowHandle()->setTransientParent(this);
    if (dialog->exec() == QDialog::Accepted)
        applySavedSettings(*the_reef);
}
