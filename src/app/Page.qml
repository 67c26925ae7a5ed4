import QtQuick 2.15
import org.atollia.reef 1.0

Item {
    Reef {
        id: reef
        anchors.fill: parent
    }
    Text {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 24 }
        visible: reef.problem !== ""
        text: reef.problem
        color: "white"
        style: Text.Outline
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        font.pixelSize: 18
    }
}
