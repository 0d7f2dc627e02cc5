import QtQuick
import Noctra.Panel

Item {
    id: field

    required property readout readout
    required property font font

    implicitWidth: readout.width
    implicitHeight: 24

    BoxItem {
        anchors.fill: parent
        radius: 4
        topColor: field.readout.fieldColor
        bottomColor: field.readout.fieldColor
        borderWidth: 1
        borderTopColor: field.readout.borderColor
        borderBottomColor: field.readout.borderColor
    }
    GlowText {
        anchors.fill: parent
        text: field.readout.text
        font: field.font
        color: field.readout.foregroundColor
        glowColor: field.readout.glowColor
        glowRadius: 5
    }
}
