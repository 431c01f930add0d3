pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// Above the list: which folders are searched, and which of the groups are shown.
Item {
    id: root

    required property DuplicatesModel model
    // There is a list to search.
    property bool canFind: false

    readonly property bool canChange: !model.isSearching && !model.isWorking

    function find() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    function clear() {
        search.clear();
    }

    implicitHeight: 54

    Timer {
        id: searchDelay

        interval: 120
        onTriggered: root.model.searchText = search.text
    }

    PickFolder {
        id: picker

        onPicked: url => root.model.addReference(url)
    }

    SearchField {
        id: search

        x: 12
        y: 9
        width: 240
        visible: root.canFind
        text: root.model.searchText
        onTextEdited: searchDelay.restart()
        onTextChanged: if (text === "" && root.model.searchText !== "") searchDelay.restart()
    }

    LinkButton {
        x: search.visible ? search.x + search.width + 12 : 12
        y: 12
        symbol: "folder"
        text: qsTr("duplicates.folders")
        trailingSymbol: "chevron-down"
        enabled: root.canChange
        Accessible.role: Accessible.ButtonMenu
        onClicked: menu.open()

        ChoiceMenu {
            id: menu

            y: parent.height + 6

            Repeater {
                model: root.model.roots

                ChoiceItem {
                    required property var modelData

                    text: modelData.name
                    isCurrent: modelData.included
                    Accessible.role: Accessible.CheckBox
                    onTriggered: root.model.setRootIncluded(modelData.path, !modelData.included)
                }
            }

            Repeater {
                model: root.model.references

                ChoiceItem {
                    required property var modelData

                    text: qsTr("keep.compared").arg(modelData.name)
                    isCurrent: true
                    Accessible.role: Accessible.CheckBox
                    onTriggered: root.model.removeReference(modelData.path)
                }
            }

            ChoiceItem {
                isChoice: false
                symbol: "plus"
                text: qsTr("keep.compare_with")
                onTriggered: picker.open()
            }
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
