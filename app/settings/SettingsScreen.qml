pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// Everything that can be set; each change holds at once.
Page {
    id: root

    required property AppState appState
    required property SettingsModel model
    required property LanguageModel languages
    required property OverviewModel overview
    required property TidyModel tidy
    required property MapModel map

    function startWork() {
        model.refresh();
    }

    title: qsTr("nav.settings")
    subtitle: qsTr("settings.subtitle")

    Component.onCompleted: model.refresh()

    ScrollColumn {
        CardColumns {
            Layout.fillWidth: true
            // Labels stay near their controls.
            Layout.maximumWidth: isSplit ? 1656 : 760
            isSplit: root.isWide
            first: [
                FolderSettings {
                    Layout.fillWidth: true
                    model: root.model
                },
                KeepSettings {
                    Layout.fillWidth: true
                    model: root.model
                },
                ScheduleSettingsCard {
                    Layout.fillWidth: true
                    model: root.model
                    overview: root.overview
                },
                TidySettings {
                    Layout.fillWidth: true
                    model: root.model
                    tidy: root.tidy
                }
            ]
            second: [
                SettingsCard {
                    Layout.fillWidth: true
                    title: qsTr("settings.general_title")

                    SettingRow {
                        label: qsTr("nav.language")

                        LanguageButton {
                            languages: root.languages
                        }
                    }

                    Divider {
                        Layout.fillWidth: true
                    }

                    SettingRow {
                        label: qsTr("settings.notifications")
                        note: root.model.notificationsAvailable ? qsTr("settings.notifications_note")
                                                                : qsTr("settings.notifications_missing")

                        PlainButton {
                            visible: !root.model.notificationsAvailable
                            text: qsTr("settings.allow_notifications")
                            onClicked: root.model.askForNotifications()
                        }

                        Chip {
                            kind: root.model.notificationsAvailable ? Chip.Kind.Safe : Chip.Kind.Manual
                            text: root.model.notificationsAvailable ? qsTr("permission.on") : qsTr("permission.off")
                        }
                    }

                    Divider {
                        Layout.fillWidth: true
                    }

                    SwitchRow {
                        label: qsTr("settings.launch_at_login")
                        note: root.tidy.launchAtLoginError
                        isWarning: true
                        on: root.tidy.launchAtLogin
                        onToggleAsked: root.tidy.launchAtLogin = !root.tidy.launchAtLogin
                    }

                    Divider {
                        Layout.fillWidth: true
                    }

                    SwitchRow {
                        label: qsTr("map.remember")
                        note: qsTr("map.remember_note")
                        on: root.map.remembers
                        onToggleAsked: root.map.setRemembers(!root.map.remembers)
                    }

                    PlainButton {
                        Layout.alignment: Qt.AlignRight
                        text: qsTr("map.forget")
                        onClicked: root.map.forget()
                    }

                    Divider {
                        Layout.fillWidth: true
                    }

                    SettingRow {
                        label: qsTr("settings.introduction")

                        PlainButton {
                            text: qsTr("settings.show_again")
                            onClicked: root.introductionAsked()
                        }
                    }
                },
                AppearanceSettings {
                    Layout.fillWidth: true
                    appState: root.appState
                },
                KeySettings {
                    Layout.fillWidth: true
                    model: root.model
                    tidy: root.tidy
                }
            ]
        }
    }
}
