import QtQuick
import Orvane

// A field that is searched while it is typed into. Escape empties it.
InputField {
    id: root

    implicitWidth: 174
    leftPadding: 38
    rightPadding: root.text === "" ? 12 : 34
    placeholder: qsTr("action.search")
    Keys.onEscapePressed: event => {
        event.accepted = root.text !== "";
        root.clear();
    }

    Icon {
        x: 14
        anchors.verticalCenter: parent.verticalCenter
        name: "search"
        size: 16
        color: Theme.text
    }

    IconButton {
        anchors.right: parent.right
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        visible: root.text !== ""
        symbol: "close"
        iconSize: 12
        focusPolicy: Qt.NoFocus
        text: qsTr("action.clear_search")
        onClicked: root.clear()
    }
}
