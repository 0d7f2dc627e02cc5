import QtQuick
import Noctra.Panel

// Fills the popover: the panel at its own size, scrolled where the popover is less high.
Rectangle {
    id: root

    required property PanelModel panel
    readonly property bool isShort: panel.showsIndicators(height)
    readonly property Item focusedItem: Window.activeFocusItem

    function scrollTo(y) {
        scroll.cancelFlick()
        scroll.contentY = Math.max(0, Math.min(y, scroll.contentHeight - scroll.height))
    }
    // With what belongs to it: a fader's name and readout lie within this distance.
    function reveal(item) {
        const around = 44
        // The sheet's controls as if the sheet had arrived.
        const offset = panel.showingSettings ? view.height * (1 - panel.sheetLevel) : 0
        const top = item.mapToItem(view, 0, 0).y - offset
        scrollTo(Math.min(top - around,
                          Math.max(scroll.contentY, top + item.height + around - height)))
    }

    color: panel.bgDeep
    // Only for the keyboard: what is pressed must not move away under the pointer.
    onFocusedItemChanged: if (panel.showsFocus && focusedItem !== null) reveal(focusedItem)
    // Where it was, as far as this window is as low; it has its height a turn later.
    Component.onCompleted: Qt.callLater(() => scrollTo(panel.scrolled))
    Keys.onPressed: event => {
        const target = ({
            [Qt.Key_PageUp]: scroll.contentY - 0.9 * height,
            [Qt.Key_PageDown]: scroll.contentY + 0.9 * height,
            [Qt.Key_Home]: 0,
            [Qt.Key_End]: scroll.contentHeight
        })[event.key]
        event.accepted = target !== undefined && (event.modifiers & ~Qt.KeypadModifier) === 0
        if (event.accepted)
            scrollTo(target)
    }

    Connections {
        target: root.panel
        function onScrolled(distance) {
            if (!root.isShort)
                return
            root.scrollTo(scroll.contentY + distance)
            turning.restart()
        }
        function onShowingSettingsChanged() {
            if (root.panel.showingSettings)
                root.scrollTo(0) // where the sheet begins
        }
    }

    Flickable {
        id: scroll
        anchors.fill: parent
        contentWidth: width
        contentHeight: Math.max(height, view.height)
        // Fingers only: a mouse that is dragged belongs to the controls.
        interactive: root.isShort && root.panel.isTouched
        flickableDirection: Flickable.VerticalFlick
        boundsBehavior: Flickable.StopAtBounds
        onContentYChanged: root.panel.scrolled = contentY

        WheelArea {
            panel: root.panel
            width: scroll.contentWidth
            height: scroll.contentHeight
        }
        FilterControlView {
            id: view
            // On whole device pixels, or lines and letters would blur.
            readonly property real scrolled:
                Math.round(scroll.contentY * Screen.devicePixelRatio) / Screen.devicePixelRatio
            x: (scroll.width - width) / 2
            y: (scroll.contentHeight - height) / 2 + scroll.contentY - scrolled
            width: root.panel.panelSize.width
            height: root.panel.panelSize.height
            panel: root.panel
            isShort: root.isShort
        }
    }
    // Once it scrolls, the wheel does not take hold of the fader that comes to lie under it.
    WheelArea {
        panel: root.panel
        anchors.fill: parent
        enabled: turning.running
    }
    Timer {
        id: turning
        interval: 400
    }

    MouseArea {
        id: indicator
        property real held: 0
        function follow(y) { root.scrollTo((y - held) / height * scroll.contentHeight) }

        objectName: "indicator"
        anchors {
            top: parent.top; topMargin: 3; bottom: parent.bottom; bottomMargin: 3
            right: parent.right
        }
        width: 12
        visible: root.isShort
        onPressed: mouse => {
            const inside = mouse.y - thumb.y
            held = inside >= 0 && inside < thumb.height ? inside : thumb.height / 2
            follow(mouse.y)
        }
        onPositionChanged: mouse => follow(mouse.y)

        BoxItem {
            id: thumb
            readonly property color tint: Qt.rgba(1, 1, 1, indicator.pressed ? 0.5 : 0.35)
            anchors { right: parent.right; rightMargin: 3 }
            y: scroll.contentY / scroll.contentHeight * parent.height
            width: 5
            height: scroll.height / scroll.contentHeight * parent.height
            radius: 2.5
            topColor: tint
            bottomColor: tint
        }
    }
}
