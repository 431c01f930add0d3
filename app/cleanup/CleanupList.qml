pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The items of a scan under the headers of their categories, with what selects many of them at once.
FocusScope {
    id: root

    required property Page screen
    required property CleanupModel model
    property bool isFiltered: false
    signal explainAsked(int row)

    Row {
        id: tools

        x: 11
        height: 46
        spacing: 6

        LinkButton {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("action.select_recommended")
            onClicked: root.model.selectRecommended()
        }

        LinkButton {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("action.deselect_all")
            onClicked: root.model.deselectAll()
        }

        LinkButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.isFiltered && root.model.shownCount > 0
            symbol: "close"
            text: qsTr("cleanup.show_all")
            onClicked: root.model.clearFilters()
        }
    }

    Divider {
        anchors.top: tools.bottom
        width: parent.width
    }

    RowList {
        id: list

        anchors.top: tools.bottom
        anchors.topMargin: 1
        anchors.bottom: parent.bottom
        width: parent.width
        label: qsTr("nav.cleanup")
        model: root.model
        onRowToggled: row => root.model.toggle(row)
        onRowFolded: (row, open) => {
            const entry = itemAtIndex(row) as CleanupEntry;
            if (entry && entry.kind === 0 && entry.expanded !== open)
                root.model.toggleExpanded(row);
        }
        delegate: CleanupEntry {
            width: list.width
            isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
            onToggled: {
                list.currentIndex = index;
                root.model.toggle(index);
            }
            onFolded: {
                list.currentIndex = index;
                root.model.toggleExpanded(index);
            }
            onTouched: {
                list.forceActiveFocus(Qt.MouseFocusReason);
                list.currentIndex = index;
                list.showsCurrent = false;
            }
            onExplainAsked: root.explainAsked(index)
            onOpenFolderAsked: root.model.openContainingFolder(index)
            onKeepAsked: root.model.keep(index)
            onMenuAsked: {
                list.currentIndex = index;
                menu.popup();
            }
        }
    }

    ChoiceMenu {
        id: menu

        ChoiceItem {
            isChoice: false
            symbol: "info"
            text: qsTr("cleanup.why")
            onTriggered: root.explainAsked(list.currentIndex)
        }

        ChoiceItem {
            isChoice: false
            symbol: "folder-open"
            text: qsTr("action.reveal_in_finder")
            onTriggered: root.model.openContainingFolder(list.currentIndex)
        }

        ChoiceItem {
            isChoice: false
            symbol: "lock"
            text: qsTr("keep.keep")
            onTriggered: root.model.keep(list.currentIndex)
        }
    }

    EmptyState {
        anchors.fill: list
        // Without a filter the rows are on their way.
        visible: root.isFiltered && root.model.shownCount === 0
        drawing: "search"
        text: qsTr("cleanup.nothing_matches")
        action: qsTr("cleanup.show_all")
        onActed: root.model.clearFilters()
    }
}
