// The reef behind everything, on the screens of a Wayland compositor.
#pragma once

#include <QObject>
#include <QString>
#include <map>
#include <memory>

class QScreen;
class ReefWindow;

/// Keeps one window on the background layer of every screen, or of the one with the name; screens
/// may come and go.
class Backgrounds : public QObject {
    Q_OBJECT

public:
    /// Before the application object: windows are to be surfaces of layers from now on.
    static void prepare();

    explicit Backgrounds(QString screen);
    ~Backgrounds() override;

private:
    void fill(QScreen* screen);

    const QString only;
    std::map<QScreen*, std::unique_ptr<ReefWindow>> windows;
};
