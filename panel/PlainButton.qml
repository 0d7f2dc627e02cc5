import QtQuick

// A button without any chrome: what is put into it is all that shows.
Item {
    id: button

    required property string name
    required property bool showsFocus
    // It can be reached: nothing lies over it.
    property bool takesFocus: true
    // Also the second click of a double click.
    property bool takesSecondClicks: true
    property real ringRadius: 4
    // How far beyond its edges it can be clicked.
    property real reach: 0
    readonly property bool held: area.pressed && area.containsMouse
    signal pressed

    activeFocusOnTab: takesFocus
    opacity: held ? 0.75 : 1
    z: activeFocus ? 1 : 0 // the ring reaches over its neighbours

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.focusable: true
    Accessible.ignored: !takesFocus
    Accessible.onPressAction: pressed()

    Keys.onSpacePressed: event => { if (!event.isAutoRepeat) pressed() }
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) pressed() }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) pressed() }

    MouseArea {
        id: area
        anchors { fill: parent; margins: -button.reach }
        // Heard of as a double click, the second click is no longer reported as a click.
        property bool isSecond: false
        onPressed: {
            isSecond = false
            button.forceActiveFocus(Qt.MouseFocusReason)
        }
        onDoubleClicked: isSecond = true
        onReleased: if (isSecond && containsMouse && button.takesSecondClicks) button.pressed()
        onClicked: button.pressed()
    }
    FocusRing {
        radius: button.ringRadius
        shown: button.showsFocus && button.activeFocus
    }
}
