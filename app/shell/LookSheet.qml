pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// A glance at one item. Space or Escape closes it.
Sheet {
    id: root

    required property AppState appState

    readonly property ItemPreview preview: appState.preview
    readonly property bool isPicture: preview.picture !== "" && picture.hasPicture
    readonly property string missing: preview.picture !== "" && picture.status === Image.Ready && !picture.hasPicture
                                      ? qsTr("look.none") : ""

    title: preview.name
    hint: Texts.joined([preview.bytes >= 0 ? Texts.bytes(preview.bytes) : "", Texts.dateTime(preview.modified),
                        preview.entries.length > 0 ? Texts.counted("count.items", preview.entries.length) : ""], " · ")
    sheetWidth: 760
    onClosed: preview.close()

    Connections {
        target: root.preview

        function onChanged() {
            if (!root.preview.isOpen)
                root.close();
        }
    }

    Shortcut {
        enabled: root.visible
        sequences: ["Space"]
        onActivated: root.close()
    }

    Column {
        width: parent.width
        spacing: 12

        CaptionText {
            width: parent.width
            text: Texts.fromLeft(root.preview.shownPlace)
            elide: Text.ElideMiddle
        }

        Meter {
            width: parent.width
            visible: root.preview.isReading
            filled: -1
        }

        Image {
            id: picture

            // A file that is no picture comes as a single pixel.
            readonly property bool hasPicture: status === Image.Ready && implicitWidth > 1

            anchors.horizontalCenter: parent.horizontalCenter
            visible: hasPicture
            source: root.preview.picture
            sourceSize.width: 1424
            sourceSize.height: 1000
            width: Math.min(parent.width, implicitWidth)
            height: Math.min(500, implicitHeight * width / Math.max(1, implicitWidth))
            fillMode: Image.PreserveAspectFit
            asynchronous: true
            cache: false
            Accessible.role: Accessible.Graphic
            Accessible.name: root.preview.name

            // A page is as white as the sheet.
            Rectangle {
                anchors.centerIn: parent
                width: picture.paintedWidth + 2
                height: picture.paintedHeight + 2
                color: "transparent"
                border.color: Theme.line
            }
        }

        RawText {
            width: parent.width
            visible: text !== ""
            maxHeight: 420
            label: root.preview.name
            text: root.preview.text
        }

        RowList {
            width: parent.width
            height: Math.min(420, contentHeight)
            visible: count > 0
            label: root.preview.name
            model: root.preview.entries
            delegate: BodyText {
                required property string modelData

                width: ListView.view.width
                text: modelData
                elide: Text.ElideMiddle
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData
            }
        }

        BodyText {
            width: parent.width
            visible: text !== ""
            color: Theme.muted
            text: root.missing !== "" ? root.missing : root.preview.remark
            wrapMode: Text.Wrap
        }
    }

    buttons: [
        PrimaryButton {
            focus: true
            text: qsTr("action.close")
            onClicked: root.close()
        },
        PlainButton {
            text: qsTr("action.open")
            onClicked: root.appState.openItem(root.preview.place)
        },
        PlainButton {
            text: qsTr("action.reveal_in_finder")
            onClicked: root.appState.revealItem(root.preview.place)
        }
    ]
}
