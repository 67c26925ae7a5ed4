// What the machine is doing, as far as it decides whether anybody looks at a picture.
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QTimer>
#include <QVariantMap>

struct xcb_connection_t;

/// `Surroundings` of the module org.atollia.reef. What cannot be found out counts as false. Asks
/// nobody and waits for nobody in the calling thread, except for the X server about its monitor.
class Surroundings : public QObject {
    Q_OBJECT
    /// The monitor sleeps or is off. On Wayland compositors stop asking for pictures then, so this
    /// stays false there.
    Q_PROPERTY(bool asleep READ asleep NOTIFY asleepChanged)
    /// The session's screen is locked, or its saver runs.
    Q_PROPERTY(bool locked READ locked NOTIFY lockedChanged)
    Q_PROPERTY(bool onBattery READ onBattery NOTIFY onBatteryChanged)

public:
    explicit Surroundings(QObject* parent = nullptr);
    ~Surroundings() override;

    bool asleep() const { return is_asleep; }
    bool locked() const { return is_locked; }
    bool onBattery() const { return is_on_battery; }

signals:
    void asleepChanged();
    void lockedChanged();
    void onBatteryChanged();

private slots:
    void setLocked(bool locked);
    void powerChanged(const QString& interface, const QVariantMap& changed);

private:
    void askMonitor();
    void askLock();
    void askPower();
    void setOnBattery(bool on);

    bool is_asleep = false, is_locked = false, is_on_battery = false;
    xcb_connection_t* server = nullptr;  ///< owned; null without an X server that knows DPMS
    QTimer ask_monitor;                  ///< its sleep sends no event
};
