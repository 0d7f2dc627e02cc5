import QtQuick
import Noctra.Panel

Rectangle {
    id: root

    required property PanelModel panel
    required property bool isShort
    // What the sheet went away by when it was last shown.
    property bool endedByClose: false

    implicitWidth: 320
    implicitHeight: 540
    color: panel.bgDeep
    focus: true
    Keys.onEscapePressed: panel.escape()

    Rectangle {
        id: header
        width: parent.width
        height: Math.max(title.implicitHeight, gear.height) + 38
        color: root.panel.panelGrey

        Text {
            id: title
            anchors { left: parent.left; leftMargin: 24; verticalCenter: parent.verticalCenter }
            text: root.panel.title
            font: root.panel.fonts.brand(11, "ExtraBold", 1.5)
            color: Qt.rgba(1, 1, 1, 0.3)
        }
        PlainButton {
            id: gear
            objectName: "gear"
            anchors { right: parent.right; rightMargin: 24; verticalCenter: parent.verticalCenter }
            width: 16
            height: 16
            reach: 8
            name: root.panel.settingsName
            showsFocus: root.panel.showsFocus
            takesFocus: !root.panel.showingSettings
            // The second click of a double click on CLOSE, which lay above it, is not for the gear.
            takesSecondClicks: !root.endedByClose
            onPressed: {
                root.endedByClose = false
                root.panel.pressGear()
            }

            IconItem {
                anchors.fill: parent
                path: root.panel.icon("gear")
                color: Qt.rgba(1, 1, 1, 0.3)
            }
        }
        Bevel {
            topColor: Qt.rgba(1, 1, 1, 0.05)
            bottomColor: Qt.rgba(0, 0, 0, 0.8)
        }
    }

    Item {
        id: faders
        anchors {
            top: header.bottom; topMargin: 24; bottom: footer.top; bottomMargin: 24
            left: parent.left; leftMargin: 16; right: parent.right; rightMargin: 16
        }

        StudioFader {
            width: (parent.width - 6) / 2
            height: parent.height
            panel: root.panel
            fader: root.panel.warmth
            label: root.panel.warmthLabel
            labelColor: root.panel.redSignal
            readout: root.panel.warmthReadout
            isShort: root.isShort
        }
        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 20
            width: 2
            height: parent.height - 40
            color: "black"

            Rectangle {
                x: 1
                width: 2
                height: parent.height
                color: Qt.rgba(1, 1, 1, 0.05)
            }
        }
        StudioFader {
            anchors.right: parent.right
            width: (parent.width - 6) / 2
            height: parent.height
            panel: root.panel
            fader: root.panel.brightness
            label: root.panel.brightnessLabel
            labelColor: "white"
            readout: root.panel.brightnessReadout
            isShort: root.isShort
        }
    }

    Rectangle {
        id: footer
        anchors.bottom: parent.bottom
        width: parent.width
        height: power.y + power.implicitHeight + 20
        color: root.panel.panelGrey

        Bevel {
            topColor: Qt.rgba(0, 0, 0, 0.5)
            bottomColor: Qt.rgba(1, 1, 1, 0.05)
        }
        PwmSafeStatusRow {
            id: statusRow
            // Drawn 5 points higher than the place it takes.
            x: 24
            y: 20 - 5
            z: 1
            width: parent.width - 48
            height: implicitHeight
            panel: root.panel
        }
        Row {
            id: presets
            x: 24
            y: 20 + statusRow.implicitHeight + 16
            width: parent.width - 48
            spacing: 12

            Repeater {
                model: root.panel.presets

                PresetButton {
                    required property PresetModel modelData
                    width: (presets.width - 2 * presets.spacing) / 3
                    height: implicitHeight
                    panel: root.panel
                    preset: modelData
                }
            }
        }
        NoctraSwitch {
            id: power
            x: 24
            y: presets.y + presets.height + 16
            width: parent.width - 48
            height: implicitHeight
            panel: root.panel
        }
    }

    Loader {
        id: sheet
        width: parent.width
        height: parent.height
        y: height * (1 - root.panel.sheetLevel)
        z: 2
        active: root.panel.settings !== null
        enabled: root.panel.showingSettings // on its way out it can no longer be hit by mistake
        sourceComponent: SettingsPanel {
            panel: root.panel
            settings: root.panel.settings
            onClosed: root.endedByClose = true
        }
        onLoaded: item.takeFocus()
    }
    Connections {
        target: root.panel
        function onSettingsChanged() {
            // Opened anew before the sheet had left.
            if (root.panel.settings !== null && sheet.item !== null)
                sheet.item.takeFocus()
        }
        function onShowingSettingsChanged() {
            if (!root.panel.showingSettings)
                gear.forceActiveFocus(Qt.OtherFocusReason)
        }
    }

    // Two lines at the edges of a band make it stand out from its neighbours.
    component Bevel: Item {
        id: bevel
        property color topColor
        property color bottomColor

        anchors.fill: parent

        Rectangle { width: parent.width; height: 1; color: bevel.topColor }
        Rectangle { y: parent.height - 1; width: parent.width; height: 1; color: bevel.bottomColor }
    }
}
