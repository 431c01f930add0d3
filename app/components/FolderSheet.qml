pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// A chooser of folders, or of a file in them, for desktops that have none.
Sheet {
    id: root

    property string startFolder: ""
    property bool forFile: false
    signal picked(string url)
    signal done

    title: qsTr("action.choose_folder")
    sheetWidth: 560
    onOpened: listing.enter(root.startFolder)
    onClosed: done()
    Component.onCompleted: open()

    FolderListing {
        id: listing

        showsFiles: root.forFile
    }

    function take(row: var): void {
        if (!row.isFile) {
            listing.enter(row.path);
            return;
        }
        root.picked(row.path);
        root.close();
    }

    ColumnLayout {
        width: parent.width
        spacing: 12

        RowLayout {
            spacing: 8

            PlainButton {
                enabled: listing.hasParent
                symbol: "folder"
                text: qsTr("folder.parent")
                onClicked: listing.leave()
            }

            BodyText {
                Layout.fillWidth: true
                text: Texts.fromLeft(listing.shownPath)
                elide: Text.ElideMiddle
            }
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 280
            radius: Theme.controlRadius
            color: Theme.surface
            border.color: Theme.line

            RowList {
                id: list

                anchors.fill: parent
                anchors.margins: 1
                label: root.title
                model: listing.rows
                onRowToggled: row => root.take(listing.rows[row])
                delegate: ItemRow {
                    required property int index
                    required property var modelData

                    width: list.width
                    implicitHeight: 40
                    hasBox: false
                    showsAge: false
                    indent: 16
                    name: modelData.name
                    isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
                    onToggled: root.take(modelData)
                }
            }
        }
    }

    buttons: [
        PrimaryButton {
            visible: !root.forFile
            focus: true
            text: qsTr("folder.choose")
            onClicked: {
                root.picked(listing.folder);
                root.close();
            }
        },
        PlainButton {
            text: qsTr("action.cancel")
            onClicked: root.close()
        }
    ]
}
