import QtQuick
import QtQuick.Layouts
import Orvane

// How the window looks and closes, and what the program is.
SettingsCard {
    id: root

    required property AppState appState

    title: qsTr("settings.window_title")

    SettingRow {
        label: qsTr("settings.theme")

        MenuButton {
            label: qsTr("settings.theme")
            keys: root.appState.themeKeys
            current: root.appState.theme
            onChosen: index => root.appState.theme = index
        }
    }

    Divider {
        Layout.fillWidth: true
    }

    SwitchRow {
        label: qsTr("settings.closes_to_tray")
        note: root.appState.canKeepTray ? "" : qsTr("settings.no_tray")
        canChange: root.appState.canKeepTray
        on: root.appState.canKeepTray && root.appState.closesToTray
        onToggleAsked: root.appState.closesToTray = !root.appState.closesToTray
    }

    Divider {
        Layout.fillWidth: true
    }

    SettingRow {
        label: qsTr("shortcuts.title")

        PlainButton {
            text: qsTr("shortcuts.show")
            onClicked: root.appState.shortcutsAsked()
        }
    }

    Divider {
        Layout.fillWidth: true
    }

    SettingRow {
        label: qsTr("about.title")
        note: qsTr("about.version").arg(Qt.application.version)

        PlainButton {
            text: qsTr("about.show")
            onClicked: root.appState.aboutAsked()
        }
    }
}
