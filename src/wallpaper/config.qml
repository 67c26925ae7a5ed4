// The wallpaper's page in Plasma's settings: what the saver's own dialog has, and when it pauses.
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import org.atollia.reef 1.0

Flickable {
    id: page

    // Plasma fills these in before it shows the page and saves them with Apply.
    property int cfg_BoidModel
    property int cfg_BoidCount
    property bool cfg_FishRed
    property bool cfg_FishBlue
    property bool cfg_FishStripe
    property bool cfg_FishYellBlu
    property bool cfg_FishDot
    property bool cfg_FishBigGrey
    property bool cfg_FishBigRed
    property bool cfg_FishManta
    property int cfg_FishCount
    property bool cfg_BirdGull
    property int cfg_CameraPos
    property int cfg_CameraSpeed
    property int cfg_CameraFixTop
    property int cfg_CameraFixBottom
    property int cfg_SkyType
    property bool cfg_SoundOn
    property int cfg_Volume
    property int cfg_QuietFrom
    property int cfg_QuietTo
    property int cfg_DayTime
    property int cfg_Latitude
    property int cfg_Proportions
    property bool cfg_PauseCovered
    property bool cfg_PauseBattery

    function text(key) { return texts.text(key) }

    /// The wheel scrolls the page. The desktop's own style would move sliders with it.
    function leaveWheelAlone(background) {
        for (let i = 0; i < background.children.length; ++i)
            if (background.children[i] instanceof MouseArea)
                background.children[i].enabled = false
    }

    // The desktop's settings give the page all the height that it has and scroll it themselves; the
    // lock screen's give it what is left and do not.
    implicitWidth: column.implicitWidth
    implicitHeight: column.implicitHeight
    contentHeight: column.implicitHeight
    interactive: contentHeight > height
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    ScrollBar.vertical: ScrollBar {}

    ReefTexts { id: texts }

    component Picture: Image {
        property string name
        source: "qrc:/setup/" + name + ".png"
        Layout.preferredWidth: implicitHeight > 0 ? 66 * implicitWidth / implicitHeight : 120
        Layout.preferredHeight: 66
    }

    /// Scroll bars lie over the page.
    component Box: GroupBox {
        Layout.fillWidth: true
        Layout.rightMargin: 20
    }

    /// A row of such pictures.
    component Pictures: RowLayout {
        property var names
        spacing: 4
        Repeater {
            model: parent.names
            Picture { name: modelData }
        }
    }

    /// A flag with the picture of what it stands for.
    component Switch: ColumnLayout {
        property string picture
        property string key
        property alias title: box.text
        property bool on: page["cfg_" + key]
        Layout.preferredWidth: 190
        Layout.alignment: Qt.AlignTop
        Picture { name: parent.picture; Layout.alignment: Qt.AlignHCenter }
        CheckBox {
            id: box
            checked: parent.on
            onToggled: page["cfg_" + parent.key] = checked
            Layout.alignment: Qt.AlignHCenter
            Accessible.name: text
        }
    }

    /// One of several values with the picture of what it stands for.
    component Choice: ColumnLayout {
        property string picture
        property var pictures: [picture]
        property string key
        property int value
        property alias title: button.text
        Layout.preferredWidth: Math.max(190, implicitWidth)
        Pictures { names: parent.pictures; Layout.alignment: Qt.AlignHCenter }
        RadioButton {
            id: button
            checked: page["cfg_" + parent.key] === parent.value
            onClicked: page["cfg_" + parent.key] = parent.value
            Layout.alignment: Qt.AlignHCenter
        }
    }

    /// A number with its title and its unit.
    component Number: RowLayout {
        property string key
        property string title
        property string unit
        property alias from: slider.from
        property alias to: slider.to
        property alias step: slider.stepSize
        Label { text: parent.title; Layout.preferredWidth: 200; wrapMode: Text.Wrap }
        Slider {
            id: slider
            stepSize: 1
            snapMode: Slider.SnapAlways
            value: page["cfg_" + parent.key]
            onMoved: page["cfg_" + parent.key] = Math.round(value)
            Component.onCompleted: page.leaveWheelAlone(background)
            Layout.fillWidth: true
            Accessible.name: parent.title
        }
        Label { text: page["cfg_" + parent.key] + parent.unit; Layout.preferredWidth: 50 }
    }

    /// A number that is set step by step, shown by the function `shown`.
    component Steps: RowLayout {
        property string key
        property string title
        property alias from: box.from
        property alias to: box.to
        property alias shown: box.textFromValue
        Label { text: parent.title }
        SpinBox {
            id: box
            wheelEnabled: false
            value: page["cfg_" + parent.key]
            onValueModified: page["cfg_" + parent.key] = value
            Accessible.name: parent.title
        }
    }

    ColumnLayout {
        id: column
        width: page.width
        spacing: 12

        Box {
            title: page.text("boid")
            Layout.topMargin: column.spacing
            ColumnLayout {
                anchors.fill: parent
                RowLayout {
                    spacing: 12
                    Choice { picture: "boid1"; key: "BoidModel"; value: 0; title: page.text("school_silver") }
                    Choice { picture: "boid2"; key: "BoidModel"; value: 1; title: page.text("school_angel") }
                }
                Number { key: "BoidCount"; title: page.text("boidcount"); from: 0; to: 20; step: 5 }
            }
        }
        Box {
            title: page.text("fishtype")
            ColumnLayout {
                anchors.fill: parent
                GridLayout {
                    columns: 3
                    columnSpacing: 12
                    Switch { picture: "fish1"; key: "FishRed"; title: page.text("fish_red") }
                    Switch { picture: "fish2"; key: "FishBlue"; title: page.text("fish_blue") }
                    Switch { picture: "fish3"; key: "FishStripe"; title: page.text("fish_stripe") }
                    Switch { picture: "fish4"; key: "FishDot"; title: page.text("fish_dot") }
                    Switch { picture: "fish5"; key: "FishYellBlu"; title: page.text("fish_yell_blu") }
                    Switch { picture: "fish6"; key: "FishBigGrey"; title: page.text("fish_big_grey") }
                    Switch { picture: "fish7"; key: "FishBigRed"; title: page.text("fish_big_red") }
                    Switch { picture: "fish8"; key: "FishManta"; title: page.text("fish_manta") }
                }
                Number { key: "FishCount"; title: page.text("fishcount"); from: 0; to: 10 }
            }
        }
        Box {
            title: page.text("birdtype")
            RowLayout {
                Switch { picture: "gull"; key: "BirdGull"; title: page.text("gull") }
            }
        }
        Box {
            title: page.text("skytext")
            RowLayout {
                spacing: 12
                Choice { picture: "cloudy"; key: "SkyType"; value: 0; title: page.text("cloudy") }
                Choice { picture: "cloudless"; key: "SkyType"; value: 1; title: page.text("cloudless") }
            }
        }
        Box {
            title: page.text("daytime")
            ColumnLayout {
                RowLayout {
                    spacing: 12
                    Choice {
                        pictures: ["noon"]; key: "DayTime"; value: 0; title: page.text("noon")
                    }
                    Choice {
                        pictures: ["morning", "evening", "night"]; key: "DayTime"; value: 1
                        title: page.text("clock")
                    }
                }
                Steps {
                    key: "Latitude"; title: page.text("latitude"); from: -90; to: 90
                    enabled: page.cfg_DayTime === 1
                    shown: value => Math.abs(value) + "°" + (value > 0 ? " N" : value < 0 ? " S" : "")
                }
            }
        }
        Box {
            title: page.text("cameratext")
            ColumnLayout {
                anchors.fill: parent
                ComboBox {
                    wheelEnabled: false
                    model: [page.text("automatic"), page.text("top"), page.text("middle"),
                            page.text("bottom")]
                    currentIndex: page.cfg_CameraPos
                    onActivated: page.cfg_CameraPos = currentIndex
                    Accessible.name: page.text("cameratext")
                }
                Number { key: "CameraSpeed"; title: page.text("scrollspeed"); from: 1; to: 9; unit: " °/s" }
                Number { key: "CameraFixTop"; title: page.text("resttime_top"); from: 1; to: 60; unit: " s" }
                Number {
                    key: "CameraFixBottom"; title: page.text("resttime_bottom"); from: 5; to: 60; unit: " s"
                }
            }
        }
        Box {
            title: page.text("soundtext")
            ColumnLayout {
                anchors.fill: parent
                CheckBox {
                    text: page.text("on_off")
                    checked: page.cfg_SoundOn
                    onToggled: page.cfg_SoundOn = checked
                }
                Number { key: "Volume"; title: page.text("volume"); from: 0; to: 100; step: 5; unit: " %" }
                Label {
                    readonly property bool none: page.cfg_QuietFrom === page.cfg_QuietTo
                    text: page.text("quiettext") + (none ? ": " + page.text("quietnone") : "")
                }
                RowLayout {
                    spacing: 24
                    Steps {
                        key: "QuietFrom"; title: page.text("quietfrom"); from: 0; to: 23
                        shown: value => value + ":00"
                    }
                    Steps {
                        key: "QuietTo"; title: page.text("quietto"); from: 0; to: 23
                        shown: value => value + ":00"
                    }
                }
            }
        }
        CheckBox {
            text: page.text("proportions")
            checked: page.cfg_Proportions === 1
            onToggled: page.cfg_Proportions = checked ? 1 : 0
        }
        Box {
            title: page.text("pausetext")
            Layout.bottomMargin: column.spacing
            ColumnLayout {
                CheckBox {
                    text: page.text("pause_covered")
                    checked: page.cfg_PauseCovered
                    onToggled: page.cfg_PauseCovered = checked
                }
                CheckBox {
                    text: page.text("pause_battery")
                    checked: page.cfg_PauseBattery
                    onToggled: page.cfg_PauseBattery = checked
                }
            }
        }
    }
}
