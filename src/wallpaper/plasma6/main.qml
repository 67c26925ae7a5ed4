// Plasma 6 wants an item of its own around a wallpaper.
import QtQuick
import org.kde.plasma.plasmoid

WallpaperItem {
    id: wallpaper

    ReefView {
        anchors.fill: parent
        settings: wallpaper.configuration
        coveredBy: "Covered.qml"
    }
}
