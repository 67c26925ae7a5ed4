import QtQuick

Item {
    property var configuration
}
