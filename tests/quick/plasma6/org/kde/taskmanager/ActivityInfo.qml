import QtQml

QtObject {
    readonly property string currentActivity: "an activity"
}
