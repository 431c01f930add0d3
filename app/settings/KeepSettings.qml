pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The list of what is never offered again.
SettingsCard {
    id: root

    required property SettingsModel model

    title: qsTr("keep.title")
    note: qsTr("keep.note")

    Repeater {
        model: root.model.keptPatterns

        RowLayout {
            id: entry

            required property string modelData

            Layout.fillWidth: true
            spacing: 12
            Accessible.role: Accessible.ListItem
            Accessible.name: modelData

            Icon {
                name: "lock"
                color: Theme.muted
            }

            BodyText {
                Layout.fillWidth: true
                text: Texts.fromLeft(entry.modelData)
                textFormat: Text.PlainText
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }

            IconButton {
                symbol: "close"
                iconSize: 14
                text: qsTr("keep.remove")
                Accessible.name: text + ": " + entry.modelData
                onClicked: root.model.removeKept(entry.modelData)
            }
        }
    }

    CaptionText {
        Layout.fillWidth: true
        visible: root.model.keptPatterns.length === 0 || root.model.keepError !== ""
        text: root.model.keepError !== "" ? root.model.keepError : qsTr("keep.empty")
        color: root.model.keepError !== "" ? Theme.review : Theme.muted
        wrapMode: Text.Wrap
    }

    PlainButton {
        symbol: "plus"
        text: qsTr("keep.add_folder")
        onClicked: picker.open()

        PickFolder {
            id: picker

            onPicked: url => root.model.addKept(url)
        }
    }
}
