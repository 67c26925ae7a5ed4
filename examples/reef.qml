// The reef behind a page of one's own: qml examples/reef.qml
import QtQuick 2.15
import QtQuick.Window 2.15
import org.atollia.reef 1.0

Window {
    visible: true
    width: 960
    height: 600
    title: "Reef"

    Reef { id: reef; anchors.fill: parent; cameraPos: 3; boidCount: 20 }

    Text {
        anchors.centerIn: parent
        color: "white"
        font.pixelSize: 32
        text: reef.problem || Qt.formatTime(new Date(), "hh:mm")
    }
}
