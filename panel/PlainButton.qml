import QtQuick

// A button without any chrome: what is put into it is all that shows.
Item {
    id: button

    required property string name
    required property bool showsFocus
    property bool takesFocus: true
    property real ringRadius: 4
    readonly property bool held: area.pressed && area.containsMouse
    signal pressed

    activeFocusOnTab: takesFocus
    opacity: held ? 0.75 : 1

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.focusable: true
    Accessible.onPressAction: pressed()

    Keys.onSpacePressed: event => { if (!event.isAutoRepeat) pressed() }
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) pressed() }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) pressed() }

    MouseArea {
        id: area
        anchors.fill: parent
        onPressed: button.forceActiveFocus(Qt.MouseFocusReason)
        onClicked: button.pressed()
    }
    FocusRing {
        radius: button.ringRadius
        shown: button.showsFocus && button.activeFocus
    }
}
