pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// How the automatic organizer keeps its folders.
SettingsCard {
    id: root

    required property SettingsModel model
    required property TidyModel tidy

    title: qsTr("settings.tidy_title")
    note: qsTr("settings.tidy_note")

    SwitchRow {
        label: qsTr("tray.keep_tidy")
        note: root.tidy.lastRunDate > 0
              ? qsTr("settings.tidy_last").arg(Texts.dateTime(root.tidy.lastRunDate)).arg(
                    Texts.counted("count.items", root.tidy.movedCount)) : ""
        on: root.tidy.isEnabled
        onToggleAsked: root.tidy.isEnabled = !root.tidy.isEnabled
    }

    Divider {
        Layout.fillWidth: true
    }

    SettingRow {
        label: qsTr("settings.recents_days")
        note: qsTr("settings.recents_note")

        NumberField {
            label: qsTr("settings.recents_days")
            from: 1
            to: 30
            value: root.model.recentsDays
            onValueModified: root.model.recentsDays = value
        }
    }

    Divider {
        Layout.fillWidth: true
    }

    SwitchRow {
        label: qsTr("organize.use_topics")
        note: root.tidy.isAvailable ? "" : qsTr("settings.topics_missing")
        on: root.model.useTopics
        onToggleAsked: root.model.useTopics = !root.model.useTopics
    }

    Divider {
        Layout.fillWidth: true
    }

    SettingRow {
        visible: !root.tidy.isRunning
        label: qsTr("settings.tidy_now")
        note: root.tidy.statusText

        LinkButton {
            visible: root.tidy.canUndo
            symbol: "undo"
            text: qsTr("dashboard.undo")
            onClicked: root.tidy.undo()
        }

        PlainButton {
            enabled: root.tidy.isReady
            symbol: "play"
            text: qsTr("tray.organize_now")
            onClicked: root.tidy.look()
        }
    }

    SettingRow {
        visible: root.tidy.isRunning
        label: qsTr("settings.tidy_running")
        note: root.tidy.progressTotal > 0
              ? qsTr("count.of").arg(Texts.count(root.tidy.progressDone)).arg(Texts.count(root.tidy.progressTotal))
              : ""

        Meter {
            filled: root.tidy.progressTotal > 0 ? root.tidy.progressDone / root.tidy.progressTotal : -1
        }

        PlainButton {
            text: qsTr("action.cancel")
            onClicked: root.tidy.cancel()
        }
    }

    Divider {
        Layout.fillWidth: true
    }

    Repeater {
        model: root.model.autoFolders

        FolderRow {
            required property var modelData

            Layout.fillWidth: true
            name: modelData.name
            path: modelData.path
            canRemove: true
            onRemoveAsked: root.model.removeAutoFolder(modelData.url)
        }
    }

    PlainButton {
        symbol: "plus"
        text: qsTr("settings.add_folder")
        onClicked: picker.open()

        PickFolder {
            id: picker

            onPicked: url => root.model.addAutoFolder(url)
        }
    }
}
