import QtQuick
import Noctra.Panel

// The advice above the warning; its bottom edge lies a little above the warning's top.
Item {
    id: tooltip

    required property PanelModel panel
    readonly property StatusRowModel model: panel.statusRow
    readonly property real lineSpacing: 3
    property real presence: model.tooltipShown ? 1 : 0

    objectName: "pwmSafeTooltip"
    width: 260
    height: advice.implicitHeight - lineSpacing + 36
    y: 4 * (1 - presence) - model.tooltipLift
    z: 100
    opacity: presence
    visible: presence > 0
    onHeightChanged: model.tooltipMeasured(height)
    Component.onCompleted: model.tooltipMeasured(height)

    Behavior on presence {
        NumberAnimation {
            duration: tooltip.panel.reducesMotion ? 0 : 180
            easing { type: Easing.BezierSpline; bezierCurve: [0.42, 0, 0.58, 1, 1, 1] }
        }
    }

    BoxItem {
        anchors.fill: parent
        topColor: "black"
        bottomColor: "black"
        borderWidth: 1
        borderTopColor: Qt.alpha(tooltip.model.tooltipBorderColor, 0.35)
        borderBottomColor: Qt.alpha(tooltip.model.tooltipBorderColor, 0.35)
        shadowColor: Qt.rgba(0, 0, 0, 0.7)
        shadowRadius: 14
        shadowY: 6
        shadow2Color: Qt.alpha(tooltip.model.tooltipBorderColor, 0.18)
        shadow2Radius: 10
    }
    Rectangle {
        width: parent.width
        height: 4
        color: tooltip.model.tooltipBorderColor
    }
    Text {
        id: advice
        x: 16
        y: 4 + 16
        width: parent.width - 32
        text: tooltip.model.tooltipText
        font: tooltip.panel.fonts.monospaced(10, 400)
        color: Qt.rgba(1, 1, 1, 0.92)
        // Below each line; what is below the last one lies outside the inset. Whole points, or the
        // tooltip's edges would not lie on the pixel grid.
        lineHeightMode: Text.FixedHeight
        lineHeight: Math.ceil(metrics.height) + tooltip.lineSpacing
        Accessible.ignored: true

        FontMetrics {
            id: metrics
            font: advice.font
        }
    }
    // What lies beneath cannot be clicked.
    WheelArea {
        panel: tooltip.panel
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
    }
    HoverHandler {
        enabled: tooltip.model.tooltipShown
        onHoveredChanged: tooltip.model.hoverTooltip(hovered)
    }
}
