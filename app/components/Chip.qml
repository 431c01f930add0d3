import QtQuick
import Orvane

// A word on a soft ground. Colour never says it alone.
Rectangle {
    id: root

    enum Kind { Safe, Review, Manual, Accent }

    property int kind: Chip.Kind.Manual
    property string text: ""
    property string symbol: ""
    // The symbol alone where there is no room for the word too.
    property bool showsText: true
    // The width that it may take: dots stand for the rest of its text.
    property real maxWidth: Infinity
    readonly property bool isCut: label.truncated

    readonly property color ink: [Theme.safe, Theme.review, Theme.manual, Theme.accentHover][kind]

    implicitWidth: row.implicitWidth + 16
    implicitHeight: 20
    radius: height / 2
    color: [Theme.safeSoft, Theme.reviewSoft, Theme.manualSoft, Theme.accentSoft][kind]
    Accessible.role: Accessible.StaticText
    Accessible.name: root.text

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 4

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.symbol !== ""
            name: root.symbol
            color: root.ink
            size: 12
        }

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, Math.max(0, root.maxWidth - 16 - (root.symbol === "" ? 0 : 16)))
            visible: text !== "" && root.showsText
            elide: Text.ElideMiddle
            text: root.text
            color: root.ink
            font.pixelSize: Theme.captionSize
            font.weight: Font.Medium
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
