// The wallpaper of Plasma 6 with Qt 6, on the desktop of stand-ins for Plasma's modules: ends with 0
// when it draws, stands still behind windows that cover it, and its page of settings can be made.
import QtQuick
import QtQuick.Window
import org.kde.kwindowsystem
import org.atollia.reef

Window {
    id: window
    visible: true
    width: 320
    height: 240

    readonly property string folder: Qt.application.arguments[Qt.application.arguments.length - 1]
    property var wallpaper
    property var reef
    property var tasks

    /// Everything below an item, and it.
    function all(object) {
        return [].concat([object], ...Array.from(object.data ?? []).map(all))
    }
    function make(file, properties) {
        const component = Qt.createComponent(`file://${folder}/${file}`)
        if (component.status !== Component.Ready) {
            console.log(component.errorString())
            Qt.exit(3)
        }
        return component.createObject(window.contentItem, properties)
    }
    function expect(what, holds) {
        if (!holds) {
            console.log("not so:", what)
            Qt.exit(4)
        }
    }

    Component.onCompleted: {
        Qt.application.name = "plasmashell"
        const xml = new XMLHttpRequest()
        xml.onload = () => begin(xml.responseText)
        xml.open("GET", `file://${folder}/../config/main.xml`)
        xml.send()
    }
    function begin(xml) {
        const configuration = {}, page = {}
        xml.replace(/<entry name="(\w+)".*?<default>(.*?)</g, (entry, key, value) =>
            configuration[key] = page["cfg_" + key] = JSON.parse(value))
        expect("settings have defaults", Object.keys(configuration).length > 20)
        configuration.PauseBattery = false
        wallpaper = make("main.qml", { configuration, width: 320, height: 240 })
        const parts = all(wallpaper)
        reef = parts.find(part => part instanceof Reef)
        tasks = parts.find(part => part.groupMode !== undefined)
        expect("a reef and a list of windows", reef && tasks)
        expect("settings reach the reef", reef.boidCount === configuration.BoidCount)
        expect("the list is filtered", tasks.filterByScreen && tasks.filterByActivity
            && tasks.filterByVirtualDesktop && tasks.screenGeometry.width > 0
            && tasks.activity === "an activity" && tasks.virtualDesktop === "a desktop"
            && tasks.groupMode === 0 && tasks.sortMode === 0)

        expect("it runs on an empty desktop", reef.running)
        tasks.append({ IsWindow: true, IsMinimized: false, IsMaximized: false, IsFullScreen: false })
        expect("it runs behind a small window", reef.running)
        tasks.setProperty(0, "IsMaximized", true)
        expect("it stands behind a maximised window", !reef.running)
        KWindowSystem.showingDesktop = true
        expect("it runs while the desktop is shown", reef.running)
        KWindowSystem.showingDesktop = false
        tasks.setProperty(0, "IsMinimized", true)
        expect("it runs above a minimised window", reef.running)
        tasks.append({ IsWindow: true, IsMinimized: false, IsMaximized: false, IsFullScreen: true })
        expect("it stands behind a full screen", !reef.running)
        tasks.remove(1)
        expect("it runs when that has gone", reef.running)

        const settings = make("config.qml", page)
        expect("the page has a height", settings.implicitHeight > 300)
        settings.destroy()
        reef.frameRateChanged.connect(() => { if (reef.frameRate > 0) Qt.exit(0) })
        reef.problemChanged.connect(() => Qt.exit(5))
    }
}
