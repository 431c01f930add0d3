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

    // Lines of one length: no last word stands alone.
    readonly property real maxWidth: Math.min(420, width - 48)
    readonly property int lines: Math.ceil(textMetrics.advanceWidth / Math.max(1, maxWidth))
    readonly property real evenWidth: lines < 2 ? maxWidth
                                                : Math.min(maxWidth, textMetrics.advanceWidth / lines * 1.12 + 16)

    // The drawing goes first where there is no room for all.
    readonly property bool showsDrawing: height >= words.implicitHeight + drawingItem.height + column.spacing + 16

    implicitHeight: words.implicitHeight + drawingItem.height + column.spacing + 48

    TextMetrics {
        id: textMetrics

        font: body.font
        text: root.text
    }

    Column {
        id: column

        anchors.centerIn: parent
        width: root.maxWidth
        spacing: 8

        Drawing {
            id: drawingItem

            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.showsDrawing
            name: root.drawing
        }

        Column {
            id: words

            width: parent.width
            spacing: column.spacing

            HeadingText {
                width: parent.width
                visible: text !== ""
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                font.pixelSize: 16
                text: root.title
            }

            BodyText {
                id: body

                anchors.horizontalCenter: parent.horizontalCenter
                width: root.evenWidth
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
}
