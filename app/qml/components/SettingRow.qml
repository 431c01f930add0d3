import QtQuick
import QtQuick.Layouts
import Orvane

// What is set, with a remark below it, and its control at the right.
RowLayout {
    id: root

    property string label: ""
    property string note: ""
    property bool isWarning: false
    default property alias control: place.data

    Layout.fillWidth: true
    spacing: 16

    ColumnLayout {
        Layout.fillWidth: true
        Layout.fillHeight: false
        Layout.alignment: Qt.AlignVCenter
        spacing: 0

        BodyText {
            Layout.fillWidth: true
            text: root.label
            wrapMode: Text.Wrap
        }

        CaptionText {
            Layout.fillWidth: true
            visible: text !== ""
            text: root.note
            color: root.isWarning ? Theme.review : Theme.muted
            wrapMode: Text.Wrap
        }
    }

    RowLayout {
        id: place

        Layout.alignment: Qt.AlignVCenter
        Layout.fillHeight: false
        Layout.fillWidth: false
        Layout.minimumHeight: 36
        spacing: 8
    }
}
