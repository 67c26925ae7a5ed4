import QtQml

QtObject {
    readonly property string currentDesktop: "a desktop"
}
