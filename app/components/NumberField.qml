import QtQuick
import QtQuick.Templates as T
import Orvane

// A whole number within bounds, typed or stepped.
T.SpinBox {
    id: root

    property string label: ""

    implicitWidth: 116
    implicitHeight: Theme.controlHeight
    leftPadding: 32
    rightPadding: 32
    editable: true
    font.pixelSize: Theme.textSize
    inputMethodHints: Qt.ImhDigitsOnly
    validator: IntValidator {
        bottom: root.from
        top: root.to
    }
    Accessible.name: root.label
    Accessible.role: Accessible.SpinBox

    contentItem: TextInput {
        text: root.displayText
        font: root.font
        color: root.enabled ? Theme.text : Theme.disabled
        selectionColor: Theme.accent
        selectedTextColor: Theme.inkOnAccent
        horizontalAlignment: Qt.AlignHCenter
        verticalAlignment: Qt.AlignVCenter
        readOnly: !root.editable
        validator: root.validator
        inputMethodHints: root.inputMethodHints
        selectByMouse: true
        Accessible.ignored: true
    }

    down.indicator: Item {
        x: 1
        height: root.height
        width: 30

        Icon {
            anchors.centerIn: parent
            name: "minus"
            size: 14
            color: root.enabled && root.value > root.from ? Theme.text : Theme.boxLine
        }
    }

    up.indicator: Item {
        x: root.width - width - 1
        height: root.height
        width: 30

        Icon {
            anchors.centerIn: parent
            name: "plus"
            size: 14
            color: root.enabled && root.value < root.to ? Theme.text : Theme.boxLine
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.surface
        border.width: root.activeFocus ? 2 : 1
        border.color: root.activeFocus ? Theme.accent : Theme.line
    }
}
