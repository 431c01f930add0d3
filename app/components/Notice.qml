import QtQuick
import QtQuick.Layouts
import Orvane

// Something the user should know, with what can be done about it.
Card {
    id: root

    property string text: ""
    property string detail: ""
    property string symbol: "info"
    property bool isWarning: false
    property string action: ""
    signal acted

    padding: 14
    implicitHeight: layout.implicitHeight + 2 * padding
    Accessible.role: isWarning ? Accessible.AlertMessage : Accessible.StaticText
    Accessible.name: text + (detail === "" ? "" : " " + detail)

    RowLayout {
        id: layout

        width: parent.width
        spacing: 10

        Icon {
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: 1
            name: root.isWarning ? "warning" : root.symbol
            size: 16
            color: root.isWarning ? Theme.review : Theme.muted
        }

        // A layout would keep the places that the texts had before they knew their width.
        Column {
            Layout.fillWidth: true
            spacing: 4

            CaptionText {
                width: parent.width
                text: root.text
                wrapMode: Text.Wrap
                color: root.isWarning ? Theme.text : Theme.muted
                Accessible.ignored: true
            }

            CaptionText {
                width: parent.width
                visible: text !== ""
                text: root.detail
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }

            LinkButton {
                x: -8
                height: implicitHeight - 4
                visible: root.action !== ""
                text: root.action
                font.pixelSize: 13
                onClicked: root.acted()
            }
        }
    }
}
