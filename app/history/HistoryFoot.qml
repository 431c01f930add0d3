import QtQuick
import Orvane

// The foot of an unfolded run: how many of its items can come back, and what brings the chosen ones back.
Item {
    id: root

    property double chosenCount: 0
    property string text: ""
    property bool isFocused: false
    property bool isNarrow: false
    property bool isBusy: false
    signal openFolderAsked
    signal restoreAsked

    // The keyboard leaves the buttons of a row with the row.
    onIsFocusedChanged: {
        if (!isFocused) {
            open.focus = false;
            restore.focus = false;
        }
    }

    CaptionText {
        anchors.left: parent.left
        anchors.right: buttons.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        wrapMode: Text.Wrap
        maximumLineCount: 3
        text: root.text
        Accessible.ignored: true
    }

    Row {
        id: buttons

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        PlainButton {
            id: open

            focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
            symbol: root.isNarrow ? "folder-open" : ""
            text: root.isNarrow ? "" : qsTr("action.reveal_in_finder")
            Accessible.name: qsTr("action.reveal_in_finder")
            onClicked: root.openFolderAsked()

            Tip {
                text: qsTr("action.reveal_in_finder")
                shown: root.isNarrow && (open.hovered || open.visualFocus)
            }
        }

        PrimaryButton {
            id: restore

            focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
            enabled: root.chosenCount > 0 && !root.isBusy
            symbol: "undo"
            text: qsTr("history.bring_back").arg(Texts.count(root.chosenCount))
            onClicked: root.restoreAsked()
        }
    }
}
