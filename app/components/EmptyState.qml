import QtQuick
import Orvane

// A drawing, a sentence, at most one button.
Item {
    id: root

    required property string drawing
    property string title: ""
    property string text: ""
    property string action: ""
    property string symbol: ""
    property bool actionEnabled: true
    signal acted

    implicitHeight: column.implicitHeight + 48

    Column {
        id: column

        anchors.centerIn: parent
        width: Math.min(420, root.width - 48)
        spacing: 8

        Drawing {
            anchors.horizontalCenter: parent.horizontalCenter
            name: root.drawing
        }

        HeadingText {
            width: parent.width
            visible: text !== ""
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            font.pixelSize: 16
            text: root.title
        }

        BodyText {
            width: parent.width
            visible: text !== ""
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            color: Theme.muted
            text: root.text
        }

        Item {
            width: 1
            height: 8
            visible: root.action !== ""
        }

        PrimaryButton {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.action !== ""
            enabled: root.actionEnabled
            symbol: root.symbol
            text: root.action
            onClicked: root.acted()
        }
    }
}
