// Ends with 0 when the module draws, with another status when it cannot.
import QtQuick 2.15
import QtQuick.Window 2.15
import org.atollia.reef 1.0

Window {
    visible: true
    width: 320
    height: 240

    Reef {
        anchors.fill: parent
        cameraPos: 3
        onFrameRateChanged: if (frameRate > 0) Qt.exit(0)
        onProblemChanged: Qt.exit(3)
    }
    Surroundings { onAsleepChanged: console.log("asleep", asleep) }
    ReefTexts { Component.onCompleted: if (text("camera") === "") Qt.exit(4) }
}
