pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The copies of one set side by side, as large as there is room, with what differs between them.
Sheet {
    id: root

    // As DuplicatesModel has them.
    required property var copies

    readonly property int columns: Math.max(1, Math.min(3, copies.length))

    title: qsTr("duplicates.compare")
    sheetWidth: 400 * columns + 48

    Column {
        width: parent.width
        spacing: 12

        BodyText {
            width: parent.width
            text: qsTr("duplicates.same_content")
            color: Theme.muted
            wrapMode: Text.Wrap
        }

        ListView {
            id: list

            width: parent.width
            // Beside the title, the text and the button.
            height: Math.max(200, Math.min(420, (root.parent?.height ?? 720) - 260))
            orientation: ListView.Horizontal
            spacing: 16
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: root.copies
            delegate: CopyColumn {
                width: (list.width - (root.columns - 1) * list.spacing) / root.columns
                height: list.height
            }
        }
    }

    buttons: [
        PrimaryButton {
            focus: true
            text: qsTr("action.close")
            onClicked: root.close()
        }
    ]

    component CopyColumn: Item {
        id: copy

        required property var modelData

        Accessible.role: Accessible.ListItem
        Accessible.name: Texts.joined([modelData.name, modelData.isKept ? qsTr("duplicates.kept") : ""], ", ")
        Accessible.description: Texts.joined([place.text, created.text, modified.text], ", ")

        Rectangle {
            width: parent.width
            height: copy.height - 76
            radius: Theme.controlRadius
            color: Theme.background
            border.color: copy.modelData.isKept ? Theme.accent : Theme.line

            Icon {
                anchors.centerIn: parent
                visible: picture.implicitWidth <= 1
                name: copy.modelData.picture === "" ? "file" : "picture"
                size: 40
                color: Theme.muted
            }

            Image {
                id: picture

                anchors.fill: parent
                anchors.margins: 8
                source: copy.modelData.picture
                sourceSize.width: 1200
                sourceSize.height: 1200
                fillMode: Image.PreserveAspectFit
                asynchronous: true
                cache: false
            }

            Chip {
                anchors.right: parent.right
                anchors.top: parent.top
                anchors.margins: 8
                visible: copy.modelData.isKept
                kind: Chip.Kind.Safe
                text: qsTr("duplicates.kept")
            }
        }

        Column {
            y: copy.height - 68
            width: parent.width

            BodyText {
                width: parent.width
                text: copy.modelData.name
                font.weight: Font.Medium
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }

            CaptionText {
                id: place

                width: parent.width
                text: Texts.fromLeft(copy.modelData.place)
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }

            CaptionText {
                id: created

                width: parent.width
                visible: text !== ""
                text: copy.modelData.created > 0
                      ? qsTr("duplicates.created").arg(Texts.dateTime(copy.modelData.created)) : ""
                Accessible.ignored: true
            }

            CaptionText {
                id: modified

                width: parent.width
                text: qsTr("duplicates.modified").arg(Texts.dateTime(copy.modelData.modified))
                Accessible.ignored: true
            }
        }
    }
}
