#include "quick/Surroundings.h"

#include <xcb/dpms.h>
#include <xcb/xcb.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <cstdlib>
#include <memory>

namespace {

constexpr int MONITOR_PERIOD = 1000;  // milliseconds

struct ADDRESS {
    const char *service, *path, *interface;
};
constexpr ADDRESS LOCK = {"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
                          "org.freedesktop.ScreenSaver"};
constexpr ADDRESS POWER = {"org.freedesktop.UPower", "/org/freedesktop/UPower",
                           "org.freedesktop.UPower"};
constexpr char PROPERTIES[] = "org.freedesktop.DBus.Properties";

/// Calls without waiting; `take` gets the first value of the answer, if there is one.
template <class T, class TAKE>
void ask(QObject* asker, const QDBusConnection& bus, const QDBusMessage& question, TAKE take) {
    if (!bus.isConnected())
        return;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), asker);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, asker,
                     [take](QDBusPendingCallWatcher* finished) {
                         const QDBusPendingReply<T> answer = *finished;
                         if (!answer.isError())
                             take(answer.value());
                         finished->deleteLater();
                     });
}

}  // namespace

Surroundings::Surroundings(QObject* parent) : QObject(parent) {
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        server = xcb_connect(nullptr, nullptr);
        const xcb_query_extension_reply_t* dpms =
            xcb_connection_has_error(server) ? nullptr
                                             : xcb_get_extension_data(server, &xcb_dpms_id);
        if (!dpms || !dpms->present) {
            xcb_disconnect(server);
            server = nullptr;
        }
    }
    if (server) {
        connect(&ask_monitor, &QTimer::timeout, this, &Surroundings::askMonitor);
        ask_monitor.start(MONITOR_PERIOD);
        askMonitor();
    }
    askLock();
    askPower();
}

Surroundings::~Surroundings() {
    if (server)
        xcb_disconnect(server);
}

void Surroundings::askMonitor() {
    const std::unique_ptr<xcb_dpms_info_reply_t, void (*)(void*)> info(
        xcb_dpms_info_reply(server, xcb_dpms_info(server), nullptr), std::free);
    const bool sleeps = info && info->state && info->power_level != XCB_DPMS_DPMS_MODE_ON;
    if (sleeps == is_asleep)
        return;
    is_asleep = sleeps;
    emit asleepChanged();
}

void Surroundings::askLock() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(QString(), LOCK.path, LOCK.interface, "ActiveChanged", this, SLOT(setLocked(bool)));
    ask<bool>(this, bus,
              QDBusMessage::createMethodCall(LOCK.service, LOCK.path, LOCK.interface, "GetActive"),
              [this](bool active) { setLocked(active); });
}

void Surroundings::setLocked(bool locked) {
    if (locked == is_locked)
        return;
    is_locked = locked;
    emit lockedChanged();
}

void Surroundings::askPower() {
    QDBusConnection bus = QDBusConnection::systemBus();
    bus.connect(POWER.service, POWER.path, PROPERTIES, "PropertiesChanged", this,
                SLOT(powerChanged(QString, QVariantMap)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(POWER.service, POWER.path, PROPERTIES, "Get");
    question << QString(POWER.interface) << QStringLiteral("OnBattery");
    ask<QDBusVariant>(this, bus, question,
                      [this](const QDBusVariant& on) { setOnBattery(on.variant().toBool()); });
}

void Surroundings::powerChanged(const QString& interface, const QVariantMap& changed) {
    const auto on = changed.find(QStringLiteral("OnBattery"));
    if (interface == QLatin1String(POWER.interface) && on != changed.end())
        setOnBattery(on->toBool());
}

void Surroundings::setOnBattery(bool on) {
    if (on == is_on_battery)
        return;
    is_on_battery = on;
    emit onBatteryChanged();
}
