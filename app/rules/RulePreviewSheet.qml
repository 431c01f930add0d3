pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The items that a rule, or all that are on, would take. Nothing moves.
Sheet {
    id: root

    required property AppState appState
    required property RulesModel model

    function run() {
        model.runPreviewed();
        close();
    }

    title: qsTr("rules.preview_title")
    sheetWidth: 720

    ColumnLayout {
        width: parent.width
        spacing: 12

        BodyText {
            Layout.fillWidth: true
            color: Theme.muted
            text: root.model.isPreviewing
                  ? Texts.joined([qsTr("rules.counting"), root.model.progressText], " ")
                  : root.model.previewCount === 0
                    ? qsTr("rules.preview_none")
                    : qsTr("rules.matches").arg(Texts.counted("count.files", root.model.previewCount)).arg(
                          Texts.bytes(root.model.previewBytes))
            wrapMode: Text.Wrap
        }

        CaptionText {
            Layout.fillWidth: true
            visible: text !== ""
            text: Texts.firstLines(root.model.previewRemarks, 6)
            wrapMode: Text.Wrap
        }

        Meter {
            Layout.fillWidth: true
            visible: root.model.isPreviewing
            filled: -1
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(360, list.contentHeight + 2)
            visible: root.model.previewCount > 0
            radius: Theme.controlRadius
            color: Theme.surface
            border.color: Theme.line

            RowList {
                id: list

                anchors.fill: parent
                anchors.margins: 1
                label: qsTr("rules.preview_title")
                model: root.model.preview
                canLook: true
                onLookAsked: row => root.appState.preview.look(root.model.previewPlace(row))
                onRowMenuAsked: row => menu.show(root.model.previewPlace(row), itemAtIndex(row), true)
                delegate: ItemRow {
                    required property int index
                    required property var modelData

                    width: list.width
                    hasBox: false
                    indent: 16
                    name: modelData.name
                    place: modelData.place
                    remark: modelData.reason
                    warning: modelData.warning
                    warningSymbol: "warning"
                    chip: Texts.risk(modelData.risk)
                    chipKind: modelData.risk
                    age: Texts.age(modelData.date)
                    size: Texts.bytes(modelData.bytes)
                    onMenuAsked: menu.show(root.model.previewPlace(index), this, false)
                }
            }

            RoundedCorners {
                radius: Theme.controlRadius
                ground: Theme.surface
            }
        }
    }

    ItemMenu {
        id: menu

        appState: root.appState
    }

    LargeRunQuestion {
        id: large
    }

    buttons: [
        PrimaryButton {
            visible: root.model.movableCount > 0
            enabled: !root.model.isPreviewing && !root.model.isWorking
            symbol: "play"
            text: qsTr("rules.run_previewed").arg(Texts.count(root.model.movableCount)).arg(
                      Texts.bytes(root.model.movableBytes))
            onClicked: large.ask(root.model.isLarge(root.model.movableCount, root.model.movableBytes),
                                 root.model.movableSums, text, root.run)
        },
        PlainButton {
            focus: true
            text: qsTr("action.close")
            onClicked: root.close()
        }
    ]
}
