pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The folder to organize, the destination, and the strategy.
Card {
    id: root

    required property OrganizeModel model

    padding: 14
    implicitHeight: flow.implicitHeight + 2 * padding

    Flow {
        id: flow

        width: parent.width
        spacing: 12

        FolderButton {
            label: qsTr("organize.folder")
            value: root.model.folder === "" ? qsTr("organize.choose_folder") : root.model.folderName
            folders: root.model.managedFolders
            onChosen: path => root.model.chooseFolder(path)
        }

        FolderButton {
            visible: root.model.subfolders.length > 0
            label: qsTr("organize.subfolder")
            value: qsTr("organize.subfolder")
            folders: root.model.subfolders
            canPick: false
            onChosen: path => root.model.chooseFolder(path)
        }

        FolderButton {
            enabled: root.model.folder !== ""
            symbol: "arrow-right"
            label: qsTr("organize.destination")
            value: root.model.destination === "" || root.model.destination === root.model.folder
                   ? qsTr("organize.same_folder") : root.model.destinationName
            folders: root.model.managedFolders
            onChosen: path => root.model.chooseDestination(path)
        }

        MenuButton {
            label: qsTr("organize.strategy")
            keys: root.model.strategyKeys
            current: root.model.strategy
            onChosen: index => root.model.strategy = index
        }

        Option {
            text: qsTr("organize.include_subfolders")
            on: root.model.includeSubfolders
            onToggled: root.model.includeSubfolders = !root.model.includeSubfolders
        }

        Option {
            visible: root.model.topicsAvailable
            text: qsTr("organize.use_topics")
            on: root.model.useTopics
            onToggled: root.model.useTopics = !root.model.useTopics
        }
    }

    component Option: Item {
        id: option

        property string text
        property bool on
        signal toggled

        implicitWidth: box.implicitWidth
        implicitHeight: Theme.controlHeight

        TriStateBox {
            id: box

            anchors.verticalCenter: parent.verticalCenter
            labelShown: true
            text: option.text
            checkState: option.on ? Qt.Checked : Qt.Unchecked
            onToggleAsked: option.toggled()
        }
    }
}
