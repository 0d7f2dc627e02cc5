import QtQuick
import Noctra.Panel

Item {
    id: row

    required property PanelModel panel
    readonly property StatusRowModel model: panel.statusRow
    readonly property int fade: panel.reducesMotion ? 0 : 150

    implicitHeight: model.showsToggleRow ? bar.implicitHeight : warning.implicitHeight

    component Fade: ColorAnimation {
        duration: row.fade
        easing { type: Easing.BezierSpline; bezierCurve: [0.42, 0, 0.58, 1, 1, 1] }
    }

    PlainButton {
        id: bar
        objectName: "pwmSafeBar"
        width: parent.width
        implicitHeight: Math.max(8, label.implicitHeight) + 18
        height: implicitHeight
        visible: row.model.showsToggleRow
        name: row.model.label
        showsFocus: row.panel.showsFocus
        takesFocus: !row.panel.showingSettings
        ringRadius: 0
        onPressed: row.model.toggle()

        Accessible.role: Accessible.CheckBox
        Accessible.description: row.model.statusWord
        Accessible.checkable: true
        Accessible.checked: row.model.isOn
        Accessible.onToggleAction: row.model.toggle()

        BoxItem {
            anchors.fill: parent
            topColor: Qt.rgba(0, 0, 0, 0.45)
            bottomColor: Qt.rgba(0, 0, 0, 0.45)
            borderWidth: 1
            borderTopColor: row.model.borderColor
            borderBottomColor: row.model.borderColor
            Behavior on borderTopColor { Fade {} }
            Behavior on borderBottomColor { Fade {} }
        }
        BoxItem {
            id: dot
            anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
            width: 8
            height: 8
            radius: 4
            topColor: row.model.dotColor
            bottomColor: row.model.dotColor
            shadowColor: row.model.glowColor
            shadowRadius: 3
            Behavior on topColor { Fade {} }
            Behavior on bottomColor { Fade {} }
            Behavior on shadowColor { Fade {} }
        }
        Text {
            id: label
            anchors { left: dot.right; leftMargin: 8; verticalCenter: parent.verticalCenter }
            text: row.model.label
            font: row.panel.fonts.monospaced(10, 700, 0.8)
            color: row.model.labelColor
            Behavior on color { Fade {} }
        }
        CrossFade {
            anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
            value: row.model.statusWord
            color: row.model.statusColor
            fade: row.fade
            delegate: Text {
                text: parent.value
                horizontalAlignment: Text.AlignRight
                font: row.panel.fonts.monospaced(10, 700, 0.8)
                color: parent.color
                Accessible.ignored: true
            }
            Behavior on color { Fade {} }
        }
    }
    CrossFade {
        id: warning
        objectName: "pwmSafeWarning"
        width: parent.width
        visible: !row.model.showsToggleRow
        z: 101 // the tooltip's shadow reaches down to it
        opacity: row.model.showsWarning ? 1 : 0
        value: row.model.warningText
        color: row.model.warningColor
        fade: row.fade
        delegate: Text {
            text: parent.value
            horizontalAlignment: Text.AlignHCenter
            maximumLineCount: 2
            font: row.panel.fonts.monospaced(10, 700)
            color: parent.color
            Accessible.ignored: true
        }
        Behavior on color { Fade {} }
        Behavior on opacity {
            NumberAnimation {
                duration: row.fade
                easing { type: Easing.BezierSpline; bezierCurve: [0.42, 0, 0.58, 1, 1, 1] }
            }
        }

        Accessible.ignored: !row.model.showsWarning || row.panel.showingSettings
        Accessible.role: Accessible.StaticText
        Accessible.name: value
        Accessible.description: row.model.tooltipText

        HoverHandler {
            enabled: row.model.showsWarning && !row.panel.showingSettings
            onHoveredChanged: row.model.hoverWarning(hovered)
        }
    }
    PwmSafeTooltip {
        anchors.horizontalCenter: parent.horizontalCenter
        panel: row.panel
    }
}
