// Whoever tests fills it.
import QtQml
import QtQml.Models

ListModel {
    enum GroupMode { GroupDisabled }
    enum SortMode { SortDisabled }
    property int groupMode: -1
    property int sortMode: -1
    property var virtualDesktop
    property string activity
    property rect screenGeometry
    property bool filterByVirtualDesktop: false
    property bool filterByActivity: false
    property bool filterByScreen: false
}
