import QtQuick
import QtQuick.Layouts
import Orvane

// Space now, selected and projected; the button that acts; and the promise. Beside a list it is a
// column, under one a line.
Item {
    id: root

    required property double currentFree
    required property double selected
    required property double projectedFree
    property string action: ""
    property bool actionEnabled: true
    // The other choice, and why there are two.
    property string otherAction: ""
    property string otherNote: ""
    property bool isWide: false
    signal acted
    signal otherActed

    implicitWidth: 250
    implicitHeight: isWide ? line.implicitHeight : column.implicitHeight

    Column {
        id: column

        width: parent.width
        visible: !root.isWide
        spacing: Theme.gap

        Card {
            width: parent.width
            implicitHeight: figures.implicitHeight + 2 * padding - 8

            Column {
                id: figures

                y: -4
                width: parent.width
                spacing: 10

                Figure {
                    width: parent.width
                    size: 21
                    caption: qsTr("preview.current_free")
                    figure: Texts.bytes(root.currentFree)
                }

                Figure {
                    width: parent.width
                    size: 21
                    color: root.selected > 0 ? Theme.accent : Theme.text
                    caption: qsTr("preview.selected_size")
                    figure: (root.selected > 0 ? "+ " : "") + Texts.bytes(root.selected)
                }

                Figure {
                    width: parent.width
                    size: 21
                    caption: qsTr("preview.projected_free")
                    figure: Texts.bytes(root.projectedFree)
                }

                CaptionText {
                    width: parent.width
                    text: qsTr("preview.once_emptied")
                    wrapMode: Text.Wrap
                }
            }
        }

        PrimaryButton {
            width: parent.width
            implicitHeight: 44
            enabled: root.actionEnabled
            symbol: "trash"
            text: root.action
            onClicked: root.acted()
        }

        PlainButton {
            width: parent.width
            visible: root.otherAction !== ""
            text: root.otherAction
            onClicked: root.otherActed()
        }

        CaptionText {
            width: parent.width
            visible: text !== ""
            text: root.otherNote
            wrapMode: Text.Wrap
        }

        Notice {
            width: parent.width
            text: qsTr("preview.promise")
        }
    }

    Card {
        id: line

        width: parent.width
        visible: root.isWide
        padding: 14
        implicitHeight: lineFigures.implicitHeight + 2 * padding

        RowLayout {
            id: lineFigures

            width: parent.width
            spacing: 16

            Figure {
                Layout.fillWidth: true
                Layout.preferredWidth: 100
                Layout.alignment: Qt.AlignTop
                size: 17
                caption: qsTr("preview.selected_size")
                color: root.selected > 0 ? Theme.accent : Theme.text
                figure: (root.selected > 0 ? "+ " : "") + Texts.bytes(root.selected)
                note: qsTr("preview.current_free") + ": " + Texts.bytes(root.currentFree)
            }

            Figure {
                Layout.fillWidth: true
                Layout.preferredWidth: 130
                Layout.alignment: Qt.AlignTop
                size: 17
                caption: qsTr("preview.projected_free")
                figure: Texts.bytes(root.projectedFree)
                note: qsTr("preview.once_emptied")
            }

            ColumnLayout {
                Layout.maximumWidth: 240
                spacing: 6

                PrimaryButton {
                    Layout.fillWidth: true
                    implicitHeight: 44
                    enabled: root.actionEnabled
                    symbol: "trash"
                    text: root.action
                    onClicked: root.acted()
                }

                PlainButton {
                    Layout.fillWidth: true
                    visible: root.otherAction !== ""
                    text: root.otherAction
                    onClicked: root.otherActed()
                }

                CaptionText {
                    Layout.fillWidth: true
                    visible: text !== ""
                    text: root.otherNote
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
