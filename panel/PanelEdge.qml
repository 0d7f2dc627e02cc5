import QtQuick
import Noctra.Panel

// Fills the panel's window: the popover's content, and around it the line without which the panel
// would melt into a dark desktop.
Item {
    id: root

    required property PanelModel panel
    readonly property real line: panel.edgeWidth / Screen.devicePixelRatio
    readonly property int added: panel.edgesAcross(Screen.devicePixelRatio)

    PopoverRootView {
        id: content
        x: root.line
        y: root.line
        width: root.width - root.added
        height: root.height - root.added
        panel: root.panel
    }
    // Above what is scrolled or slides beyond the content. The lower and the right one go beyond the
    // window's end, which may be in the middle of a device pixel.
    Edge { width: root.width; height: root.line }
    Edge { width: root.width + root.line; height: root.added; y: content.y + content.height }
    Edge { width: root.line; height: root.height }
    Edge { width: root.added; height: root.height; x: content.x + content.width }

    component Edge: BoxItem {
        readonly property color tint: Qt.tint(root.panel.bgDeep, Qt.rgba(1, 1, 1, 0.09))
        topColor: tint
        bottomColor: tint
    }
}
