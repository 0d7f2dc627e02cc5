import QtQuick

// Shows where the keyboard's focus is, around whatever it is put into.
Rectangle {
    property bool shown: false

    anchors.fill: parent
    anchors.margins: -3
    z: 10
    visible: shown
    color: "transparent"
    border { width: 2; color: "#6cb2ff" }
}
