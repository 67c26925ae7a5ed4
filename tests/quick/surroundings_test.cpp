// What the wallpaper knows of the machine, on a bus of the test's own with a monitor that only
// pretends, and what it does about it.
#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QXmlStreamReader>
#include <cstdlib>
#include <memory>

#include "Globals.h"
#include "framework/LanguagePack.h"
#include "host/virtual_display.h"
#include "quick/Reef.h"
#include "quick/Surroundings.h"
#include "quick/page.h"

using test::until;

namespace {

/// The daemon that knows about batteries, as far as it is asked.
class Power : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.UPower")
    Q_PROPERTY(bool OnBattery READ onBattery)

public:
    bool onBattery() const { return on_battery; }
    void set(QDBusConnection bus, bool on) {
        on_battery = on;
        QDBusMessage changed = QDBusMessage::createSignal(
            "/org/freedesktop/UPower", "org.freedesktop.DBus.Properties", "PropertiesChanged");
        changed << "org.freedesktop.UPower" << QVariantMap{{"OnBattery", on}} << QStringList();
        bus.send(changed);
    }

private:
    bool on_battery = false;
};

/// The session's lock.
class Lock : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    void set(bool locked) {
        is_locked = locked;
        emit ActiveChanged(locked);
    }

public slots:
    bool GetActive() const { return is_locked; }

signals:
    void ActiveChanged(bool active);

private:
    bool is_locked = false;
};

/// Both buses are one of this process's own, from before anything asks for them: a process keeps
/// what it has found.
class Bus {
public:
    Bus()
        : daemon({"dbus-daemon", "--session", "--nofork", "--print-address",
                  "--address=unix:path=" + folder.filePath("bus").toStdString()},
                 {}) {
        if (daemon.waitForLine("unix:"))
            address = daemon.output().substr(0, daemon.output().find('\n'));
        setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
        setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
    }
    std::string address;  ///< empty when it did not start

private:
    const QTemporaryDir folder{"/tmp/atollia-bus-XXXXXX"};  // the daemon leaves its socket behind
    test::Process daemon;
} const bus;

class SurroundingsTest : public testing::Test {
protected:
    SurroundingsTest() : others(QDBusConnection::connectToBus(bus.address.c_str(), OTHERS)) {
        EXPECT_TRUE(others.isConnected());
        const auto everything = QDBusConnection::ExportAllContents;
        EXPECT_TRUE(others.registerObject("/org/freedesktop/UPower", &power, everything));
        EXPECT_TRUE(others.registerObject("/org/freedesktop/ScreenSaver", &lock, everything));
        EXPECT_TRUE(others.registerService("org.freedesktop.UPower"));
        EXPECT_TRUE(others.registerService("org.freedesktop.ScreenSaver"));
        setenv("STANDIN_ASLEEP", qPrintable(asleep.filePath("asleep")), 1);
    }
    ~SurroundingsTest() override { QDBusConnection::disconnectFromBus(OTHERS); }

    void setAsleep(bool sleeps) {
        QFile file(asleep.filePath("asleep"));
        if (sleeps)
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        else
            file.remove();
    }

    static constexpr char OTHERS[] = "other programs";
    const QTemporaryDir asleep;
    Power power;
    Lock lock;
    QDBusConnection others;
};

TEST_F(SurroundingsTest, TheMonitorFallsAsleepAndWakes) {
    Surroundings surroundings;
    EXPECT_FALSE(surroundings.asleep());
    setAsleep(true);
    EXPECT_TRUE(until([&] { return surroundings.asleep(); }));
    EXPECT_TRUE(Surroundings().asleep()) << "known from the start";
    setAsleep(false);
    EXPECT_TRUE(until([&] { return !surroundings.asleep(); }));
}

TEST_F(SurroundingsTest, TheScreenIsLockedAndOpened) {
    Surroundings surroundings;
    lock.set(true);
    EXPECT_TRUE(until([&] { return surroundings.locked(); }));
    Surroundings late;
    EXPECT_TRUE(until([&] { return late.locked(); })) << "asked for at the start";
    lock.set(false);
    EXPECT_TRUE(until([&] { return !surroundings.locked() && !late.locked(); }));
}

TEST_F(SurroundingsTest, ThePlugIsPulledAndPutIn) {
    Surroundings surroundings;
    power.set(others, true);
    EXPECT_TRUE(until([&] { return surroundings.onBattery(); }));
    Surroundings late;
    EXPECT_TRUE(until([&] { return late.onBattery(); })) << "asked for at the start";
    power.set(others, false);
    EXPECT_TRUE(until([&] { return !surroundings.onBattery() && !late.onBattery(); }));
}

TEST_F(SurroundingsTest, WithoutThoseProgramsNothingIsSo) {
    others.unregisterService("org.freedesktop.UPower");
    others.unregisterService("org.freedesktop.ScreenSaver");
    Surroundings surroundings;
    // What another asks after it is answered after it.
    QDBusConnection::systemBus().call(QDBusMessage::createMethodCall(
        "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "ListNames"));
    QCoreApplication::processEvents();
    EXPECT_FALSE(surroundings.asleep() || surroundings.locked() || surroundings.onBattery());
    others.registerService("org.freedesktop.UPower");
    others.registerService("org.freedesktop.ScreenSaver");
}

/// The wallpaper's own page, with the defaults of its settings, and in place of Plasma's list of
/// windows one of the test's.
class WallpaperTest : public SurroundingsTest {
protected:
    void show(const char* program) {
        QCoreApplication::setApplicationName(program);
        QFile covered(folder.filePath("Covered.qml"));
        ASSERT_TRUE(covered.open(QIODevice::WriteOnly));
        covered.write("import QtQuick 2.15\nItem { property bool covered: false }\n");
        covered.close();
        QQmlComponent component(&engine, QUrl::fromLocalFile(ATOLLIA_WALLPAPER "ReefView.qml"));
        view.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(
            {{"settings", settings}, {"coveredBy", QUrl::fromLocalFile(covered.fileName())}})));
        ASSERT_TRUE(view) << qPrintable(component.errorString());
        reef = view->findChild<Reef*>();
        ASSERT_TRUE(reef);
    }
    /// Every key with its default.
    static QVariantMap defaults() {
        QFile file(ATOLLIA_WALLPAPER "main.xml");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        QVariantMap values;
        QString key, type;
        while (!xml.atEnd()) {
            xml.readNext();
            if (xml.isStartElement() && xml.name() == QLatin1String("entry")) {
                key = xml.attributes().value("name").toString();
                type = xml.attributes().value("type").toString();
            } else if (xml.isStartElement() && xml.name() == QLatin1String("default")) {
                const QString text = xml.readElementText();
                values[key] = type == "Bool" ? QVariant(text == "true") : QVariant(text.toInt());
            }
        }
        return values;
    }
    void cover(bool covered) {
        for (QQuickItem* item : view->findChildren<QQuickItem*>())
            if (item->metaObject()->indexOfProperty("covered") >= 0)
                item->setProperty("covered", covered);
    }

    QVariantMap settings = defaults();
    QTemporaryDir folder;
    QQmlEngine engine;
    std::unique_ptr<QQuickItem> view;
    Reef* reef = nullptr;
};

TEST_F(WallpaperTest, StandsStillOnTheDesktopWhileAWindowCoversIt) {
    show("plasmashell");
    EXPECT_TRUE(reef->running());
    cover(true);
    EXPECT_FALSE(reef->running());
    cover(false);
    EXPECT_TRUE(reef->running());
}

TEST_F(WallpaperTest, GoesOnBehindAWindowWhenAskedTo) {
    settings["PauseCovered"] = false;
    show("plasmashell");
    cover(true);
    EXPECT_TRUE(reef->running());
}

TEST_F(WallpaperTest, OnBatteryItStandsStillUnlessAskedNotTo) {
    show("plasmashell");
    power.set(others, true);
    EXPECT_TRUE(until([&] { return !reef->running(); }));
    view.reset();
    settings["PauseBattery"] = false;
    show("plasmashell");
    const Surroundings same;
    EXPECT_TRUE(until([&] { return same.onBattery(); }));
    EXPECT_TRUE(reef->running());
}

TEST_F(WallpaperTest, NeverDrawsForASleepingMonitorOrBehindTheLock) {
    settings["PauseCovered"] = settings["PauseBattery"] = false;
    show("plasmashell");
    setAsleep(true);
    EXPECT_TRUE(until([&] { return !reef->running(); }));
    setAsleep(false);
    EXPECT_TRUE(until([&] { return reef->running(); }));
    lock.set(true);
    EXPECT_TRUE(until([&] { return !reef->running(); }));
}

TEST_F(WallpaperTest, TheLockScreenItselfMovesButNotOnASleepingMonitor) {
    show("kscreenlocker_greet");
    lock.set(true);
    const Surroundings same;
    EXPECT_TRUE(until([&] { return same.locked(); }));
    EXPECT_TRUE(reef->running());
    setAsleep(true);
    EXPECT_TRUE(until([&] { return !reef->running(); }));
}

TEST_F(WallpaperTest, EverySettingReachesTheReef) {
    // Each with another value than the reef has by itself.
    const Reef usual;
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        if (setting.key().startsWith("Pause") || setting.key() == "SoundOn")
            continue;
        const QByteArray name =
            setting.key().left(1).toLower().toLatin1() + setting.key().mid(1).toLatin1();
        ASSERT_GE(usual.metaObject()->indexOfProperty(name), 0) << name.constData();
        EXPECT_EQ(usual.property(name), setting.value()) << name.constData();
        setting.value() = setting.value().type() == QVariant::Bool
                              ? QVariant(!setting.value().toBool())
                              : QVariant(setting.value().toInt() == 1 ? 0 : 1);
    }
    settings["CameraFixBottom"] = 7;
    settings["SoundOn"] = true;
    show("plasmashell");
    EXPECT_FALSE(reef->muted());
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        if (setting.key().startsWith("Pause") || setting.key() == "SoundOn")
            continue;
        const QByteArray name =
            setting.key().left(1).toLower().toLatin1() + setting.key().mid(1).toLatin1();
        EXPECT_EQ(reef->property(name), setting.value()) << name.constData();
    }
}

/// The wallpaper's page in Plasma's settings, with its defaults.
class SettingsPage : public WallpaperTest {
protected:
    void SetUp() override {
        QQmlComponent component(&engine, QUrl::fromLocalFile(ATOLLIA_WALLPAPER "config.qml"));
        QVariantMap values;
        for (auto setting = settings.begin(); setting != settings.end(); ++setting)
            values["cfg_" + setting.key()] = setting.value();
        page.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(values)));
        ASSERT_TRUE(page) << qPrintable(component.errorString());
    }
    /// The button of one of several values.
    QQuickItem* button(const char* key, int value) const {
        for (QQuickItem* choice : page->findChildren<QQuickItem*>())
            if (choice->property("key") == key && choice->property("value") == value)
                for (QQuickItem* child : choice->childItems())
                    if (child->property("checked").isValid())
                        return child;
        return nullptr;
    }

    std::unique_ptr<QQuickItem> page;
};

TEST_F(SettingsPage, HasEverySetting) {
    for (auto setting = settings.begin(); setting != settings.end(); ++setting)
        EXPECT_EQ(page->property(qPrintable("cfg_" + setting.key())), setting.value())
            << qPrintable(setting.key());
}

/// Every text that it shows, without numbers and their units.
QSet<QString> shownTexts(const QQuickItem& page) {
    static const QRegularExpression number(R"(^-?\d+( ?(°/s|s|%)|:00|°( [NS])?)?$)",
                                           QRegularExpression::UseUnicodePropertiesOption);
    QSet<QString> texts;
    for (const QQuickItem* item : page.findChildren<QQuickItem*>()) {
        QStringList shown;
        if (item->property("popup").isValid())
            shown = item->property("model").toStringList();  // what it lets choose from
        for (const char* property : {"text", "title"})
            shown += item->property(property).toString();
        for (const QString& text : shown)
            if (!text.isEmpty() && !number.match(text).hasMatch())
                texts.insert(text);
    }
    return texts;
}

/// The keys of the texts that it asks for.
QStringList askedKeys() {
    QFile file(ATOLLIA_WALLPAPER "config.qml");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QString source = QString::fromUtf8(file.readAll());
    static const QRegularExpression asking(R"~(page\.text\("(\w+)"\))~");
    QStringList keys;
    for (auto match = asking.globalMatch(source); match.hasNext();)
        keys += match.next().captured(1);
    return keys;
}

TEST_F(SettingsPage, SpeaksTheLanguageOfTheDesktop) {
    const struct {
        const char *desktop, *section, *birds;
    } languages[] = {
        {"de_AT", "GER", "Vögel über dem Wasser"},      {"en_GB", "ENG", "Birds above the water"},
        {"fr_CA", "FRA", "Oiseaux au-dessus de l’eau"}, {"es_MX", "ESP", "Aves sobre el agua"},
        {"it_CH", "ITA", "Uccelli sopra l’acqua"},
    };
    constexpr char SECTION[] = "ATOLLIA_TEST_LANGUAGE";
    if (qEnvironmentVariableIsEmpty(SECTION)) {
        // The toolkit asks for the language once in a process.
        for (const auto& language : languages) {
            test::Process again({QCoreApplication::applicationFilePath().toStdString(),
                                 "--gtest_filter=SettingsPage.Speaks*"},
                                {std::string("LC_ALL=") + language.desktop + ".UTF-8",
                                 std::string("LANGUAGE=") + language.desktop,
                                 std::string(SECTION) + "=" + language.section});
            const test::END end = again.wait();
            EXPECT_TRUE(end.ended);
            EXPECT_EQ(end.status, 0) << language.section << "\n" << again.output();
        }
        return;
    }
    const QByteArray section = qgetenv(SECTION);
    LanguagePack pack(dataFile("Language.dat").c_str(), section);
    const auto text = [&](const QString& key) {
        return QString::fromUtf8(pack.getString(qPrintable(key)));
    };
    QSet<QString> wanted;
    for (const QString& key : askedKeys()) {
        EXPECT_FALSE(text(key).isEmpty()) << qPrintable(key);
        wanted.insert(text(key));
    }
    EXPECT_GT(wanted.size(), 40);
    // The hours of silence stand behind their title.
    wanted.remove(text("quietnone"));
    wanted.remove(text("quiettext"));
    wanted.insert(text("quiettext") + ": " + text("quietnone"));
    const QSet<QString> shown = shownTexts(*page);
    for (const QString& missing : wanted - shown)
        ADD_FAILURE() << "not shown: " << qPrintable(missing);
    for (const QString& foreign : shown - wanted)
        ADD_FAILURE() << "not of this language: " << qPrintable(foreign);
    for (const auto& language : languages)
        EXPECT_EQ(shown.contains(language.birds), section == language.section) << language.birds;
}

TEST_F(SettingsPage, ScrollsWhereItIsGivenLessThanItNeeds) {
    page->setWidth(700);
    page->setHeight(page->implicitHeight());
    EXPECT_GT(page->implicitHeight(), 500);
    EXPECT_EQ(page->property("interactive"), false);
    page->setHeight(300);
    EXPECT_EQ(page->property("interactive"), true);
    EXPECT_EQ(page->property("contentHeight"), page->implicitHeight());
}

TEST_F(SettingsPage, OneOfTwoIsChosen) {
    for (const char* key : {"BoidModel", "SkyType", "DayTime"}) {
        const std::string property = std::string("cfg_") + key;
        for (const int wanted : {1, 0, 1}) {
            QQuickItem* const chosen = button(key, wanted);
            QQuickItem* const other = button(key, 1 - wanted);
            ASSERT_TRUE(chosen && other) << key;
            // What a click does.
            if (!chosen->property("checked").toBool())
                QMetaObject::invokeMethod(chosen, "toggle");
            QMetaObject::invokeMethod(chosen, "clicked");
            EXPECT_EQ(page->property(property.c_str()), wanted) << key;
            EXPECT_EQ(chosen->property("checked"), true) << key;
            EXPECT_EQ(other->property("checked"), false) << key;
            EXPECT_EQ(chosen->property("autoExclusive"), true) << "drawn as a check box without";
        }
    }
}

}  // namespace

#include "surroundings_test.moc"
