pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// Orvane's promise and the folders that it may look at, then the first scan. Shown at the first start and on demand.
Sheet {
    id: root

    required property AppState appState
    required property SettingsModel settings
    required property LanguageModel languages
    property int page: 0

    function finish() {
        root.appState.completeOnboarding();
        root.close();
    }

    sheetWidth: 540
    canClose: appState.hasCompletedOnboarding
    onAboutToShow: {
        page = 0;
        settings.readStored();
    }

    ColumnLayout {
        width: parent.width
        spacing: 18

        Icon {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 4
            name: "mark"
            size: 56
            color: Theme.accent
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 4

            TitleText {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: [qsTr("onboarding.title"), qsTr("onboarding.folders_title"), qsTr("onboarding.ready_title")][
                    root.page]
            }

            BodyText {
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                color: Theme.muted
                text: [qsTr("app.tagline"), Texts.joined([qsTr("onboarding.folders_text"), qsTr(
                                                              "onboarding.known_places")], " "), qsTr(
                           "onboarding.ready_text")][root.page]
            }
        }

        Repeater {
            model: root.page === 0 ? [
                {symbol: "search", title: "onboarding.finds_title", text: "onboarding.finds_text"},
                {symbol: "undo", title: "onboarding.undo_title", text: "onboarding.undo_text"},
                {symbol: "privacy", title: "onboarding.never_title", text: "onboarding.never_text"}
            ] : []

            Promise {
                required property var modelData

                symbol: modelData.symbol
                title: qsTr(modelData.title)
                text: qsTr(modelData.text)
            }
        }

        Repeater {
            model: root.page === 1 ? root.settings.folders : []

            FolderRow {
                required property var modelData

                Layout.fillWidth: true
                name: modelData.name
                path: modelData.path
                exists: modelData.exists
                canBeRead: modelData.canBeRead
                symbol: modelData.symbol ?? "folder"
                canRemove: modelData.canRemove
                onRemoveAsked: root.settings.removeFolder(modelData.url)
            }
        }

        BodyText {
            Layout.fillWidth: true
            visible: root.page === 1 && root.settings.suggestedFolders.length > 0
            text: qsTr("onboarding.suggested_folders")
            wrapMode: Text.Wrap
        }

        Flow {
            Layout.fillWidth: true
            visible: root.page === 1 && root.settings.suggestedFolders.length > 0
            spacing: 8

            Repeater {
                model: root.page === 1 ? root.settings.suggestedFolders : []

                PlainButton {
                    required property var modelData

                    symbol: "plus"
                    text: modelData.name
                    Accessible.description: modelData.path
                    onClicked: root.settings.addFolder(modelData.url)
                }
            }
        }

        CaptionText {
            Layout.fillWidth: true
            visible: root.page === 1 && text !== ""
            text: root.settings.folderError
            color: Theme.review
            wrapMode: Text.Wrap
        }

        PlainButton {
            visible: root.page === 1
            symbol: "plus"
            text: qsTr("settings.add_folder")
            onClicked: picker.open()

            PickFolder {
                id: picker

                onPicked: url => root.settings.addFolder(url)
            }
        }

        Drawing {
            Layout.alignment: Qt.AlignHCenter
            visible: root.page === 2
            name: "clean"
        }
    }

    buttons: [
        PrimaryButton {
            focus: true
            implicitHeight: 40
            symbol: root.page === 2 ? "search" : ""
            text: root.page === 2 ? qsTr("action.scan")
                                  : root.page === 0 ? qsTr("onboarding.start") : qsTr("onboarding.next")
            onClicked: {
                if (root.page < 2) {
                    ++root.page;
                    return;
                }
                root.finish();
                if (!root.appState.isScanning)
                    root.appState.startScan();
            }
        },
        LanguageButton {
            implicitHeight: 40
            visible: root.page === 0
            languages: root.languages
        },
        PlainButton {
            implicitHeight: 40
            visible: root.page > 0
            text: root.page === 2 ? qsTr("onboarding.later") : qsTr("onboarding.back")
            onClicked: root.page === 2 ? root.finish() : --root.page
        }
    ]

    component Promise: RowLayout {
        id: promise

        property string symbol
        property string title
        property string text

        Layout.fillWidth: true
        spacing: 14

        Rectangle {
            Layout.alignment: Qt.AlignTop
            implicitWidth: 36
            implicitHeight: 36
            radius: 10
            color: Theme.accentSoft

            Icon {
                anchors.centerIn: parent
                name: promise.symbol
                color: Theme.accent
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 0

            HeadingText {
                Layout.fillWidth: true
                text: promise.title
                wrapMode: Text.Wrap
            }

            BodyText {
                Layout.fillWidth: true
                color: Theme.muted
                text: promise.text
                wrapMode: Text.Wrap
            }
        }
    }
}
