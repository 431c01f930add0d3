import QtQuick
import QtQuick.Layouts
import Orvane

// A titled card of settings, each a row with a line between.
Card {
    id: root

    property string title: ""
    property string note: ""
    default property alias rows: column.data

    implicitHeight: column.implicitHeight + 2 * padding - 8

    ColumnLayout {
        id: column

        y: -4
        width: parent.width
        spacing: 10

        HeadingText {
            Layout.fillWidth: true
            Layout.preferredHeight: 24
            verticalAlignment: Text.AlignVCenter
            font.pixelSize: Theme.headingSize
            text: root.title
        }

        CaptionText {
            Layout.fillWidth: true
            Layout.topMargin: -6
            visible: text !== ""
            text: root.note
            wrapMode: Text.Wrap
        }
    }
}
