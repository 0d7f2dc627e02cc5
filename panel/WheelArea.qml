import QtQuick
import Noctra.Panel

// Scrolls the panel by the wheel, and keeps the wheel from what lies beneath.
MouseArea {
    required property PanelModel panel

    acceptedButtons: Qt.NoButton
    onWheel: wheel => panel.turnWheel(wheel.pixelDelta.y, wheel.angleDelta.y)
}
