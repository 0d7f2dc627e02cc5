import QtQuick
import Noctra.Panel

PlainButton {
    id: button

    required property PanelModel panel
    required property PresetModel preset
    readonly property int fade: panel.reducesMotion ? 0 : 250

    objectName: preset.label
    name: preset.label
    showsFocus: panel.showsFocus
    takesFocus: !panel.showingSettings
    implicitHeight: label.implicitHeight + 20
    onPressed: preset.press()

    Accessible.checkable: true
    Accessible.checked: preset.isActive

    BoxItem {
        anchors.fill: parent
        radius: 4
        topColor: button.preset.style.backgroundTop
        bottomColor: button.preset.style.backgroundBottom
        borderWidth: 1
        borderTopColor: button.preset.style.borderTop
        borderBottomColor: button.preset.style.borderBottom
        shadowColor: button.preset.style.shadowColor
        shadowRadius: button.preset.style.shadowRadius
        shadowY: button.preset.style.shadowOffsetY

        Behavior on topColor { Fade { duration: button.fade } }
        Behavior on bottomColor { Fade { duration: button.fade } }
    }
    Text {
        id: label
        // Not centred by its place, which would be rounded to whole points.
        anchors.fill: parent
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        text: button.preset.label
        font: button.panel.fonts.brand(10, "Bold")
        color: button.preset.style.foreground

        Behavior on color { Fade { duration: button.fade } }
    }

    component Fade: ColorAnimation {
        easing { type: Easing.BezierSpline; bezierCurve: [0, 0, 0.58, 1, 1, 1] }
    }
}
