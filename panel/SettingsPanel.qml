import QtQuick
import Noctra.Panel

FocusScope {
    id: sheet

    required property PanelModel panel
    required property SettingsModel settings
    signal closed

    function takeFocus() { close.forceActiveFocus(Qt.OtherFocusReason) }

    objectName: "settings"
    Accessible.role: Accessible.Dialog
    Accessible.name: settings.title

    Rectangle {
        // Lower than the sheet, which its spring lifts above its place for a moment.
        anchors { fill: parent; bottomMargin: -0.02 * parent.height }
        color: Qt.alpha(sheet.panel.bgDeep, 0.98)
    }
    // Nothing beneath reacts to the pointer.
    WheelArea {
        panel: sheet.panel
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
    }

    Rectangle {
        id: header
        width: parent.width
        height: Math.max(title.implicitHeight, close.height) + 32
        color: Qt.rgba(0.12, 0.12, 0.12, 1)

        Text {
            id: title
            anchors { left: parent.left; leftMargin: 16; verticalCenter: parent.verticalCenter }
            text: sheet.settings.title
            font: sheet.panel.fonts.system(11, 900)
            color: "white"
        }
        PlainButton {
            id: close
            objectName: "close"
            anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
            width: closeTitle.implicitWidth
            height: closeTitle.implicitHeight
            focus: true
            reach: 8
            name: sheet.settings.closeTitle
            showsFocus: sheet.panel.showsFocus
            takesFocus: sheet.panel.showingSettings
            onPressed: {
                sheet.closed()
                sheet.settings.close()
            }

            Text {
                id: closeTitle
                text: sheet.settings.closeTitle
                font: sheet.panel.fonts.system(10, 700)
                color: sheet.panel.redSignal
            }
        }
    }

    Flickable {
        id: scroll
        anchors { top: header.bottom; bottom: parent.bottom; left: parent.left; right: parent.right }
        contentHeight: rows.height + 32
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Column {
            id: rows
            x: 16
            y: 16
            width: scroll.width - 32
            spacing: 1

            ToggleRow {
                width: parent.width
                panel: sheet.panel
                name: sheet.settings.launchAtLoginTitle
                isOn: sheet.settings.launchAtLogin
                onPressed: sheet.settings.launchAtLogin = !sheet.settings.launchAtLogin
            }
            ToggleRow {
                width: parent.width
                panel: sheet.panel
                name: sheet.settings.allowExtremeDimTitle
                isOn: sheet.settings.allowExtremeDim
                onPressed: sheet.settings.allowExtremeDim = !sheet.settings.allowExtremeDim
            }
            ActionRow {
                objectName: "copy"
                width: parent.width
                panel: sheet.panel
                name: sheet.settings.copyTitle
                textColor: sheet.settings.copyTitleColor
                symbol: sheet.settings.copySymbol
                symbolColor: sheet.settings.copySymbolColor
                onPressed: sheet.settings.copyDiagnostics()
            }
            ActionRow {
                objectName: "stop"
                anchors.horizontalCenter: parent.horizontalCenter
                panel: sheet.panel
                name: sheet.settings.stopTitle
                textColor: sheet.panel.redSignal
                symbol: "power"
                symbolColor: sheet.panel.redSignal
                onPressed: sheet.settings.emergencyStop()
            }
        }
    }
    Rectangle {
        // Where there is more than fits, how far down one is.
        anchors.right: parent.right
        anchors.rightMargin: 3
        visible: scroll.interactive
        y: scroll.y + scroll.visibleArea.yPosition * scroll.height
        width: 5
        height: scroll.visibleArea.heightRatio * scroll.height
        radius: 2.5
        color: Qt.rgba(1, 1, 1, 0.35)
    }

    component ActionRow: PlainButton {
        id: action

        required property PanelModel panel
        required property color textColor
        required property string symbol
        required property color symbolColor
        readonly property real symbolSide: 14
        readonly property int fade: panel.reducesMotion ? 0 : 200

        // As wide as its title and its symbol, unless it is given more to put between them.
        implicitWidth: actionTitle.implicitWidth + 8 + symbolSide + 32
        implicitHeight: Math.max(actionTitle.implicitHeight, symbolSide) + 32
        width: implicitWidth
        height: implicitHeight
        showsFocus: panel.showsFocus
        takesFocus: panel.showingSettings
        ringRadius: 0

        Rectangle { anchors.fill: parent; color: Qt.rgba(0.15, 0.15, 0.15, 1) }
        CrossFade {
            id: actionTitle
            anchors { left: parent.left; leftMargin: 16; verticalCenter: parent.verticalCenter }
            value: action.name
            color: action.textColor
            fade: action.fade
            delegate: Text {
                text: parent.value
                font: action.panel.fonts.system(11, 700)
                color: parent.color
                Accessible.ignored: true
            }
            Behavior on color { Fade { duration: action.fade } }
        }
        CrossFade {
            anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
            width: action.symbolSide
            height: action.symbolSide
            value: action.symbol
            color: action.symbolColor
            fade: action.fade
            delegate: IconItem {
                path: action.panel.icon(parent.value)
                color: parent.color
            }
            Behavior on color { Fade { duration: action.fade } }
        }
    }
    component Fade: ColorAnimation {
        easing { type: Easing.BezierSpline; bezierCurve: [0.42, 0, 0.58, 1, 1, 1] }
    }
}
