pragma Singleton
import QtQml

QtObject {
    property bool showingDesktop: false
}
