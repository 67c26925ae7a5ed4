// The reef of a wallpaper, on the desktop and on the lock screen.
import QtQuick 2.15
import org.atollia.reef 1.0

Item {
    id: view

    /// The wallpaper's settings, by their keys.
    property var settings
    /// On the desktop: says whether windows cover it; the file is not the same everywhere.
    property url coveredBy

    /// The lock screen shows wallpapers in a program of its own.
    readonly property bool onDesktop: Qt.application.name === "plasmashell"
    readonly property bool covered: onDesktop && settings.PauseCovered
        && covering.item !== null && covering.item.covered
    readonly property bool asleep: surroundings.asleep || (onDesktop && surroundings.locked)
        || (settings.PauseBattery && surroundings.onBattery)

    Surroundings { id: surroundings }

    // Without the modules that it needs nothing covers the wallpaper.
    Loader {
        id: covering
        active: view.onDesktop
        source: view.coveredBy
    }

    Reef {
        id: reef
        anchors.fill: parent
        running: !view.covered && !view.asleep
        muted: !view.settings.SoundOn
        boidModel: view.settings.BoidModel
        boidCount: view.settings.BoidCount
        fishRed: view.settings.FishRed
        fishBlue: view.settings.FishBlue
        fishStripe: view.settings.FishStripe
        fishYellBlu: view.settings.FishYellBlu
        fishDot: view.settings.FishDot
        fishBigGrey: view.settings.FishBigGrey
        fishBigRed: view.settings.FishBigRed
        fishManta: view.settings.FishManta
        fishCount: view.settings.FishCount
        birdGull: view.settings.BirdGull
        cameraPos: view.settings.CameraPos
        cameraSpeed: view.settings.CameraSpeed
        cameraFixTop: view.settings.CameraFixTop
        cameraFixBottom: view.settings.CameraFixBottom
        skyType: view.settings.SkyType
        proportions: view.settings.Proportions
        dayTime: view.settings.DayTime
        latitude: view.settings.Latitude
        volume: view.settings.Volume
        quietFrom: view.settings.QuietFrom
        quietTo: view.settings.QuietTo
    }

    Text {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 64 }
        visible: reef.problem !== ""
        text: reef.problem
        color: "white"
        style: Text.Outline
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
    }
}
