pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The folders that Orvane may work in.
SettingsCard {
    id: root

    required property SettingsModel model

    title: qsTr("settings.folders_title")
    note: qsTr("settings.folders_note")

    Repeater {
        model: root.model.folders

        FolderRow {
            required property var modelData

            Layout.fillWidth: true
            name: modelData.name
            path: modelData.path
            exists: modelData.exists
            canBeRead: modelData.canBeRead
            symbol: modelData.symbol ?? "folder"
            canRemove: modelData.canRemove
            coveredBy: modelData.coveredBy
            onRemoveAsked: root.model.removeFolder(modelData.url)
        }
    }

    CaptionText {
        Layout.fillWidth: true
        visible: text !== ""
        text: root.model.folderError
        color: Theme.review
        wrapMode: Text.Wrap
    }

    PlainButton {
        symbol: "plus"
        text: qsTr("settings.add_folder")
        onClicked: picker.open()

        PickFolder {
            id: picker

            onPicked: url => root.model.addFolder(url)
        }
    }

    Divider {
        Layout.fillWidth: true
    }

    SwitchRow {
        label: qsTr("settings.known_places")
        note: qsTr("settings.known_places_note")
        on: root.model.scansKnownPlaces
        onToggleAsked: root.model.scansKnownPlaces = !root.model.scansKnownPlaces
    }
}
