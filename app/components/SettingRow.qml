import QtQuick
import QtQuick.Layouts
import Orvane

// The name of a setting, with a remark below it, and its control at the right.
Item {
    id: root

    property string label: ""
    property string note: ""
    property bool isWarning: false
    default property alias control: place.data

    Layout.fillWidth: true
    implicitWidth: 300
    implicitHeight: Math.max(36, texts.implicitHeight, place.implicitHeight)

    Column {
        id: texts

        anchors.left: parent.left
        anchors.right: place.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter

        BodyText {
            width: parent.width
            text: root.label
            color: root.enabled ? Theme.text : Theme.disabled
            wrapMode: Text.Wrap
        }

        CaptionText {
            width: parent.width
            visible: text !== ""
            text: root.note
            color: root.isWarning ? Theme.review : Theme.muted
            wrapMode: Text.Wrap
        }
    }

    RowLayout {
        id: place

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
    }
}
