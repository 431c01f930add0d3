pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The folders that Orvane may look at, and the last request that it sent, word for word.
Page {
    id: root

    required property AppState appState
    required property PrivacyModel model

    function startWork() {
        model.refresh();
    }

    title: qsTr("nav.privacy")
    subtitle: qsTr("privacy.subtitle")

    Component.onCompleted: model.refresh()

    ScrollColumn {
        Card {
            Layout.fillWidth: true
            implicitHeight: statement.implicitHeight + 2 * padding

            RowLayout {
                id: statement

                width: parent.width
                spacing: 20

                Rectangle {
                    Layout.alignment: Qt.AlignTop
                    implicitWidth: 48
                    implicitHeight: 48
                    radius: 14
                    color: Theme.accentSoft

                    Icon {
                        anchors.centerIn: parent
                        name: "privacy"
                        size: 26
                        color: Theme.accent
                    }
                }

                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 4

                    HeadingText {
                        Layout.fillWidth: true
                        font.pixelSize: 16
                        text: qsTr("privacy.title")
                        wrapMode: Text.Wrap
                    }

                    BodyText {
                        Layout.fillWidth: true
                        text: qsTr("privacy.statement")
                        wrapMode: Text.Wrap
                    }

                    BodyText {
                        Layout.fillWidth: true
                        color: Theme.muted
                        text: qsTr("privacy.local_model")
                        wrapMode: Text.Wrap
                    }
                }
            }
        }

        CardColumns {
            Layout.fillWidth: true
            isSplit: root.isWide
            first: [
                SettingsCard {
                    Layout.fillWidth: true
                    title: qsTr("permission.fda_title")

                    SettingRow {
                        visible: root.model.hasFullDiskPermission
                        label: root.model.hasFullDiskAccess ? qsTr("permission.granted") : qsTr("permission.missing")
                        note: qsTr("permission.fda_desc")
                        isWarning: !root.model.hasFullDiskAccess

                        Chip {
                            kind: root.model.hasFullDiskAccess ? Chip.Kind.Safe : Chip.Kind.Review
                            text: root.model.hasFullDiskAccess ? qsTr("permission.on") : qsTr("permission.off")
                        }

                        PlainButton {
                            text: root.model.hasFullDiskAccess ? qsTr("permission.open_settings")
                                                               : qsTr("action.grant_permissions")
                            onClicked: root.model.openSystemSettings()
                        }
                    }

                    SettingRow {
                        visible: !root.model.hasFullDiskPermission
                        label: isWarning ? Texts.counted("system.unreadable", root.model.unreadableCount)
                                         : qsTr("system.all_readable")
                        note: qsTr("permission.fda_desc")
                        isWarning: root.model.unreadableCount > 0
                    }

                    SettingRow {
                        visible: root.model.sandbox !== ""
                        label: qsTr("system.sandboxed").arg(root.model.sandbox)
                        note: qsTr("system.sandboxed_note")
                    }
                },
                SettingsCard {
                    Layout.fillWidth: true
                    title: qsTr("privacy.folders_title")
                    note: qsTr("privacy.folders_note")

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
                        }
                    }

                    LinkButton {
                        Layout.leftMargin: -8
                        text: qsTr("privacy.change_folders")
                        onClicked: root.appState.selectedNavigation = AppNavigationItem.Settings
                    }
                }
            ]
            second: [
                SettingsCard {
                    Layout.fillWidth: true
                    title: qsTr("privacy.last_request")
                    note: root.model.lastRequest === ""
                          ? qsTr("privacy.nothing_sent")
                          : qsTr("privacy.last_request_note").arg(root.model.lastRequestProvider).arg(
                                Texts.dateTime(root.model.lastRequestDate))

                    RawText {
                        Layout.fillWidth: true
                        visible: root.model.lastRequest !== ""
                        text: root.model.lastRequest
                        label: qsTr("privacy.last_request")
                    }
                }
            ]
        }
    }
}
