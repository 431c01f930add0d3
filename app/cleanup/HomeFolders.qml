pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// Where none of the folders that are looked after is there: the largest ones of the home, to choose from.
ColumnLayout {
    id: root

    required property AppState appState

    spacing: 10

    HeadingText {
        Layout.fillWidth: true
        text: qsTr("bare.title")
        wrapMode: Text.Wrap
    }

    BodyText {
        Layout.fillWidth: true
        color: Theme.muted
        text: qsTr("bare.text")
        wrapMode: Text.Wrap
    }

    Repeater {
        model: root.appState.homeFolders

        RowLayout {
            id: entry

            required property var modelData

            Layout.fillWidth: true
            spacing: 12

            FolderRow {
                Layout.fillWidth: true
                name: entry.modelData.name
                path: entry.modelData.path
            }

            BodyText {
                text: Texts.bytes(entry.modelData.bytes)
                Accessible.ignored: true
            }

            PlainButton {
                text: qsTr("settings.add_folder")
                Accessible.name: text + ": " + entry.modelData.name
                onClicked: root.appState.grantFolder(entry.modelData.url)
            }
        }
    }

    CaptionText {
        Layout.fillWidth: true
        visible: text !== ""
        text: root.appState.grantError
        color: Theme.review
        wrapMode: Text.Wrap
    }

    PrimaryButton {
        symbol: "folder"
        text: qsTr("cleanup.choose_folders")
        onClicked: picker.open()

        PickFolder {
            id: picker

            onPicked: url => root.appState.grantFolder(url)
        }
    }
}
