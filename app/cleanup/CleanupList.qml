pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The items of a scan under the headers of their categories, with what selects many of them at once.
FocusScope {
    id: root

    required property Page screen
    required property CleanupModel model
    required property AppState appState
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
            text: qsTr("action.select_all")
            onClicked: root.model.selectAll()
        }

        LinkButton {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("action.deselect_all")
            onClicked: root.model.deselectAll()
        }
    }

    Flow {
        id: chips

        anchors.top: tools.bottom
        x: 16
        width: parent.width - 32
        bottomPadding: visible ? 10 : 0
        spacing: 8
        visible: root.isFiltered
        height: visible ? implicitHeight : 0

        Repeater {
            model: root.model.filters

            FilterChip {
                required property var modelData

                text: modelData.text
                onClicked: root.model.removeFilter(modelData.filter)
            }
        }

        CaptionText {
            height: 26
            verticalAlignment: Text.AlignVCenter
            text: qsTr("count.of").arg(Texts.count(root.model.shownCount)).arg(Texts.count(root.model.itemCount))
        }

        LinkButton {
            implicitHeight: 26
            visible: root.model.shownCount > 0
            font.pixelSize: Theme.captionSize
            text: qsTr("cleanup.show_all")
            onClicked: root.model.clearFilters()
        }
    }

    Divider {
        anchors.top: chips.bottom
        width: parent.width
    }

    ColumnHeads {
        id: heads

        anchors.top: chips.bottom
        anchors.topMargin: 1
        width: parent.width
        lead: 68
        columns: [
            {key: "sort.name", sort: 2, width: 0, falls: false},
            {key: "sort.date", sort: 1, width: 92, falls: true},
            {key: "sort.size", sort: 0, width: 76, falls: true}
        ]
        current: root.model.sort
        isReversed: root.model.isReversed
        onSortAsked: sort => root.model.sortBy(sort)
    }

    RowList {
        id: list

        anchors.top: heads.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        label: qsTr("nav.cleanup")
        model: root.model
        canLook: true
        onRowToggled: row => root.model.toggle(row)
        onLookAsked: row => {
            if (!root.appState.preview.look(root.model.placeAt(row)))
                root.model.toggle(row);
        }
        onRangeAsked: (from, to) => root.model.selectRange(from, to)
        onRowMenuAsked: row => menu.show(root.model.placeAt(row), itemAtIndex(row), true)
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
                list.anchor = index;
                root.model.toggle(index);
            }
            onRangeAsked: {
                list.currentIndex = index;
                root.model.selectRange(list.anchor, index);
            }
            onOpenAsked: root.appState.openItem(root.model.placeAt(index))
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
                menu.show(root.model.placeAt(index), this, false);
            }
        }
    }

    ItemMenu {
        id: menu

        appState: root.appState
        canExplain: true
        canKeep: true
        onExplainAsked: root.explainAsked(list.currentIndex)
        onKeepAsked: root.model.keep(list.currentIndex)
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
