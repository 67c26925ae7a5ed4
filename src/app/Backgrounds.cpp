#include "app/Backgrounds.h"

#include <LayerShellQt/shell.h>
#include <LayerShellQt/window.h>

#include <QGuiApplication>
#include <QScreen>

#include "app/ReefWindow.h"

void Backgrounds::prepare() { LayerShellQt::Shell::useLayerShell(); }

Backgrounds::Backgrounds(QString screen) : only(std::move(screen)) {
    for (QScreen* one : QGuiApplication::screens())
        fill(one);
    connect(qApp, &QGuiApplication::screenAdded, this, &Backgrounds::fill);
    connect(qApp, &QGuiApplication::screenRemoved, this,
            [this](QScreen* gone) { windows.erase(gone); });
}

Backgrounds::~Backgrounds() = default;

void Backgrounds::fill(QScreen* screen) {
    if (!only.isEmpty() && screen->name() != only)
        return;
    auto window = std::make_unique<ReefWindow>(PURPOSE::BACKGROUND);
    window->setScreen(screen);
    window->setFlag(Qt::WindowTransparentForInput);
    auto* layer = LayerShellQt::Window::get(window.get());
    using LayerShellQt::Window;
    layer->setLayer(Window::LayerBackground);
    layer->setAnchors(Window::Anchors(Window::AnchorTop | Window::AnchorBottom |
                                      Window::AnchorLeft | Window::AnchorRight));
    layer->setExclusiveZone(-1);
    layer->setKeyboardInteractivity(Window::KeyboardInteractivityNone);
    layer->setDesiredOutput(screen);
    layer->setScope(QStringLiteral("wallpaper"));
    window->resize(screen->size());
    window->show();
    windows[screen] = std::move(window);
}
