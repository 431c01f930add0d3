pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The files that a plan would touch, each with its label and reason, and what carries the plan out.
FocusScope {
    id: root

    required property AgentModel model
    required property AppState appState
    property bool isBusy: false

    HeadingText {
        id: title

        x: 16
        width: parent.width - figures.width - 48
        height: 46
        verticalAlignment: Text.AlignVCenter
        text: qsTr("agent.dry_run_title")
    }

    BodyText {
        id: figures

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: title.verticalCenter
        color: Theme.muted
        text: Texts.counted("count.files", root.model.matchCount) + " · " + Texts.bytes(root.model.matchBytes)
    }

    Divider {
        anchors.top: title.bottom
        width: parent.width
    }

    RowList {
        id: list

        anchors.top: title.bottom
        anchors.topMargin: 1
        anchors.bottom: foot.top
        width: parent.width
        label: qsTr("agent.dry_run_title")
        model: root.model
        onRowToggled: row => root.model.toggle(row)
        onRowMenuAsked: row => menu.show(root.model.placeAt(row), itemAtIndex(row), true)
        delegate: AgentEntry {
            width: list.width
            isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
            onToggled: {
                list.currentIndex = index;
                root.model.toggle(index);
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
        height: 60

        Divider {
            width: parent.width
        }

        BodyText {
            x: 16
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - buttons.width - 40
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
                enabled: !root.isBusy
                text: qsTr("agent.save_rule")
                onClicked: root.model.saveAsRule()
            }

            PlainButton {
                enabled: !root.isBusy
                text: qsTr("action.cancel")
                onClicked: root.model.discard()
            }

            PrimaryButton {
                enabled: root.model.selectedCount > 0 && !root.isBusy
                text: root.model.selectedCount === 0
                      ? qsTr("action.confirm")
                      : Texts.joined([qsTr("action.confirm"), Texts.count(root.model.selectedCount), Texts.bytes(
                                          root.model.selectedBytes)], " · ")
                onClicked: root.model.confirm()
            }
        }
    }
}
