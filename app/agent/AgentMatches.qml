pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The files that a plan would touch by folder and destination, each with its label and reason, and what carries the plan
// out.
FocusScope {
    id: root

    required property AgentModel model
    required property AppState appState
    property bool isBusy: false
    property bool isShort: false
    signal confirmAsked(string verb)

    HeadingText {
        id: title

        x: 16
        width: parent.width - 32
        height: root.isShort ? 34 : 42
        verticalAlignment: Text.AlignVCenter
        text: qsTr("agent.dry_run_title")
    }

    Rectangle {
        id: all

        anchors.top: title.bottom
        width: parent.width
        height: root.model.matchCount === 0 ? 1 : root.isShort ? 34 : 38
        color: root.model.matchCount > 0 ? Theme.sidebar : Theme.line

        TriStateBox {
            id: allBox

            x: 15
            anchors.verticalCenter: parent.verticalCenter
            visible: root.model.allCheckState >= 0
            enabled: !root.isBusy
            labelShown: true
            text: qsTr("action.select_all")
            checkState: Math.max(0, root.model.allCheckState)
            onToggleAsked: root.model.selectAll(root.model.allCheckState !== Qt.Checked)
        }

        BodyText {
            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, parent.width - allBox.width - 44)
            visible: root.model.matchCount > 0
            horizontalAlignment: Text.AlignRight
            color: Theme.muted
            text: Texts.joined([Texts.counted("count.files", root.model.matchCount), Texts.bytes(root.model.matchBytes),
                                Texts.counted("agent.in_folders", root.model.groupCount)], " · ")
            elide: Text.ElideRight
        }
    }

    RowList {
        id: list

        anchors.top: all.bottom
        anchors.bottom: foot.top
        width: parent.width
        label: qsTr("agent.dry_run_title")
        model: root.model
        onRowToggled: row => root.model.toggle(row)
        onRowMenuAsked: row => menu.show(root.model.placeAt(row), itemAtIndex(row), true)
        onRowFolded: (row, open) => {
            const entry = itemAtIndex(row) as AgentEntry;
            if (entry && entry.isHeader && entry.expanded !== open)
                root.model.toggleExpanded(row);
        }
        delegate: AgentEntry {
            width: list.width
            hasChoice: root.model.allCheckState >= 0
            isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
            onToggled: {
                list.currentIndex = index;
                root.model.toggle(index);
            }
            onFolded: {
                list.currentIndex = index;
                root.model.toggleExpanded(index);
            }
            onMenuAsked: {
                list.currentIndex = index;
                menu.show(root.model.placeAt(index), this, false);
            }
        }
    }

    ItemMenu {
        id: menu

        appState: root.appState
    }

    EmptyState {
        anchors.fill: list
        visible: root.model.matchCount === 0
        drawing: "search"
        text: qsTr("agent.no_matches")
    }

    Item {
        id: foot

        anchors.bottom: parent.bottom
        width: parent.width
        height: root.isShort ? 52 : 60

        Divider {
            width: parent.width
        }

        BodyText {
            x: 16
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - buttons.width - 40
            // The button says it too.
            visible: implicitWidth <= width
            color: Theme.muted
            text: Texts.counted("cleanup.items_selected", root.model.selectedCount) + " · " + Texts.bytes(
                      root.model.selectedBytes)
        }

        Row {
            id: buttons

            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10

            PlainButton {
                // Gives way to the others where there is no room for all.
                width: Math.min(implicitWidth, Math.max(60, foot.width - 32 - cancel.width - confirm.width
                                                        - 2 * buttons.spacing))
                enabled: !root.isBusy
                text: qsTr("agent.save_rule")
                onClicked: root.model.saveAsRule()
            }

            PlainButton {
                id: cancel

                enabled: !root.isBusy
                text: qsTr("action.cancel")
                onClicked: root.model.discard()
            }

            PrimaryButton {
                id: confirm

                enabled: root.model.selectedCount > 0 && !root.isBusy
                text: root.model.selectedCount === 0
                      ? qsTr("action.confirm")
                      : Texts.joined([qsTr("action.confirm"), Texts.count(root.model.selectedCount), Texts.bytes(
                                          root.model.selectedBytes)], " · ")
                onClicked: root.confirmAsked(text)
            }
        }
    }
}
