// Whether a maximised or full-screen window covers the wallpaper's screen.
import QtQuick 2.15
import QtQml 2.15
import QtQuick.Window 2.15
import org.kde.kwindowsystem 1.0
import org.kde.taskmanager 0.1 as TaskManager

Item {
    id: view

    readonly property bool covered: coverings > 0 && !windows.showingDesktop
    property int coverings: 0

    KWindowSystem { id: windows }
    TaskManager.VirtualDesktopInfo { id: desktops }
    TaskManager.ActivityInfo { id: activities }

    TaskManager.TasksModel {
        id: tasks
        groupMode: TaskManager.TasksModel.GroupDisabled
        sortMode: TaskManager.TasksModel.SortDisabled
        virtualDesktop: desktops.currentDesktop
        activity: activities.currentActivity
        screenGeometry: Qt.rect(view.Screen.virtualX, view.Screen.virtualY,
                                view.Screen.width, view.Screen.height)
        filterByVirtualDesktop: true
        filterByActivity: true
        filterByScreen: true
    }

    Instantiator {
        model: tasks
        delegate: QtObject {
            readonly property bool covers: model.IsWindow === true && model.IsMinimized !== true
                && (model.IsMaximized === true || model.IsFullScreen === true)
            onCoversChanged: view.coverings += covers ? 1 : -1
            Component.onDestruction: if (covers) view.coverings -= 1
        }
    }
}
