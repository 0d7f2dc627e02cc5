import QtQuick
import Noctra.Panel

// A fader with its name above it and its readout below.
Item {
    id: column

    required property PanelModel panel
    required property FaderModel fader
    required property string label
    required property color labelColor
    required property readout readout
    // There is more of the panel than can be seen.
    required property bool isShort

    z: slider.activeFocus ? 1 : 0 // the ring reaches over the groove beside it

    Text {
        id: name
        // In the middle of the slot: an anchor would round to whole points. Drawn 2 points higher
        // than the place it takes.
        x: (parent.width - width) / 2
        y: -2
        text: column.label
        color: column.labelColor
        font: column.panel.fonts.brand(14, "ExtraBold")
        Accessible.ignored: true
    }
    FaderItem {
        id: slider
        objectName: column.label
        anchors {
            top: parent.top; topMargin: name.height + 16
            bottom: field.top; bottomMargin: 16
            left: parent.left; right: parent.right
        }
        source: column.fader
        animates: !column.panel.reducesMotion
        // The faders are most of what a panel that scrolls could be scrolled by.
        takesWheel: !column.isShort || activeFocus
        activeFocusOnTab: !column.panel.showingSettings

        Accessible.role: Accessible.Slider
        Accessible.name: column.label
        Accessible.description: column.readout.text
        Accessible.focusable: true
        Accessible.ignored: column.panel.showingSettings

        FocusRing {
            radius: 6
            shown: column.panel.showsFocus && slider.activeFocus
        }
    }
    FaderReadout {
        id: field
        anchors.bottom: parent.bottom
        x: (parent.width - width) / 2
        width: implicitWidth
        height: implicitHeight
        readout: column.readout
        font: column.panel.fonts.monospaced(12, 700)
    }
}
