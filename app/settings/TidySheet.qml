pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The moves that tidying would make now. Nothing moves before it is confirmed.
Sheet {
    id: root

    required property TidyModel tidy

    function move() {
        tidy.confirm();
        close();
    }

    title: qsTr("tray.organize_now")
    sheetWidth: 640
    onClosed: tidy.dismiss()

    ColumnLayout {
        width: parent.width
        spacing: 12

        BodyText {
            Layout.fillWidth: true
            color: Theme.muted
            text: root.tidy.isLooking
                  ? qsTr("organize.analyzing")
                  : root.tidy.selectedCount === 0
                    ? qsTr("tidy.nothing")
                    : Texts.joined([Texts.counted("organize.moves", root.tidy.selectedCount),
                                    Texts.bytes(root.tidy.selectedBytes)], " · ")
            wrapMode: Text.Wrap
        }

        CaptionText {
            Layout.fillWidth: true
            visible: text !== ""
            text: Texts.firstLines(root.tidy.remarks, 6)
            wrapMode: Text.Wrap
        }

        PlainButton {
            visible: root.tidy.returnedCount > 0
            text: qsTr("tidy.take_returned")
            onClicked: root.tidy.takeReturned()
        }

        Meter {
            Layout.fillWidth: true
            visible: root.tidy.isLooking
            filled: -1
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(360, list.contentHeight + 2)
            visible: root.tidy.proposed.length > 0
            radius: Theme.controlRadius
            color: Theme.surface
            border.color: Theme.line

            RowList {
                id: list

                anchors.fill: parent
                anchors.margins: 1
                label: qsTr("tray.organize_now")
                model: root.tidy.proposed
                delegate: ItemRow {
                    required property var modelData

                    width: list.width
                    hasBox: false
                    showsChip: false
                    indent: 16
                    name: Texts.fromLeft("→ " + modelData.place)
                    remark: Texts.joined(modelData.names, ", ") + (modelData.count > modelData.names.length ? ", …" : "")
                    warning: modelData.warning
                    warningSymbol: "warning"
                    age: Texts.counted("count.items", modelData.count)
                    size: Texts.bytes(modelData.bytes)
                }
            }

            RoundedCorners {
                radius: Theme.controlRadius
                ground: Theme.surface
            }
        }
    }

    LargeRunQuestion {
        id: large
    }

    buttons: [
        PrimaryButton {
            visible: root.tidy.selectedCount > 0
            symbol: "play"
            text: qsTr("organize.apply_count").arg(Texts.count(root.tidy.selectedCount)).arg(
                      Texts.bytes(root.tidy.selectedBytes))
            onClicked: large.ask(root.tidy.isLarge, Texts.counted("consent.to_folders", root.tidy.selectedCount).arg(
                                     Texts.bytes(root.tidy.selectedBytes)), text, root.move)
        },
        PlainButton {
            focus: true
            text: qsTr("action.close")
            onClicked: root.close()
        }
    ]
}
