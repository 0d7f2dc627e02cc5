import QtQuick
import Noctra.Panel

// A named switch that fills a row of the settings.
PlainButton {
    id: row

    required property PanelModel panel
    required property bool isOn
    property color tint: isOn ? panel.systemRed : Qt.rgba(0.35, 0.35, 0.36, 1)
    readonly property int fade: panel.reducesMotion ? 0 : 200

    Behavior on tint { ColorAnimation { duration: row.fade } }

    objectName: name
    showsFocus: panel.showsFocus
    takesFocus: panel.showingSettings
    ringRadius: 0
    implicitHeight: toggle.height + 32

    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: isOn
    Accessible.onToggleAction: pressed()

    Rectangle { anchors.fill: parent; color: Qt.rgba(0.15, 0.15, 0.15, 1) }
    Rectangle { width: parent.width; height: 1; color: Qt.rgba(1, 1, 1, 0.05) }
    Rectangle {
        y: parent.height - 1
        width: parent.width
        height: 1
        color: Qt.rgba(0, 0, 0, 0.6)
    }
    Text {
        anchors { left: parent.left; leftMargin: 16; verticalCenter: parent.verticalCenter }
        text: row.name
        font: row.panel.fonts.system(11, 700)
        color: "white"
    }
    BoxItem {
        id: toggle
        anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
        width: 38
        height: 22
        radius: 11
        topColor: row.tint
        bottomColor: row.tint

        BoxItem {
            x: row.isOn ? 18 : 2
            y: 2
            width: 18
            height: 18
            radius: 9
            topColor: "white"
            bottomColor: "white"
            shadowColor: Qt.rgba(0, 0, 0, 0.3)
            shadowRadius: 1
            shadowY: 1

            Behavior on x { NumberAnimation { duration: row.fade; easing.type: Easing.InOutQuad } }
        }
    }
}
