pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// A button that offers folders ({name, path}), and any other through the system's own dialog.
PlainButton {
    id: root

    property string label: ""
    property string value: ""
    property var folders: []
    property bool canPick: true
    signal chosen(string path)

    symbol: "folder"
    trailingSymbol: "chevron-down"
    text: value
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: label === value ? value : label + ": " + value
    onClicked: menu.opened ? menu.close() : menu.open()

    ChoiceMenu {
        id: menu

        y: root.height + 6

        Repeater {
            model: root.folders

            ChoiceItem {
                required property var modelData

                isChoice: false
                symbol: "folder"
                text: modelData.name
                onTriggered: root.chosen(modelData.path)
            }
        }

        ChoiceItem {
            isChoice: false
            visible: root.canPick
            height: implicitHeight
            symbol: "more"
            text: qsTr("action.other_folder")
            onTriggered: picker.open()
        }
    }

    PickFolder {
        id: picker

        onPicked: url => root.chosen(url)
    }
}
