import QtQuick
import QtQuick.Templates as T
import Orvane

// The base of all buttons: an icon and a text in the middle, a focus ring, a name for assistive technology.
T.Button {
    id: root

    property string symbol: ""
    property string trailingSymbol: ""
    property color ink: Theme.text
    property color fill: "transparent"
    property color outline: "transparent"
    property int weight: Font.Medium
    property int alignment: Qt.AlignHCenter

    readonly property color shownInk: enabled ? ink : Theme.disabled
    // Fades into the hover colour, not through black.
    readonly property color noFill: Qt.alpha(Theme.accentSoft, 0)

    implicitWidth: Math.max(implicitHeight, Math.ceil(implicitContentWidth) + leftPadding + rightPadding)
    implicitHeight: Theme.controlHeight
    leftPadding: 14
    rightPadding: 14
    hoverEnabled: true
    font.pixelSize: Theme.textSize
    font.weight: root.weight
    focusPolicy: Qt.StrongFocus
    Accessible.name: root.text
    Accessible.role: Accessible.Button
    Accessible.onPressAction: if (root.enabled) root.clicked()
    Keys.onReturnPressed: if (root.enabled) root.clicked()
    Keys.onEnterPressed: if (root.enabled) root.clicked()

    contentItem: Item {
        implicitWidth: (leading.visible ? leading.width + row.spacing : 0) + label.implicitWidth
                       + (trailing.visible ? trailing.width + row.spacing : 0)
        implicitHeight: row.implicitHeight

        Row {
            id: row

            readonly property real textSpace: root.availableWidth - (leading.visible ? leading.width + spacing : 0)
                                              - (trailing.visible ? trailing.width + spacing : 0)

            anchors.verticalCenter: parent.verticalCenter
            x: root.alignment === Qt.AlignHCenter ? Math.max(0, Math.round((parent.width - width) / 2)) : 0
            spacing: 8

            Icon {
                id: leading

                anchors.verticalCenter: parent.verticalCenter
                visible: root.symbol !== ""
                name: root.symbol
                color: root.shownInk
                size: 16
            }

            Text {
                id: label

                anchors.verticalCenter: parent.verticalCenter
                visible: root.text !== ""
                text: root.text
                font: root.font
                color: root.shownInk
                elide: Text.ElideRight
                textFormat: Text.PlainText
                width: Math.min(Math.ceil(implicitWidth), Math.max(0, row.textSpace))
                Accessible.ignored: true
            }

            Icon {
                id: trailing

                anchors.verticalCenter: parent.verticalCenter
                visible: root.trailingSymbol !== ""
                name: root.trailingSymbol
                color: root.shownInk
                size: 14
            }
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: root.fill.a > 0 ? root.fill : root.noFill
        border.width: root.outline.a > 0 ? 1 : 0
        border.color: root.outline

        // The ink changes at once when the button is switched off, and so does its ground.
        Behavior on color {
            enabled: root.enabled

            ColorAnimation {
                duration: Theme.shortMotion
            }
        }

        FocusRing {
            shown: root.visualFocus
        }
    }
}
