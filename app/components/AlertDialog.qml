pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// A title, a message, and OK, or a question with two answers. Messages after the first paragraph are listed.
Sheet {
    id: root

    property string message: ""
    property string note: ""
    property var details: []
    property string confirmText: qsTr("action.ok")
    // With a text here the alert is a question.
    property string rejectText: ""
    property string extraText: ""
    signal confirmed
    signal rejected
    signal extraChosen

    sheetWidth: 464

    Column {
        width: parent.width
        spacing: 12

        BodyText {
            width: parent.width
            text: root.message
            wrapMode: Text.Wrap
        }

        CaptionText {
            width: parent.width
            visible: text !== ""
            text: root.note
            wrapMode: Text.Wrap
        }

        Rectangle {
            width: parent.width
            height: Math.min(160, list.contentHeight + 16)
            visible: root.details.length > 0
            radius: Theme.controlRadius
            color: Theme.background
            border.color: Theme.line

            ListView {
                id: list

                anchors.fill: parent
                anchors.margins: 8
                clip: true
                spacing: 4
                model: root.details
                boundsBehavior: Flickable.StopAtBounds
                delegate: CaptionText {
                    required property string modelData

                    width: ListView.view.width
                    text: modelData
                    color: Theme.text
                    wrapMode: Text.Wrap
                }
            }
        }
    }

    buttons: [
        PrimaryButton {
            focus: true
            text: root.confirmText
            onClicked: {
                root.close();
                root.confirmed();
            }
        },
        PlainButton {
            visible: root.rejectText !== ""
            text: root.rejectText
            onClicked: {
                root.close();
                root.rejected();
            }
        },
        PlainButton {
            visible: root.extraText !== ""
            text: root.extraText
            onClicked: {
                root.close();
                root.extraChosen();
            }
        }
    ]
}
