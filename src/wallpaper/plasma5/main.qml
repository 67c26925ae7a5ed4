// Plasma 5.27 gives a wallpaper its settings in `wallpaper`.
import QtQuick 2.15

ReefView {
    settings: wallpaper.configuration
    coveredBy: "Covered.qml"
}
