pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The map of a folder, or the offer to make one; meanwhile, how far it is.
Card {
    id: root

    required property MapModel model

    // Its actions stand below the title where both have no room in a line.
    readonly property real linksWidth: Math.ceil(fileLink.implicitWidth + folderLink.implicitWidth + 8
                                                 + (againLink.visible ? againLink.implicitWidth + 8 : 0))
    readonly property bool isTight: title.implicitWidth + linksWidth + 12 > layout.width

    implicitHeight: layout.implicitHeight + 2 * padding - 2

    Keys.onPressed: event => {
        if (event.key !== Qt.Key_Backspace || root.model.trail.length < 2)
            return;
        root.model.goUp();
        event.accepted = true;
    }

    PickFolder {
        id: picker

        onPicked: url => root.model.start(url)
    }

    PickFile {
        id: filePicker

        title: qsTr("map.open_file")
        onPicked: url => root.model.openFile(url)
    }

    ColumnLayout {
        id: layout

        width: parent.width
        spacing: 10

        GridLayout {
            Layout.fillWidth: true
            columns: root.isTight ? 1 : 2
            columnSpacing: 8
            rowSpacing: 2

            HeadingText {
                id: title

                Layout.fillWidth: true
                text: qsTr("map.title")
            }

            Flow {
                Layout.fillWidth: root.isTight
                Layout.preferredWidth: root.linksWidth
                Layout.leftMargin: root.isTight ? -8 : 0
                spacing: 8

                LinkButton {
                    id: fileLink

                    visible: !root.model.isMapping
                    symbol: "file"
                    text: qsTr("map.open_file")
                    onClicked: filePicker.open()
                }

                LinkButton {
                    id: folderLink

                    visible: !root.model.isMapping
                    symbol: "folder"
                    text: qsTr("map.choose")
                    onClicked: picker.open()
                }

                LinkButton {
                    id: againLink

                    visible: root.model.hasMap && !root.model.isMapping
                    symbol: "refresh"
                    text: qsTr("map.again")
                    onClicked: root.model.start("")
                }
            }
        }

        OnlyWhen {
            holds: root.model.isMapping

            ProgressStrip {
                Layout.fillWidth: true
                title: qsTr("map.mapping")
                figures: Texts.counted("count.files", root.model.filesSoFar)
                detail: root.model.placeSoFar
                onCancelAsked: root.model.cancel()
            }
        }

        OnlyWhen {
            holds: root.model.problem !== ""

            Notice {
                Layout.fillWidth: true
                isWarning: true
                text: root.model.problem
            }
        }

        OnlyWhen {
            holds: root.model.fileName !== ""

            Notice {
                Layout.fillWidth: true
                text: qsTr("map.from_file").arg(root.model.fileName)
            }
        }

        OnlyWhen {
            holds: !root.model.hasMap && !root.model.isMapping

            SettingRow {
                label: qsTr("map.text")

                PlainButton {
                    symbol: "overview"
                    text: qsTr("map.start")
                    onClicked: root.model.start("")
                }
            }
        }

        LoadedWhen {
            Layout.fillWidth: true
            holds: root.model.hasMap
            file: Qt.resolvedUrl("MapView.qml")
            properties: ({model: root.model})
        }
    }
}
