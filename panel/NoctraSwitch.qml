import QtQuick
import Noctra.Panel

PlainButton {
    id: button

    required property PanelModel panel

    objectName: "power"
    name: panel.powerName
    showsFocus: panel.showsFocus
    takesFocus: !panel.showingSettings
    ringRadius: 6
    implicitHeight: content.height + 32
    onPressed: panel.pressPower()

    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: panel.isOn
    Accessible.onToggleAction: panel.pressPower()

    BoxItem {
        anchors.fill: parent
        radius: 6
        topColor: button.panel.powerStyle.backgroundTop
        bottomColor: button.panel.powerStyle.backgroundBottom
        borderWidth: 1
        borderInside: true
        borderTopColor: button.panel.powerStyle.borderTop
        borderBottomColor: button.panel.powerStyle.borderBottom
        shadowColor: button.panel.powerStyle.shadowColor
        shadowRadius: button.panel.powerStyle.shadowRadius
        shadowY: button.panel.powerStyle.shadowOffsetY
    }
    Row {
        id: content
        // On whole device pixels: an anchor would take whole points.
        x: Math.round((parent.width - width) / 2 * Screen.devicePixelRatio) / Screen.devicePixelRatio
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        IconItem {
            anchors.verticalCenter: parent.verticalCenter
            width: 22
            height: 22
            visible: available
            path: button.panel.powerIcon
            color: button.panel.powerStyle.foreground
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: button.panel.title
            font: button.panel.fonts.brand(13, "ExtraBold", 1)
            color: button.panel.powerStyle.foreground
        }
    }
}
