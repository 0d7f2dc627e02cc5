import QtQuick

// Shows a value by its delegate, as large as this, which reads it as parent.value and its colour as
// parent.color. A new value fades in while the old one fades out.
Item {
    id: root

    required property var value
    required property color color
    required property Component delegate
    property int fade: 0 // milliseconds
    property var entered // undefined before there is a value
    property var leaving
    property real presence: 1

    implicitWidth: face.implicitWidth
    implicitHeight: face.implicitHeight
    onValueChanged: {
        leaving = entered
        entered = value
        if (leaving !== undefined)
            fading.restart()
    }

    NumberAnimation {
        id: fading
        target: root
        property: "presence"
        from: 0
        to: 1
        duration: root.fade
        easing { type: Easing.BezierSpline; bezierCurve: [0.42, 0, 0.58, 1, 1, 1] }
    }
    Face {
        id: face
        value: root.value
        opacity: root.presence
    }
    Face {
        value: root.leaving
        opacity: 1 - root.presence
        active: root.presence < 1
    }

    component Face: Loader {
        property var value
        readonly property color color: root.color

        width: root.width
        height: root.height
        sourceComponent: root.delegate
    }
}
