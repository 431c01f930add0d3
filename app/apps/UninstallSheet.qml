pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// One application with what it would leave behind; what is ticked goes with it.
Sheet {
    id: root

    required property AppState appState
    required property AppsModel model

    function allSelected(leftovers: var): bool {
        return leftovers.every(leftover => leftover.selected);
    }

    function uninstall() {
        model.uninstall();
        model.closeReview();
    }

    title: qsTr("apps.uninstall_title").arg(model.reviewName)
    sheetWidth: 560

    ColumnLayout {
        width: parent.width
        spacing: 12

        BodyText {
            Layout.fillWidth: true
            color: Theme.muted
            text: root.model.isFindingLeftovers ? qsTr("apps.finding_leftovers")
                                                : root.model.leftovers.length > 0 ? qsTr("apps.leftovers_text")
                                                                                  : qsTr("apps.no_leftovers")
            wrapMode: Text.Wrap
        }

        Meter {
            Layout.fillWidth: true
            visible: root.model.isFindingLeftovers
            filled: -1
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: Math.min(260, list.contentHeight + 2)
            visible: root.model.leftovers.length > 0
            radius: Theme.controlRadius
            color: Theme.surface
            border.color: Theme.line

            RowList {
                id: list

                anchors.fill: parent
                anchors.margins: 1
                label: qsTr("apps.leftovers")
                model: root.model.leftovers
                canLook: true
                onRowToggled: row => root.model.toggleLeftover(row)
                onLookAsked: row => root.appState.preview.look(root.model.leftovers[row].path)
                onRowMenuAsked: row => menu.show(root.model.leftovers[row].path, itemAtIndex(row), true)
                delegate: ItemRow {
                    required property int index
                    required property var modelData

                    width: list.width
                    indent: 13
                    showsAge: false
                    name: modelData.name
                    place: modelData.place
                    size: Texts.bytes(modelData.bytes)
                    checkState: modelData.selected ? Qt.Checked : Qt.Unchecked
                    isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
                    onToggled: root.model.toggleLeftover(index)
                    onMenuAsked: menu.show(modelData.path, this, false)
                }
            }

            RoundedCorners {
                radius: Theme.controlRadius
                ground: Theme.surface
            }
        }

        LinkButton {
            readonly property bool areAllSelected: root.allSelected(root.model.leftovers)

            Layout.leftMargin: -8
            visible: root.model.leftovers.length > 1
            text: areAllSelected ? qsTr("action.deselect_all") : qsTr("action.select_all")
            onClicked: root.model.selectAllLeftovers(!areAllSelected)
        }

        CaptionText {
            Layout.fillWidth: true
            text: qsTr("preview.promise")
            wrapMode: Text.Wrap
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
            focus: true
            enabled: !root.model.isFindingLeftovers
            symbol: "trash"
            text: qsTr("apps.uninstall_count").arg(Texts.counted("count.items", root.model.reviewCount)).arg(
                      Texts.bytes(root.model.reviewBytes))
            onClicked: large.ask(root.model.isLarge(root.model.reviewCount, root.model.reviewBytes), Texts.counted(
                                     "consent.to_trash", root.model.reviewCount).arg(
                                     Texts.bytes(root.model.reviewBytes)), text, root.uninstall)
        },
        PlainButton {
            text: qsTr("action.cancel")
            onClicked: root.model.closeReview()
        }
    ]
}
