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

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 4

            CaptionText {
                Layout.fillWidth: true
                text: root.text
                wrapMode: Text.Wrap
                color: root.isWarning ? Theme.text : Theme.muted
                Accessible.ignored: true
            }

            CaptionText {
                Layout.fillWidth: true
                visible: text !== ""
                text: root.detail
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }

            LinkButton {
                Layout.leftMargin: -8
                Layout.bottomMargin: -4
                visible: root.action !== ""
                text: root.action
                font.pixelSize: 13
                onClicked: root.acted()
            }
        }
    }
}
